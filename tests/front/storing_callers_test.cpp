#include "tests/front/till_at_work.h"
#include "till/document/cheque_contents.h"

#include <gtest/gtest.h>

#include <functional>
#include <ostream>

using namespace Qt::StringLiterals;

// Who stores the state with the document, and with which offline flag.

namespace {

struct Caller {
    const char* name;
    std::function<void(TillAtWork&)> call; // until its request has been looked at
    const char* flag; // "true", "false", or empty where nothing is stored
};

void PrintTo(const Caller& caller, std::ostream* stream)
{
    *stream << caller.name;
}

void ask(TillAtWork& till, const QByteArray& action, const std::function<void()>& hook)
{
    hook();
    EXPECT_FALSE(till.server.take(action).isEmpty());
}

void identify(TillAtWork& till)
{
    QSharedPointer<DocumentCardRecord> card = till.card();
    EXPECT_FALSE(till.plugin.identifyByCard(card, ECardNumberType()));
}

const std::vector<Caller>& callers()
{
    using Till = TillAtWork&;
    const auto request
        = [](Till till) { ask(till, "GetDiscounts", [&till] { EXPECT_FALSE(till.plugin.request(till.document())); }); };
    const auto offer = [](Till till) {
        ask(till, "GetCardDiscountAmount", [&till] { static_cast<void>(till.plugin.hasPointsForSpend()); });
    };
    const auto spend
        = [](Till till) { ask(till, "SubtractBonus45", [&till] { static_cast<void>(till.plugin.spendPoints()); }); };
    const auto card = [](Till till) { ask(till, "IsCardValid", [&till] { identify(till); }); };
    const auto coupon
        = [](Till till) { ask(till, "IsCouponValid", [&till] { EXPECT_FALSE(till.addCoupon(u"vantiro-1"_s)); }); };
    const auto lost = [](const auto& hook) {
        return [hook](Till till) {
            till.server.refuse();
            hook(till);
        };
    };
    const auto refused = [](const auto& hook) {
        return [hook](Till till) {
            till.server.fault("Отказано");
            hook(till);
        };
    };
    static const std::vector<Caller> rows {
        { "RequestThatSucceeds",
          [](Till till) {
              till.answerRequest();
              EXPECT_TRUE(till.plugin.request(till.document()));
              for (const QByteArray action : { "GetDiscounts", "GetMessages", "GetCardDiscountAmount" }) {
                  EXPECT_FALSE(till.server.take(action).isEmpty());
              }
          },
          "false" },
        { "RequestWithoutConnection", lost(request), "true" },
        { "RequestThatIsRefused", refused(request), "" },
        { "OfferThatSucceeds",
          [offer](Till till) {
              till.server.answerText("GetCardDiscountAmount", u"50.00"_s);
              offer(till);
          },
          "false" },
        { "OfferWithoutConnection", lost(offer), "true" },
        { "OfferThatIsRefusedAndCountsAsNone", refused(offer), "false" },
        { "OfferThatCannotBeRead",
          [offer](Till till) {
              till.server.answerText("GetCardDiscountAmount", u"no number"_s);
              offer(till);
          },
          "" },
        { "SpendingThatSucceeds",
          [spend](Till till) {
              till.answerSpending("10.00");
              spend(till);
          },
          "false" },
        { "SpendingWithoutConnection", lost(spend), "true" },
        { "SpendingThatIsRefused", refused(spend), "" },
        { "CardWithoutConnection", lost(card), "true" },
        { "CardWithoutConnectionOnADocumentThatMayNotGoOffline",
          [card](Till till) {
              till.contents().head.offlineAllowed = false;
              till.server.refuse();
              card(till);
          },
          "" },
        { "CardThatIsRefused", refused(card), "" },
        { "CouponWithoutConnection", lost(coupon), "true" },
        { "CouponThatIsRefused", refused(coupon), "" },
    };
    return rows;
}

class StoringCallers : public testing::TestWithParam<Caller> { };

} // namespace

TEST_P(StoringCallers, StoreTheFlagAndSaveOnce)
{
    TillAtWork till;

    GetParam().call(till);

    EXPECT_EQ(till.stored(u"offlineMode"_s).toString().toStdString(), GetParam().flag);
    const QStringList journal = QString::fromStdString(till.told()).split(u'\n');
    EXPECT_EQ(journal.count(u"save"_s), *GetParam().flag == '\0' ? 0 : 1) << journal.join(u'\n').toStdString();
}

TEST(OfflineCallers, StoreNothingMore)
{
    TillAtWork till;
    till.goOffline();

    EXPECT_TRUE(till.plugin.request(till.document()));
    EXPECT_FALSE(till.plugin.hasPointsForSpend());
    EXPECT_TRUE(till.plugin.spendPoints());
    identify(till);
    EXPECT_FALSE(till.addCoupon(u"vantiro-1"_s));

    EXPECT_EQ(till.told(),
              "event 127 text=Нет связи с сервером. Доступно только начисление баллов couponNumber=vantiro-1 "
              "forCustomer=true");
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));
}

INSTANTIATE_TEST_SUITE_P(Rows, StoringCallers, testing::ValuesIn(callers()),
                         [](const testing::TestParamInfo<Caller>& row) { return std::string(row.param.name); });
