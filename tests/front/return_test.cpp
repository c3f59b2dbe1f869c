#include "host/facilities/exceptions.h"
#include "tests/front/closing_till.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// A return of goods: always tried at the server first, and queued when that cannot be reached.

namespace {

/// A return without a sale behind it.
[[nodiscard]] DocumentBuilder plainReturn()
{
    return TillAtWork::saleWithCard().type(2);
}

constexpr const char* start = "info: Возврат в бонусной системе Vantiro\n"
                              "info: Отмена начисления бонусов в online режиме\n";

} // namespace

TEST(Return, OfGoodsIsTheirChequeClosed)
{
    TillAtWork till(plainReturn());
    till.server.answerText("Accrual", u""_s);

    EXPECT_TRUE(till.plugin.backOrBackBySale(till.document()));

    EXPECT_EQ(till.told(), "post Accrual");
    const QString cheque = till.server.take("Accrual");
    EXPECT_TRUE(cheque.contains(u"ChequeType=\"Return\""_s));
    EXPECT_TRUE(cheque.contains(u"Status=\"Closed\""_s));
    EXPECT_TRUE(cheque.contains(u"DiscountCardNo=\"9000000001\""_s));
    EXPECT_FALSE(cheque.contains(u"SaleCheque"_s));
}

TEST(Return, BySalePointsBackToIt)
{
    TillAtWork till(returnOfKnownSale());
    till.server.answerText("Accrual", u""_s);

    EXPECT_TRUE(till.plugin.backOrBackBySale(till.document()));

    EXPECT_EQ(till.told(), "post Accrual");
    EXPECT_EQ(till.log(), std::string(start) + "info: Бонусы отменены");
    till.server.expect(
        "Accrual",
        chequeParameter(
            R"(<Cheque xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:xsd="http://www.w3.org/2001/XMLSchema")"
            R"( ShiftNo="17" ChequeUID="11116E73-1C03-5DE6-9130-5F9925AE8AB4" ChequeNo="1042")"
            R"( OpenTime="2024-03-05T14:07:09" CloseTime="2024-03-05T14:07:09" Amount="179.80" SubtractedBonus="0.00")"
            R"( PositionCount="1" ChequeType="Return" Status="Closed">)"
            "\n"
            R"( <DiscountCard DiscountCardID="0" EnteredAsPhoneNumber="false" SubtractAmount="0.00" SubtractedBonus="0")"
            R"( DiscountCardNo="9000000001" BonusCard="true"/>)"
            "\n"
            R"( <SaleCheque ChequeNo="4" OpenTime="2024-03-04T18:00:00" CloseTime="2024-03-04T18:05:00" Amount="0")"
            R"( SubtractedBonus="0.00" PositionCount="0" Status="Closed" ChequeType="Sale">)"
            "\n  <ChequeLines/>\n </SaleCheque>\n <ChequeLines>\n"
            R"(  <ChequeLine ChequeLineNo="1" NoPayBonus="false" NoAddBonus="false" NoDiscounts="false" Price="89.90")"
            R"( Quantity="2.000" Amount="179.80" MinAmount="0.00" MinPrice="0.00" MaxDiscount="100.0")"
            R"( BonusDiscount="0.00">)"
            "\n"
            R"(   <Item ItemID="1042" Barcode=""/>)"
            "\n   <Discounts/>\n  </ChequeLine>\n </ChequeLines>\n <Discounts/>\n <Payments/>\n "
            "<Messages/>\n</Cheque>\n"));
}

TEST(Return, OfASaleThatWasSetAsideNamesTheNumberThatTheServerKnows)
{
    TillAtWork till(TillAtWork::saleWithCard().buildReturn(saleSource(
        4, at("2024-03-04T18:00:00"), at("2024-03-04T18:05:00"), u"{\"vantiro\":{\"chequeNo\":\"1042\"}}"_s)));
    till.server.answerText("Accrual", u""_s);

    EXPECT_TRUE(till.plugin.backOrBackBySale(till.document()));

    const QString cheque = till.server.take("Accrual");
    const QString sale = cheque.mid(cheque.indexOf(u"<SaleCheque "_s)).section(u'>', 0, 0);
    EXPECT_TRUE(sale.contains(u" ChequeNo=\"1042\""_s)) << sale.toStdString();
}

