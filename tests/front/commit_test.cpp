#include "tests/front/closing_till.h"
#include "tests/support/client_under_test.h"
#include "tests/support/sorted_attributes.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace Qt::StringLiterals;

// The close of a cheque: what is told to the server or the queue, and what stays of the state.

namespace {

struct Close {
    const char* name;
    int type;
    bool offline;
    bool reachable;
    const char* journal;
    const char* log;
};

void PrintTo(const Close& close, std::ostream* stream)
{
    *stream << close.name;
}

constexpr const char* reversalOfType2 = "info: Подтверждение операций бонусной системы\n"
                                        "info: Возврат в бонусной системе Vantiro\n"
                                        "info: Отмена начисления бонусов в online режиме\n"
                                        "info: Создание xml-чека для commit\n"
                                        "info: Бонусы отменены";

constexpr const char* reversalOfType25 = "info: Подтверждение операций бонусной системы\n"
                                         "info: Возврат в бонусной системе Vantiro\n"
                                         "info: Отмена начисления бонусов в online режиме\n"
                                         "info: Бонусы отменены";

constexpr const char* lostReversalOfType2 = "info: Подтверждение операций бонусной системы\n"
                                            "info: Возврат в бонусной системе Vantiro\n"
                                            "info: Отмена начисления бонусов в online режиме\n"
                                            "info: Создание xml-чека для commit\n"
                                            "error: Произошла ошибка при выполнении запроса соединение отклонено\n"
                                            "error: Ошибка online начисления или списания бонусов при возврате\n"
                                            "info: Отмена начисления бонусов в offline режиме\n"
                                            "info: Создание xml-чека для commit\n"
                                            "info: Бонусы начислены или списаны в offline режиме";

constexpr const char* lostReversalOfType25 = "info: Подтверждение операций бонусной системы\n"
                                             "info: Возврат в бонусной системе Vantiro\n"
                                             "info: Отмена начисления бонусов в online режиме\n"
                                             "error: Произошла ошибка при выполнении запроса соединение отклонено\n"
                                             "error: Ошибка online начисления или списания бонусов при возврате\n"
                                             "info: Отмена начисления бонусов в offline режиме\n"
                                             "info: Бонусы начислены или списаны в offline режиме";

constexpr const char* queuedAccrual = "info: Подтверждение операций бонусной системы\n"
                                      "info: Начисление бонусов в offline режиме\n"
                                      "info: Создание xml-чека для commit";

constexpr const char* accrual = "info: Подтверждение операций бонусной системы\n"
                                "info: Начисление бонусов в online режиме\n"
                                "info: Создание xml-чека для commit\n"
                                "info: lastReport = <doc>\n <noformat>Спасибо</noformat>\n</doc>\n\n"
                                "info: Бонусы начислены";

constexpr const char* lostAccrual = "info: Подтверждение операций бонусной системы\n"
                                    "info: Начисление бонусов в online режиме\n"
                                    "info: Создание xml-чека для commit\n"
                                    "error: Произошла ошибка при выполнении запроса соединение отклонено\n"
                                    "error: Ошибка online начисления бонусов\n"
                                    "info: Начисление бонусов в offline режиме\n"
                                    "info: Создание xml-чека для commit\n"
                                    "info: Бонусы зачислены в offline режиме";

constexpr const char* posted = "post Accrual";
constexpr const char* postedThenQueued = "post Accrual\nenqueue vantiro OfflineAccrual";
constexpr const char* queuedAlone = "enqueue vantiro OfflineAccrual";
constexpr const char* postedAndPrinted = "post Accrual\n"
                                         "print -1: <report cached=\"false\" name=\"custom\" title=\"vantiro check\" "
                                         "type=\"document\">\n <text>Спасибо</text>\n</report>\n";

constexpr Close closes[] {
    { "ReturnOnlineReachable", 2, false, true, posted, reversalOfType2 },
    { "ReturnOfflineReachable", 2, true, true, posted, reversalOfType2 },
    { "ReturnOnlineWithoutConnection", 2, false, false, postedThenQueued, lostReversalOfType2 },
    { "ReturnOfflineWithoutConnection", 2, true, false, postedThenQueued, lostReversalOfType2 },
    { "ReturnBySaleOnlineReachable", 25, false, true, posted, reversalOfType25 },
    { "ReturnBySaleOfflineReachable", 25, true, true, posted, reversalOfType25 },
    { "ReturnBySaleOnlineWithoutConnection", 25, false, false, postedThenQueued, lostReversalOfType25 },
    { "ReturnBySaleOfflineWithoutConnection", 25, true, false, postedThenQueued, lostReversalOfType25 },
    { "SaleOffline", 1, true, true, queuedAlone, queuedAccrual },
    { "OtherTypeOffline", 3, true, true, queuedAlone, queuedAccrual },
    { "SaleOnlineReachable", 1, false, true, postedAndPrinted, accrual },
    { "OtherTypeOnlineReachable", 3, false, true, postedAndPrinted, accrual },
    { "SaleOnlineWithoutConnection", 1, false, false, postedThenQueued, lostAccrual },
    { "OtherTypeOnlineWithoutConnection", 3, false, false, postedThenQueued, lostAccrual },
};

class CommitOperations : public testing::TestWithParam<Close> { };

/// A good reply, with this text as the slip.
void answerAccrual(TillAtWork& till, const QString& slip = {})
{
    till.server.answerText("Accrual", slip);
}

} // namespace

