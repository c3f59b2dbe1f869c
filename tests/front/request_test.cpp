#include "host/facilities/exceptions.h"
#include "tests/front/till_at_work.h"
#include "tests/support/client_under_test.h"
#include "till/document/cheque_contents.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// What the host asks while the cheque is open: the discounts, the messages, the points.

namespace {

/// What the answers have left: "discounts 77=17.98; cashier a; client b; points 50.00".
std::string state(TillAtWork& till)
{
    QStringList discounts;
    for (const QSharedPointer<DiscountImpact>& impact : till.plugin.getDiscountImpacts()) {
        const QSharedPointer<DocumentImpactDetail> totals = impact->getTotals();
        discounts.append(u"%1=%2"_s.arg(QString::number(totals->getDiscountCode()),
                                        QString::number(totals->getDiscountSum(), 'f', 2)));
    }
    return readable(u"discounts %1; cashier %2; client %3; points %4"_s.arg(
        discounts.join(u' '), till.plugin.getMessagesToCashier().join(u'|'),
        till.plugin.getMessagesToClient().join(u'|'), QString::number(till.plugin.pointsForSpend, 'f', 2)));
}

}

TEST(Request, GoodAnswersAreKeptAndSaved)
{
    TillAtWork till;
    till.answerRequest("50.25");

    EXPECT_TRUE(till.plugin.request(till.document()));

    EXPECT_EQ(till.told(), "post GetDiscounts\npost GetMessages\npost GetCardDiscountAmount\nsave");
    EXPECT_EQ(till.log(),
              "info: Запрос к бонусной системе Vantiro\n"
              "info: Дисконт получен\n"
              "info: Получение сообщений от системы лояльности\n"
              "info: Получение баллов для списания");
    EXPECT_EQ(till.plugin.discountImpacts.size(), 1);
    EXPECT_EQ(till.plugin.getMessagesToCashier().join(u'|').toStdString(), "Предложите пакет");
    EXPECT_EQ(till.plugin.getMessagesToClient().join(u'|').toStdString(), "Спасибо за покупку");
    EXPECT_EQ(till.plugin.pointsForSpend, 50.25);
    EXPECT_EQ(till.card()->fields.pointsForSpend, 50.25);
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(50.25));
    EXPECT_EQ(till.stored(u"discountImpacts"_s).toList().size(), 1);
    EXPECT_EQ(till.stored(u"bonusImpacts"_s).toList().size(), 0);
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(false));
    EXPECT_FALSE(till.stored(u"checkCoupons"_s).isValid()) << "coupons are stored when they change";
    for (const QByteArray action : { "GetDiscounts", "GetMessages", "GetCardDiscountAmount" }) {
        EXPECT_TRUE(till.server.take(action).contains(u"ChequeNo=\"1042\""_s));
    }
}

TEST(Request, MessagesAndPointsAreAskedForTheChequeAsTheDiscountsLeaveIt)
{
    TillAtWork till;
    till.answerRequest();

    EXPECT_TRUE(till.plugin.request(till.document()));

    EXPECT_FALSE(till.server.take("GetDiscounts").contains(u"DiscountID="_s));
    EXPECT_TRUE(till.server.take("GetMessages").contains(u"DiscountID=\"77\""_s));
    const QString points = till.server.take("GetCardDiscountAmount");
    EXPECT_TRUE(points.contains(u"DiscountID=\"77\""_s));
    EXPECT_TRUE(points.contains(u"<tem:discountCardNumber>9000000001</tem:discountCardNumber>"_s));
}

TEST(Request, CouponsGoWithDiscountsAndMessages)
{
    TillAtWork till(TillAtWork::saleWithCard(), { { u"Vantiro:positionCouponPrefix"_s, u"item-"_s } });
    for (const QString& number : { u"vantiro-10"_s, u"item-5"_s }) {
        till.server.answerText("IsCouponValid", u"true"_s);
        EXPECT_TRUE(till.addCoupon(number));
        EXPECT_TRUE(till.server.take("IsCouponValid").contains(number));
    }
    till.answerRequest();

    EXPECT_TRUE(till.plugin.request(till.document()));

    for (const QByteArray action : { "GetDiscounts", "GetMessages" }) {
        const QString body = till.server.take(action);
        const qsizetype endOfLines = body.indexOf(u"</ChequeLines>"_s);
        const qsizetype onPosition = body.indexOf(u"CouponNo=\"item-5\""_s);
        const qsizetype onCheque = body.indexOf(u"CouponNo=\"vantiro-10\""_s);
        EXPECT_TRUE(0 < onPosition && onPosition < endOfLines) << readable(body);
        EXPECT_TRUE(endOfLines < onCheque) << readable(body);
    }
    EXPECT_FALSE(till.server.take("GetCardDiscountAmount").contains(u"CouponNo"_s));
}

