#include "tests/front/kept_state.h"
#include "tests/support/client_under_test.h"

#include <gtest/gtest.h>

#include <functional>
#include <ostream>

using namespace Qt::StringLiterals;

// What becomes of the coupons at each turn of the cheque.

namespace {

const std::string both = "cheque: cheque-1 cheque-2; 1: item-1; 2: item-2";

[[nodiscard]] DocumentBuilder saleOfTwoPositions(DocumentBuilder sale = TillAtWork::saleWithCard())
{
    return sale.line(Goods(2, u"1043"_s, 50.0));
}

void giveBoth(TillAtWork& till)
{
    giveCoupons(till, { u"cheque-1"_s, u"cheque-2"_s }, { { 1, { u"item-1"_s } }, { 2, { u"item-2"_s } } });
}

/// The request names the coupons of the cheque behind its messages, and those of each position on its line.
void expectBothIn(const QString& request)
{
    EXPECT_TRUE(request.contains(u" <Messages/>\n <Coupon CouponNo=\"cheque-1\"/>\n <Coupon CouponNo=\"cheque-2\"/>\n"
                                 u"</Cheque>"_s))
        << request.toStdString();
    EXPECT_TRUE(request.contains(u"   <Coupon CouponNo=\"item-1\"/>\n  </ChequeLine>"_s)) << request.toStdString();
    EXPECT_TRUE(request.contains(u"   <Coupon CouponNo=\"item-2\"/>\n  </ChequeLine>"_s)) << request.toStdString();
    EXPECT_EQ(request.count(u"<Coupon "_s), 4);
}

/// A card that looks at the coupons whenever its points are taken away.
class WatchingCard : public till::Card {
public:
    explicit WatchingCard(const Vantiro& watched)
        : Card(till::CardFields())
        , plugin(watched)
    {
    }

    void setPointsForSpend(double points) override
    {
        seen.append(QString::number(points) + u" with "_s + QString::fromStdString(couponsInMemory(plugin)));
    }

    QStringList seen;

private:
    const Vantiro& plugin;
};

/// Looks at all requests of the turn, which must be these.
void expectRequests(TillAtWork& till, const QList<QByteArray>& actions)
{
    for (const QByteArray& action : actions) {
        EXPECT_FALSE(till.server.take(action).isEmpty());
    }
    till.server.expectNothing();
}

struct Turn {
    const char* name;
    std::function<void(TillAtWork&)> make;
    bool keeps; // in memory
    DocumentBuilder document = saleOfTwoPositions();

    friend std::ostream& operator<<(std::ostream& stream, const Turn& turn)
    {
        return stream << turn.name;
    }
};

class CouponsAtATurn : public testing::TestWithParam<Turn> { };

void commitAnswered(TillAtWork& till)
{
    till.server.answer("<AccrualResponse/>");
    EXPECT_TRUE(till.plugin.commit(till.document()));
    expectRequests(till, { "Accrual" });
}

void cancelledWith(TillAtWork& till, int code)
{
    till.tell(TillAtWork::event(code, till.document()));
    expectRequests(till, { "Accrual" });
}

} // namespace

TEST_P(CouponsAtATurn, AreKeptOrForgottenAsTheTurnSays)
{
    TillAtWork till(GetParam().document, couponsApart());
    giveBoth(till);

    GetParam().make(till);

    EXPECT_EQ(couponsInMemory(till.plugin), GetParam().keeps ? both : "");
    EXPECT_EQ(couponsStored(till), both) << "none of these turns writes the coupons";
}

