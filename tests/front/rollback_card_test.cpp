#include "host/facilities/exceptions.h"
#include "tests/front/closing_till.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// The points are back on the server, and then the host's own record of the card fails.

namespace {

/// A card of a host whose store refuses the sum. [cheque-thread]
class FailingCard : public till::Card {
public:
    using Card::Card;

    void setSpentSum(double sum) override
    {
        asked = sum;
        throw BasicException(tr::Tr(u"карта не записана"_s));
    }

    double asked = -1.0;
};

} // namespace

TEST(RollbackOfACard, FailureOfTheHostsRecordPassesToTheHostAndTheStateStays)
{
    TillAtWork till;
    till::CardFields fields;
    fields.number = u"9000000001"_s;
    const auto card = QSharedPointer<FailingCard>::create(fields);
    till.contents().setCard(7, 0, card);
    fillState(till);
    till.server.answer(R"(<CancelSubtractBonusResponse xmlns="http://tempuri.org/"/>)");

    EXPECT_THROW(static_cast<void>(till.plugin.rollback(till.document())), BasicException);

    EXPECT_EQ(card->asked, 0.0);
    EXPECT_EQ(till.told(), "post CancelSubtractBonus");
    EXPECT_EQ(till.log(),
              "info: Отмена операций бонусной системы\n"
              "info: Отмена оплаты бонусами в виде скидки на сумму 30.00");
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_EQ(stateOf(till), wholeState);
    EXPECT_TRUE(till.server.take("CancelSubtractBonus").contains(u"<tem:amount>30.00</tem:amount>"_s));
}
