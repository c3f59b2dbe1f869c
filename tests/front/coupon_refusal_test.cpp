#include "tests/front/kept_state.h"
#include "tests/support/client_under_test.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace Qt::StringLiterals;

// Coupons of this system that are refused: what the cashier is told, and what stays behind.

namespace {

[[nodiscard]] DocumentBuilder emptySale()
{
    return DocumentBuilder().card(u"9000000001"_s);
}

const std::string begun = "event 72 message=Обращение к системе лояльности\n";

/// That nothing of the coupon is left, and that the document is as online as before.
void expectNothingStored(const TillAtWork& till)
{
    EXPECT_EQ(couponsInMemory(till.plugin), "");
    EXPECT_EQ(couponsStored(till), "none stored");
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
    EXPECT_EQ(till.lastError(), ": ");
}

} // namespace

TEST(CouponRefusal, CouponOfAPositionWithoutOneIsRefused)
{
    TillAtWork till(emptySale(), couponsApart());

    EXPECT_FALSE(till.addCoupon(u"item-1"_s));

    EXPECT_EQ(till.told(),
              "event 127 text=Нет позиций для добавления купона на позицию couponNumber=item-1 forCustomer=true");
    EXPECT_EQ(till.log(), "info: Добавление купона Vantiro");
    expectNothingStored(till);
}

TEST(CouponRefusal, CouponOfTheChequeThatIsOfBothKindsNeedsAPositionToo)
{
    TillAtWork till(emptySale()); // both prefixes are "vantiro"

    EXPECT_FALSE(till.addCoupon(u"vantiro-10"_s));

    EXPECT_EQ(till.told(),
              "event 127 text=Нет позиций для добавления купона на позицию couponNumber=vantiro-10 forCustomer=true");
    expectNothingStored(till);
}

TEST(CouponRefusal, PositionThatIsGoneIsNone)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    EXPECT_TRUE(till.contents().remove(1));

    EXPECT_FALSE(till.addCoupon(u"item-1"_s));

    EXPECT_EQ(till.told(),
              "event 127 text=Нет позиций для добавления купона на позицию couponNumber=item-1 forCustomer=true");
}

TEST(CouponRefusal, AnyStateOfThePositionButOneIsNone)
{
    class OddCheque : public till::Cheque {
    public:
        [[nodiscard]] Position getCurrentPosition() override
        {
            return { 2, 1 };
        }
    };
    TillAtWork till(QSharedPointer<OddCheque>::create(), couponsApart());

    EXPECT_FALSE(till.addCoupon(u"item-1"_s));

    EXPECT_EQ(till.told(),
              "event 127 text=Нет позиций для добавления купона на позицию couponNumber=item-1 forCustomer=true");
}

TEST(CouponRefusal, PositionIsAskedForBeforeTheConnection)
{
    TillAtWork till(emptySale(), couponsApart());
    till.goOffline();

    EXPECT_FALSE(till.addCoupon(u"item-1"_s));

    EXPECT_EQ(till.told(),
              "event 127 text=Нет позиций для добавления купона на позицию couponNumber=item-1 forCustomer=true");
}

TEST(CouponRefusal, OfflineDocumentTellsItWithoutACall)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.goOffline();

    EXPECT_FALSE(till.addCoupon(u"cheque-1"_s));

    EXPECT_EQ(till.told(),
              "event 127 text=Нет связи с сервером. Доступно только начисление баллов couponNumber=cheque-1 "
              "forCustomer=true")
        << "no call, and no save: it is offline already";
    EXPECT_EQ(till.log(), "info: Добавление купона Vantiro");
    EXPECT_EQ(couponsInMemory(till.plugin), "");
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));
    EXPECT_FALSE(till.stored(u"pointsForSpend"_s).isValid());
}

TEST(CouponRefusal, OfflineDocumentWithoutACardPromisesNoPoints)
{
    TillAtWork till(TillAtWork::saleWithoutCard(), couponsApart());
    till.goOffline();

    EXPECT_FALSE(till.addCoupon(u"item-1"_s));

    EXPECT_EQ(till.told(), "event 127 text=Нет связи с сервером couponNumber=item-1 forCustomer=true");
}

TEST(CouponRefusal, LostConnectionTurnsTheDocumentOfflineAndSavesIt)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.plugin.pointsForSpend = 12.5;
    till.server.refuse();

    EXPECT_FALSE(till.addCoupon(u"cheque-1"_s));

    till.server.expect("IsCouponValid", "   <tem:couponNumber>cheque-1</tem:couponNumber>\n");
    EXPECT_EQ(till.told(),
              begun
                  + "post IsCouponValid\n"
                    "event 73\n"
                    "save\n"
                    "event 127 text=Нет связи с сервером. Доступно только начисление баллов couponNumber=cheque-1 "
                    "forCustomer=true");
    EXPECT_EQ(till.log(),
              "info: Добавление купона Vantiro\n"
              "info: Валидация купона на сервере\n"
              "error: Произошла ошибка при выполнении запроса соединение отклонено");
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(12.5)) << "the whole loyalty state is stored with the flag";
    EXPECT_EQ(couponsInMemory(till.plugin), "");
    EXPECT_EQ(couponsStored(till), "none stored");
    EXPECT_EQ(till.lastError(), ": ");
}

