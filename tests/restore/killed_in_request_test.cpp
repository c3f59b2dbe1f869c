#include "tests/restore/reference_run.h"

using namespace Qt::StringLiterals;

// A till that is killed while it waits for an answer. The server may have done what it was asked for: the till asks the
// same again, under the same identity of the cheque, and goes on from there.

namespace {

class KilledInRequest : public testing::TestWithParam<int> { };

constexpr int requestsOfSale = 18;

} // namespace

TEST_P(KilledInRequest, AsksTheSameAgainAndGoesOn)
{
    const int request = GetParam();
    const LifeOfACheque& expected = undisturbed(saleRoad);
    ASSERT_EQ(expected.requests.size(), requestsOfSale);
    LoyaltyService& service = serviceOf(saleRoad);
    const qsizetype first = service.count();
    const QString name = QString::fromLatin1(saleRoad.name);
    TillOnDisk till(service, QString::fromLatin1(saleRoad.settings));

    const QStringList before = till.killedInRequest(name, service, first + request);
    const int step = stepsIn(before);
    const qsizetype second = service.count();
    const QStringList after = step == 0 ? QStringList() : withoutHead(till.toTheEnd(name, step), step);

    EXPECT_TRUE(sameLines(before + after, expected.lines));
    EXPECT_TRUE(sameLines(service.requestsFrom(first).first(request + 1), expected.requests.first(request + 1)));
    // The step begins anew: with the request that was cut short, or with those that it had made before.
    const QStringList again = service.requestsFrom(second);
    ASSERT_LE(again.size(), requestsOfSale);
    const qsizetype from = requestsOfSale - again.size();
    EXPECT_LE(from, request);
    EXPECT_TRUE(sameLines(again, expected.requests.mid(from)));
}

INSTANTIATE_TEST_SUITE_P(OfASale, KilledInRequest, testing::Range(0, requestsOfSale),
                         [](const testing::TestParamInfo<int>& row) { return "Request" + std::to_string(row.param); });
