#include "tests/cheque/cheque_support.h"
#include "tests/cheque/null_detail.h"
#include "tests/support/document_builder.h"

using namespace Qt::StringLiterals;

namespace {

class NullDetail : public ChequeTest {
protected:
    /// A sale of 100 roubles, with points of 30 on its line and a detail that is null beside them.
    [[nodiscard]] static QSharedPointer<till::Cheque> document()
    {
        const QSharedPointer<BonusImpact> impact = bonusImpact({ { 1, 30.0 } });
        setNullDetail(*impact, 2);
        return DocumentBuilder().line(Goods(1, u"1001"_s, 100.0)).impact(impact).build();
    }
};

TEST_F(NullDetail, OfTheDocumentCountsForNoLine)
{
    const QDomElement line = lineOf(ordinaryCheque(document()), 1);

    EXPECT_EQ(attribute(line, "Amount"), "130.00");
    EXPECT_EQ(attribute(line, "BonusDiscount"), "30.00");
    EXPECT_EQ(discountsOf(line), "");
}

TEST_F(NullDetail, OfTheDocumentIsNoPointSpent)
{
    EXPECT_EQ(attribute(rootOf(ordinaryCheque(document())), "SubtractedBonus"), "30.00");
}

} // namespace