TEST(CouponRefusal, LostConnectionWithoutACardPromisesNoPoints)
{
    TillAtWork till(TillAtWork::saleWithoutCard(), couponsApart());
    till.server.refuse();

    EXPECT_FALSE(till.addCoupon(u"cheque-1"_s));

    EXPECT_FALSE(till.server.take("IsCouponValid").isEmpty());
    EXPECT_EQ(till.told(),
              begun
                  + "post IsCouponValid\n"
                    "event 73\n"
                    "save\n"
                    "event 127 text=Нет связи с сервером couponNumber=cheque-1 forCustomer=true");
}

TEST(CouponRefusal, ErrorOfAGatewayIsALostConnection)
{
    TillAtWork till(TillAtWork::saleWithoutCard(), couponsApart());
    till.server.end(RestOutcome::http(503, "busy"));

    EXPECT_FALSE(till.addCoupon(u"cheque-1"_s));

    EXPECT_FALSE(till.server.take("IsCouponValid").isEmpty());
    EXPECT_EQ(till.told(),
              begun
                  + "post IsCouponValid\n"
                    "event 73\n"
                    "save\n"
                    "event 127 text=Нет связи с сервером couponNumber=cheque-1 forCustomer=true");
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));
}

TEST(CouponRefusal, AfterALostConnectionTheServerIsNotAskedAgain)
{
    TillAtWork till(TillAtWork::saleWithoutCard(), couponsApart());
    till.server.refuse();
    EXPECT_FALSE(till.addCoupon(u"cheque-1"_s));
    EXPECT_FALSE(till.server.take("IsCouponValid").isEmpty());
    static_cast<void>(till.told());

    EXPECT_FALSE(till.addCoupon(u"cheque-2"_s));
    EXPECT_TRUE(till.plugin.request(till.document()));

    EXPECT_EQ(till.told(), "event 127 text=Нет связи с сервером couponNumber=cheque-2 forCustomer=true");
}

TEST(CouponRefusal, OfflineFlagStoredAsFalseIsOnline)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.store(u"offlineMode"_s, false);
    addWell(till, u"cheque-1"_s);
    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: cheque-1");
}

TEST(CouponRefusal, FaultIsToldInTheServersWords)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.server.fault("Купон погашен на %1%");

    EXPECT_FALSE(till.addCoupon(u"cheque-1"_s));

    till.server.expect("IsCouponValid", "   <tem:couponNumber>cheque-1</tem:couponNumber>\n");
    EXPECT_EQ(till.told(),
              begun
                  + "post IsCouponValid\n"
                    "event 73\n"
                    "event 127 text=Купон погашен на %1% couponNumber=cheque-1 forCustomer=true");
    EXPECT_EQ(till.log(),
              "info: Добавление купона Vantiro\n"
              "info: Валидация купона на сервере");
    expectNothingStored(till);
}

namespace {

struct UselessReply {
    const char* name;
    QByteArray content;

    friend std::ostream& operator<<(std::ostream& stream, const UselessReply& reply)
    {
        return stream << reply.content.toStdString();
    }
};

class UselessReplyToACoupon : public testing::TestWithParam<UselessReply> { };

} // namespace

TEST_P(UselessReplyToACoupon, RefusesItAndLeavesTheDocumentOnline)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.server.end(RestOutcome::http(200, GetParam().content));

    EXPECT_FALSE(till.addCoupon(u"cheque-1"_s));

    EXPECT_FALSE(till.server.take("IsCouponValid").isEmpty());
    EXPECT_EQ(till.told(),
              begun
                  + "post IsCouponValid\n"
                    "event 73\n"
                    "event 127 text=Некорректный ответ от сервера couponNumber=cheque-1 forCustomer=true");
    expectNothingStored(till);
}

INSTANTIATE_TEST_SUITE_P(CouponRefusal, UselessReplyToACoupon,
                         testing::Values(UselessReply { "Empty", "" }, UselessReply { "NotXml", "true" },
                                         UselessReply { "WithoutResult", soap::reply("<IsCouponValidResponse/>") },
                                         UselessReply {
                                             "WithTwoResults",
                                             soap::reply("<R><IsCouponValidResult>true</IsCouponValidResult>"
                                                         "<IsCouponValidResult>true</IsCouponValidResult></R>") }),
                         [](const auto& row) { return std::string(row.param.name); });
