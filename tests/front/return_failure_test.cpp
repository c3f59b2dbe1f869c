#include "host/facilities/exceptions.h"
#include "tests/front/closing_till.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// Only a lost connection sends a return into the queue, and only the server's refusal ends it. What else goes wrong on
// the way is the host's to deal with, and nothing of the cheque is lost by it.

namespace {

class ReturnInTrouble : public testing::TestWithParam<int> { };

} // namespace

INSTANTIATE_TEST_SUITE_P(Types, ReturnInTrouble, testing::Values(2, 25),
                         [](const auto& row) { return "Type" + std::to_string(row.param); });

TEST_P(ReturnInTrouble, FailureOfAnotherKindPassesToTheHostAndQueuesNothing)
{
    TillAtWork till(GetParam() == 25 ? returnOfKnownSale() : TillAtWork::saleWithCard().type(2).build());
    fillState(till);
    till.server.whilePosting([] { throw BasicException(tr::Tr(u"сбой"_s)); });

    EXPECT_THROW(static_cast<void>(till.plugin.commit(till.document())), BasicException);

    till.server.whilePosting({});
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
    EXPECT_EQ(till.told(), "") << "neither the queue nor the store is asked";
    EXPECT_EQ(till.log().find("error: "), std::string::npos);
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_EQ(stateOf(till), wholeState);
}