TEST(Return, OfAnOfflineDocumentIsTriedAtTheServer)
{
    TillAtWork till(plainReturn());
    till.goOffline();
    till.server.answerText("Accrual", u""_s);

    EXPECT_TRUE(till.plugin.backOrBackBySale(till.document()));

    EXPECT_EQ(till.told(), "post Accrual");
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
}

TEST(Return, WithoutConnectionIsQueuedAndGood)
{
    TillAtWork till(returnOfKnownSale());
    till.server.refuse();

    EXPECT_TRUE(till.plugin.backOrBackBySale(till.document()));

    EXPECT_EQ(till.told(), "post Accrual\nenqueue vantiro OfflineAccrual");
    EXPECT_EQ(till.log(),
              std::string(start)
                  + "error: Произошла ошибка при выполнении запроса соединение отклонено\n"
                    "error: Ошибка online начисления или списания бонусов при возврате\n"
                    "info: Отмена начисления бонусов в offline режиме\n"
                    "info: Бонусы начислены или списаны в offline режиме");
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
    const QString posted = till.server.take("Accrual");
    ASSERT_EQ(till.queue.records().size(), 1);
    EXPECT_EQ(till.queue.records()[0].message[u"body"_s].toString().toStdString(),
              QString(posted).replace(u"tem:Accrual"_s, u"tem:OfflineAccrual"_s).toStdString());
}

TEST(Return, RefusalIsToldAndNothingIsQueued)
{
    TillAtWork till(returnOfKnownSale());
    till.server.fault("Возврат отклонён");

    EXPECT_FALSE(till.plugin.backOrBackBySale(till.document()));

    EXPECT_EQ(till.told(), "post Accrual");
    EXPECT_EQ(till.log(), std::string(start) + "error: Возврат отклонён");
    EXPECT_EQ(till.lastError(), ": Возврат отклонён");
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
}

TEST(Return, OfAnUnknownSaleIsToldAndNotSent)
{
    TillAtWork till(TillAtWork::saleWithCard().type(25));

    EXPECT_FALSE(till.plugin.backOrBackBySale(till.document()));

    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), std::string(start) + "error: Не обнаружен источник для документа возврата");
    EXPECT_EQ(till.lastError(), "vantiroSourceDocNotFound: Не обнаружен источник для документа возврата");
}

TEST(Return, SlipOfTheReplyIsNotPrinted)
{
    TillAtWork till(plainReturn());
    till.server.answerText("Accrual", u"Спасибо"_s);

    EXPECT_TRUE(till.plugin.commit(till.document()));

    EXPECT_EQ(till.told(), "post Accrual");
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
}

TEST(Return, LeavesTheStateToCommit)
{
    TillAtWork till(plainReturn());
    fillState(till);
    till.server.answerText("Accrual", u""_s);
    EXPECT_TRUE(till.plugin.backOrBackBySale(till.document()));
    EXPECT_EQ(stateOf(till), wholeState);

    till.server.fault("Возврат отклонён");
    EXPECT_FALSE(till.plugin.backOrBackBySale(till.document()));
    EXPECT_EQ(stateOf(till), wholeState);

    till.server.refuse();
    EXPECT_TRUE(till.plugin.backOrBackBySale(till.document()));
    EXPECT_EQ(stateOf(till), wholeState);

    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(till.server.take("Accrual").isEmpty());
    }
}

TEST(Return, RefusalOfOneThatClosesLeavesNoState)
{
    TillAtWork till(plainReturn());
    fillState(till);
    till.server.fault("Возврат отклонён");

    EXPECT_FALSE(till.plugin.commit(till.document()));

    EXPECT_EQ(till.lastError(), ": Возврат отклонён");
    EXPECT_EQ(stateOf(till), emptyState);
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
}

TEST(Return, FailureOfTheQueuePassesToTheHost)
{
    TillAtWork till(plainReturn());
    fillState(till);
    till.server.refuse();
    till.queue.fail(tr::Tr(u"очередь недоступна"_s));

    EXPECT_THROW(static_cast<void>(till.plugin.commit(till.document())), BasicException);

    EXPECT_EQ(till.log(),
              "info: Подтверждение операций бонусной системы\n" + std::string(start)
                  + "info: Создание xml-чека для commit\n"
                    "error: Произошла ошибка при выполнении запроса соединение отклонено\n"
                    "error: Ошибка online начисления или списания бонусов при возврате\n"
                    "info: Отмена начисления бонусов в offline режиме\n"
                    "info: Создание xml-чека для commit");
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_EQ(stateOf(till), wholeState);
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
}
