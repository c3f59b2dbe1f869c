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

// A record that was none when it was stored comes back as none.

TEST_F(NullDetail, OfTheGrantedDiscountsIsPassedOver)
{
    const QDomElement cheque = rootOf(ordinaryCheque(
        DocumentBuilder().line(Goods(1, u"1001"_s, 100.0)).build(),
        { nullptr, discountImpact(Detail(record_name::positionDiscount).on(1).code(7).sum(10.0)) }));

    EXPECT_EQ(attribute(cheque, "Amount"), "90.00");
    EXPECT_EQ(attribute(lineOf(cheque.ownerDocument(), 1), "Amount"), "90.00");
}

TEST_F(NullDetail, OfTheSpentPointsIsPassedOver)
{
    const QDomDocument source = ordinaryCheque(DocumentBuilder().line(Goods(1, u"1001"_s, 100.0)).build());
    const QDomElement cheque
        = rootOf(client.buildAccrualXmlCheck(source, { nullptr, bonusImpact({ { 1, 30.0 } }) }, {}, {}, {}));

    EXPECT_EQ(attribute(cheque, "SubtractedBonus"), "30.00");
}

} // namespace