TEST(Request, ReplacesWhatTheRequestBeforeHasLeft)
{
    TillAtWork till;
    till.requestWell("50.25");
    EXPECT_EQ(state(till), "discounts 77=17.98; cashier Предложите пакет; client Спасибо за покупку; points 50.25");
    till.server.answerText("GetDiscounts", QString());
    till.server.answerText("GetMessages", QString());
    till.server.answerText("GetCardDiscountAmount", u"3"_s);

    EXPECT_TRUE(till.plugin.request(till.document()));

    EXPECT_EQ(state(till), "discounts ; cashier ; client ; points 3.00");
    EXPECT_EQ(till.told(), "post GetDiscounts\npost GetMessages\npost GetCardDiscountAmount\nsave");
    EXPECT_EQ(till.log(),
              "info: Запрос к бонусной системе Vantiro\n"
              "info: Нет дисконтных воздействий\n"
              "info: Дисконт получен\n"
              "info: Получение сообщений от системы лояльности\n"
              "info: Получение баллов для списания");
    EXPECT_EQ(till.stored(u"discountImpacts"_s).toList().size(), 0);
    for (const QByteArray action : { "GetDiscounts", "GetMessages", "GetCardDiscountAmount" }) {
        EXPECT_FALSE(till.server.take(action).contains(u"DiscountID="_s));
    }
}

namespace {

struct Delivery {
    const char* rule;
    const char* messages; // the inner document of the reply
    const char* state;
};

void PrintTo(const Delivery& row, std::ostream* out)
{
    *out << row.messages;
}

class RequestMessages : public testing::TestWithParam<Delivery> { };

}