INSTANTIATE_TEST_SUITE_P(
    CouponStores, CouponsAtATurn,
    testing::Values(Turn { "RequestThatSucceeds", [](TillAtWork& till) { till.requestWell(); }, true },
                    Turn { "RequestThatTheServerRefuses",
                           [](TillAtWork& till) {
                               till.server.fault("отказ");
                               EXPECT_FALSE(till.plugin.request(till.document()));
                               expectRequests(till, { "GetDiscounts" });
                           },
                           true },
                    Turn { "RequestWithoutConnection",
                           [](TillAtWork& till) {
                               till.server.refuse();
                               EXPECT_FALSE(till.plugin.request(till.document()));
                               expectRequests(till, { "GetDiscounts" });
                           },
                           true },
                    Turn { "CommitThatSucceeds", commitAnswered, false },
                    Turn { "CommitThatTheServerRefuses",
                           [](TillAtWork& till) {
                               till.server.fault("отказ");
                               EXPECT_FALSE(till.plugin.commit(till.document()));
                               expectRequests(till, { "Accrual" });
                           },
                           false },
                    Turn { "CommitIntoTheQueue",
                           [](TillAtWork& till) {
                               till.server.refuse();
                               EXPECT_TRUE(till.plugin.commit(till.document()));
                               expectRequests(till, { "Accrual" });
                               EXPECT_EQ(till.queue.records().size(), 1);
                           },
                           false },
                    Turn { "CommitOfAnOfflineDocument",
                           [](TillAtWork& till) {
                               till.goOffline();
                               EXPECT_TRUE(till.plugin.commit(till.document()));
                               expectRequests(till, {});
                               EXPECT_EQ(till.queue.records().size(), 1);
                           },
                           false },
                    Turn { "CommitOfAReturn", commitAnswered, false, saleOfTwoPositions().type(2) },
                    Turn { "CommitOfAReturnThatTheServerRefuses",
                           [](TillAtWork& till) {
                               till.server.fault("отказ");
                               EXPECT_FALSE(till.plugin.commit(till.document()));
                               expectRequests(till, { "Accrual" });
                           },
                           false, saleOfTwoPositions().type(2) },
                    Turn { "Rollback",
                           [](TillAtWork& till) {
                               EXPECT_TRUE(till.plugin.rollback(till.document()));
                               expectRequests(till, {});
                           },
                           true },
                    Turn { "Cancel",
                           [](TillAtWork& till) {
                               EXPECT_TRUE(till.plugin.cancel());
                               expectRequests(till, {});
                           },
                           true },
                    Turn { "ClearAfterClose",
                           [](TillAtWork& till) {
                               till.plugin.clearAfterClose();
                               expectRequests(till, {});
                           },
                           false },
                    Turn { "ClearCoupons", [](TillAtWork& till) { till.plugin.clearCoupons(); }, false },
                    Turn { "ClearLoyaltyData", [](TillAtWork& till) { till.plugin.clearLoyaltyData(); }, true },
                    Turn { "CancelledChequeThatIsSent",
                           [](TillAtWork& till) {
                               till.server.answer("<AccrualResponse/>");
                               cancelledWith(till, 12);
                           },
                           false },
                    Turn { "CancelledChequeThatIsQueued",
                           [](TillAtWork& till) {
                               till.server.refuse();
                               cancelledWith(till, 22);
                               EXPECT_EQ(till.queue.records().size(), 1);
                           },
                           false },
                    Turn { "CancelledChequeThatTheServerRefuses",
                           [](TillAtWork& till) {
                               till.server.fault("отказ");
                               cancelledWith(till, 12);
                           },
                           false },
                    Turn { "ClosedChequeWithACard",
                           [](TillAtWork& till) {
                               till.tell(TillAtWork::event(10, till.document()));
                               expectRequests(till, {});
                           },
                           true },
                    Turn { "ClosedChequeWithoutACard",
                           [](TillAtWork& till) {
                               till.server.answer("<AccrualResponse/>");
                               till.tell(TillAtWork::event(10, till.document()));
                               expectRequests(till, { "Accrual" });
                           },
                           true, saleOfTwoPositions(TillAtWork::saleWithoutCard()) }),
    [](const auto& row) { return std::string(row.param.name); });