TEST_P(CommitOperations, FollowTypeFlagAndServer)
{
    const Close& close = GetParam();
    TillAtWork till(close.type == 25 ? returnOfKnownSale() : TillAtWork::saleWithCard().type(close.type).build());
    fillState(till);
    if (close.offline) {
        till.goOffline();
    }
    const bool asked = *close.journal == 'p';
    if (asked && close.reachable) {
        answerAccrual(till, u"Спасибо"_s);
    } else if (asked) {
        till.server.refuse();
    }

    EXPECT_TRUE(till.plugin.commit(till.document()));

    EXPECT_EQ(readable(sortedAttributes(QString::fromStdString(till.told()))), close.journal);
    EXPECT_EQ(till.log(), close.log);
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_EQ(stateOf(till), emptyState);
    // Points spent and coupons are told with the sale alone: the form of the operation with four arguments.
    const bool isReturn = close.type == 2 || close.type == 25;
    const auto expectArguments = [isReturn](const QString& cheque) {
        EXPECT_EQ(cheque.contains(u"BonusDiscount=\"30.00\""_s), !isReturn);
        EXPECT_EQ(cheque.contains(u"CouponNo=\"vantiro-c1\""_s), !isReturn);
        EXPECT_EQ(cheque.contains(u"CouponNo=\"vantiro-p1\""_s), !isReturn);
        EXPECT_TRUE(cheque.contains(u"Status=\"Closed\""_s));
    };
    if (asked) {
        expectArguments(till.server.take("Accrual"));
    }
    for (const ScriptedQueue::Record& record : till.queue.records()) {
        expectArguments(record.message[u"body"_s].toString());
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, CommitOperations, testing::ValuesIn(closes),
                         [](const testing::TestParamInfo<Close>& row) { return std::string(row.param.name); });

TEST(Commit, AccrualHoldsPointsAndCoupons)
{
    TillAtWork till;
    fillState(till);
    answerAccrual(till);

    EXPECT_TRUE(till.plugin.commit(till.document()));

    till.server.expect(
        "Accrual",
        chequeParameter(
            R"(<Cheque xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:xsd="http://www.w3.org/2001/XMLSchema")"
            R"( ShiftNo="17" ChequeUID="11116E73-1C03-5DE6-9130-5F9925AE8AB4" ChequeNo="1042")"
            R"( OpenTime="2024-03-05T14:07:09" CloseTime="2024-03-05T14:07:09" Amount="179.80" SubtractedBonus="30.00")"
            R"( PositionCount="1" ChequeType="Sale" Status="Closed">)"
            "\n"
            R"( <DiscountCard DiscountCardID="0" EnteredAsPhoneNumber="false" SubtractAmount="30.00" SubtractedBonus="0")"
            R"( DiscountCardNo="9000000001" BonusCard="true"/>)"
            "\n"
            " <ChequeLines>\n"
            R"(  <ChequeLine ChequeLineNo="1" NoPayBonus="false" NoAddBonus="false" NoDiscounts="false" Price="89.90")"
            R"( Quantity="2.000" Amount="179.80" MinAmount="0.00" MinPrice="0.00" MaxDiscount="100.0")"
            R"( BonusDiscount="30.00">)"
            "\n"
            R"(   <Item ItemID="1042" Barcode=""/>)"
            "\n   <Discounts/>\n"
            R"(   <Coupon CouponNo="vantiro-p1"/>)"
            "\n  </ChequeLine>\n </ChequeLines>\n <Discounts/>\n <Payments/>\n <Messages/>\n"
            R"( <Coupon CouponNo="vantiro-c1"/>)"
            "\n</Cheque>\n"));
}

TEST(Commit, EmptySlipIsNotPrinted)
{
    TillAtWork till;
    answerAccrual(till);

    EXPECT_TRUE(till.plugin.commit(till.document()));

    EXPECT_EQ(till.told(), "post Accrual");
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
}

TEST(Commit, LostConnectionDoesNotMarkTheDocumentOffline)
{
    TillAtWork till;
    till.server.refuse();

    EXPECT_TRUE(till.plugin.commit(till.document()));

    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
}

TEST(Commit, StoresAndSavesNothing)
{
    TillAtWork till;
    till.requestWell("50.00");
    answerAccrual(till);

    EXPECT_TRUE(till.plugin.commit(till.document()));

    EXPECT_EQ(till.told(), "post Accrual");
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(50.0)) << "what was stored while the cheque was open stays";
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
}