INSTANTIATE_TEST_SUITE_P(
    Devices, RequestMessages,
    testing::Values(
        Delivery { "FirstAloneEmptiesTheCashiers", R"(<R><Msg Device="1" Body="а"/></R>)",
                   "discounts 77=17.98; cashier ; client а; points 1.00" },
        Delivery { "SecondAloneEmptiesTheClients", R"(<R><Msg Device="2" Body="б"/></R>)",
                   "discounts 77=17.98; cashier б; client ; points 1.00" },
        Delivery { "OthersGoNowhere",
                   R"(<R><Msg Device="0" Body="а"/><Msg Device="3" Body="б"/><Msg Device="-1" Body="в"/></R>)",
                   "discounts 77=17.98; cashier ; client ; points 1.00" },
        Delivery { "SeveralStayInOrder",
                   R"(<R><Msg Device="2" Body="в"/><Msg Device="1" Body="б"/><Msg Device="2" Body="а"/></R>)",
                   "discounts 77=17.98; cashier в|а; client б; points 1.00" },
        Delivery { "NoneEmptyBoth", "<R/>", "discounts 77=17.98; cashier ; client ; points 1.00" }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(RequestMessages, AreThoseOfTheLastRequest)
{
    TillAtWork till;
    till.requestWell("50.25");
    till.server.answerText("GetDiscounts",
                           uR"(<R><ChequeLine ChequeLineNo="1"><Discount DiscountID="77" Amount="17.98" Type="Sum")"
                           uR"( Percent="0"/></ChequeLine></R>)"_s);
    till.server.answerText("GetMessages", QString::fromUtf8(GetParam().messages));
    till.server.answerText("GetCardDiscountAmount", u"1"_s);

    EXPECT_TRUE(till.plugin.request(till.document()));

    EXPECT_EQ(state(till), GetParam().state);
    for (const QByteArray action : { "GetDiscounts", "GetMessages", "GetCardDiscountAmount" }) {
        EXPECT_FALSE(till.server.take(action).isEmpty());
    }
}

TEST(Request, WithoutACardLeavesThePointsAlone)
{
    TillAtWork till(TillAtWork::saleWithoutCard());
    till.plugin.setPointsForSpend(till.document(), 12.5);
    till.answerRequest();

    EXPECT_TRUE(till.plugin.request(till.document()));

    EXPECT_EQ(state(till), "discounts 77=17.98; cashier Предложите пакет; client Спасибо за покупку; points 12.50");
    EXPECT_EQ(till.told(), "post GetDiscounts\npost GetMessages\nsave");
    EXPECT_EQ(till.log(),
              "info: Запрос к бонусной системе Vantiro\n"
              "info: Дисконт получен\n"
              "info: Получение сообщений от системы лояльности");
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(12.5));
    EXPECT_FALSE(till.server.take("GetDiscounts").contains(u"DiscountCard"_s));
    EXPECT_FALSE(till.server.take("GetMessages").contains(u"DiscountCard"_s));
}

// The two queries are not the same: one is asked of the open document, the other of the one that the hook was given.
TEST(Request, CardOfTheOpenDocumentDecidesWhetherPointsAreAskedFor)
{
    TillAtWork till;
    const QSharedPointer<AbstractDocument> given = TillAtWork::saleWithoutCard().identity(u"2"_s).build();
    till.server.answerText("GetDiscounts", QString());
    till.server.answerText("GetMessages", QString());

    EXPECT_FALSE(till.plugin.request(given));

    EXPECT_EQ(till.lastError(), "vantiroCardNotFound: В документе нет карты Vantiro");
    EXPECT_EQ(till.told(), "post GetDiscounts\npost GetMessages");
    EXPECT_EQ(till.log(),
              "info: Запрос к бонусной системе Vantiro\n"
              "info: Нет дисконтных воздействий\n"
              "info: Дисконт получен\n"
              "info: Получение сообщений от системы лояльности\n"
              "info: Получение баллов для списания\n"
              "error: В документе нет карты Vantiro");
    EXPECT_FALSE(till.server.take("GetDiscounts").isEmpty());
    EXPECT_FALSE(till.server.take("GetMessages").isEmpty());
}

TEST(Request, StateGoesToTheDocumentThatWasGiven)
{
    TillAtWork till(TillAtWork::saleWithoutCard());
    const QSharedPointer<AbstractDocument> given = TillAtWork::saleWithoutCard().identity(u"2"_s).number(1043).build();
    till.answerRequest();

    EXPECT_TRUE(till.plugin.request(given));

    EXPECT_TRUE(till.server.take("GetDiscounts").contains(u"ChequeNo=\"1043\""_s));
    EXPECT_TRUE(till.server.take("GetMessages").contains(u"ChequeNo=\"1043\""_s));
    EXPECT_EQ(given->getValue(u"Vantiro"_s, u"offlineMode"_s, QVariant()), QVariant(false));
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid()) << "the open document";
}

TEST(Request, FaultOnThePointsIsShownAndTheRequestSucceeds)
{
    TillAtWork till;
    till.requestWell();
    till.server.answerText("GetDiscounts", QString());
    till.server.answerText("GetMessages", QString());
    till.server.fault("Карта заблокирована");

    EXPECT_TRUE(till.plugin.request(till.document()));

    EXPECT_EQ(state(till), "discounts ; cashier ; client ; points 0.00");
    EXPECT_EQ(till.told(),
              "post GetDiscounts\npost GetMessages\npost GetCardDiscountAmount\n"
              "error 0 0 cardExceptionLoyaltyIdentify: Система лояльности: Карта заблокирована\n"
              "save");
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(false));
    for (const QByteArray action : { "GetDiscounts", "GetMessages", "GetCardDiscountAmount" }) {
        EXPECT_FALSE(till.server.take(action).isEmpty());
    }
}

TEST(Request, OfflineDocumentIsLeftAsItIs)
{
    TillAtWork till;
    till.requestWell("50.25");
    till.goOffline();

    EXPECT_TRUE(till.plugin.request(till.document()));

    till.server.expectNothing();
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), "info: Запрос к бонусной системе Vantiro");
    EXPECT_EQ(state(till), "discounts 77=17.98; cashier Предложите пакет; client Спасибо за покупку; points 50.25");
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));
}