TEST(CouponStores, CouponsGoOutWithEachRequestAgain)
{
    TillAtWork till(saleOfTwoPositions(), couponsApart());
    giveBoth(till);

    for (int round = 0; round < 2; ++round) {
        till.answerRequest();
        EXPECT_TRUE(till.plugin.request(till.document()));
        expectBothIn(till.server.take("GetDiscounts"));
        expectBothIn(till.server.take("GetMessages"));
        EXPECT_FALSE(till.server.take("GetCardDiscountAmount").isEmpty());
    }
}

TEST(CouponStores, CouponsGoOutAgainAfterAFailedRequest)
{
    TillAtWork till(saleOfTwoPositions(), couponsApart());
    giveBoth(till);
    till.server.fault("отказ");
    EXPECT_FALSE(till.plugin.request(till.document()));
    expectBothIn(till.server.take("GetDiscounts"));

    till.answerRequest();
    EXPECT_TRUE(till.plugin.request(till.document()));

    expectBothIn(till.server.take("GetDiscounts"));
    expectRequests(till, { "GetMessages", "GetCardDiscountAmount" });
}

TEST(CouponStores, CommitForgetsTheLoyaltyDataFirst)
{
    TillAtWork till(saleOfTwoPositions(), couponsApart());
    giveBoth(till);
    const auto card = QSharedPointer<WatchingCard>::create(till.plugin);
    till.contents().setCard(7, 0, card);

    commitAnswered(till);

    EXPECT_EQ(card->seen.join(u'\n').toStdString(), "0 with " + both);
}

TEST(CouponStores, NextChequeStartsWithoutTheCouponsOfTheLast)
{
    TillAtWork till(saleOfTwoPositions(), couponsApart());
    giveBoth(till);
    commitAnswered(till);

    till.open(saleOfTwoPositions().identity(u"2"_s).build());
    till.answerRequest();
    EXPECT_TRUE(till.plugin.request(till.document()));

    EXPECT_EQ(till.server.take("GetDiscounts").count(u"<Coupon "_s), 0);
    expectRequests(till, { "GetMessages", "GetCardDiscountAmount" });
}

TEST(CouponStores, RestartWithAnOpenChequeBringsThemBack)
{
    const QSharedPointer<AbstractDocument> document = saleOfTwoPositions().build();
    {
        TillAtWork till(document, couponsApart());
        addWell(till, u"cheque-1"_s);
        addWell(till, u"item-2"_s);
        addWell(till, u"cheque-2"_s);
        till.contents().selectPosition(1);
        addWell(till, u"item-1"_s);
    }

    TillAtWork till(document, couponsApart());
    EXPECT_EQ(couponsInMemory(till.plugin), "");
    till.tell(Event(static_cast<EActivityListener::Event>(9)));

    EXPECT_EQ(couponsInMemory(till.plugin), both);
    till.answerRequest();
    EXPECT_TRUE(till.plugin.request(till.document()));
    expectBothIn(till.server.take("GetDiscounts"));
    expectRequests(till, { "GetMessages", "GetCardDiscountAmount" });
}

TEST(CouponStores, CouponsForgottenInMemoryAloneComeBackWithARestart)
{
    TillAtWork till(saleOfTwoPositions(), couponsApart());
    giveBoth(till);
    till.plugin.clearCoupons();
    EXPECT_EQ(couponsInMemory(till.plugin), "");

    till.tell(Event(static_cast<EActivityListener::Event>(9)));

    EXPECT_EQ(couponsInMemory(till.plugin), both);
}

TEST(CouponStores, DeletedCouponsStayAwayAfterARestart)
{
    const QSharedPointer<AbstractDocument> document = saleOfTwoPositions().build();
    {
        TillAtWork till(document, couponsApart());
        addWell(till, u"cheque-1"_s);
        addWell(till, u"item-2"_s);
        EXPECT_TRUE(till.deleteCoupon(u"cheque-1"_s));
    }

    TillAtWork till(document, couponsApart());
    till.tell(Event(static_cast<EActivityListener::Event>(9)));

    EXPECT_EQ(couponsInMemory(till.plugin), "2: item-2");
}
