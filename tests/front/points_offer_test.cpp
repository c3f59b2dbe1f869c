#include "host/facilities/exceptions.h"
#include "tests/front/till_at_work.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace Qt::StringLiterals;

// Can points pay on this cheque at all? The server's offer decides.

namespace {

const std::string asking = "info: Получение баллов для списания";
const char* const earnOnly = "undefined: Нет связи с сервером. Доступно только начисление баллов";

class PointsOffer : public testing::Test {
protected:
    PointsOffer()
    {
        till.plugin.pointsForSpend = 12.5; // of an earlier question
        till.card()->setPointsForSpend(12.5);
    }

    [[nodiscard]] bool ask(const QString& offer)
    {
        till.server.answerText("GetCardDiscountAmount", offer);
        const bool result = till.plugin.hasPointsForSpend();
        EXPECT_FALSE(till.server.take("GetCardDiscountAmount").isEmpty());
        return result;
    }

    TillAtWork till;
};

struct Offer {
    const char* rule;
    const char* text;
    double points;
    bool enough;
};

void PrintTo(const Offer& row, std::ostream* out)
{
    *out << row.text;
}

class PointsOfferBorder : public PointsOffer, public testing::WithParamInterface<Offer> { };

}

TEST_F(PointsOffer, IsKeptAndSaved)
{
    EXPECT_TRUE(ask(u"50.25"_s));

    EXPECT_EQ(till.told(), "post GetCardDiscountAmount\nsave");
    EXPECT_EQ(till.log(),
              "info: Получение баллов для списания\n"
              "info: Бонусные баллы получены");
    EXPECT_EQ(till.plugin.pointsForSpend, 50.25);
    EXPECT_EQ(till.card()->fields.pointsForSpend, 50.25);
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(50.25));
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(false));
    EXPECT_EQ(till.lastError(), ": ");
}

TEST_F(PointsOffer, IsAskedForWithCardAndGrantedDiscounts)
{
    till.requestWell();
    till.server.answerText("GetCardDiscountAmount", u"50"_s);

    EXPECT_TRUE(till.plugin.hasPointsForSpend());

    const QString body = till.server.take("GetCardDiscountAmount");
    EXPECT_TRUE(body.contains(u"<tem:discountCardNumber>9000000001</tem:discountCardNumber>"_s));
    EXPECT_TRUE(body.contains(u"ChequeNo=\"1042\""_s));
    EXPECT_TRUE(body.contains(u"DiscountID=\"77\""_s));
    EXPECT_EQ(till.plugin.discountImpacts.size(), 1) << "the discounts stay";
}

INSTANTIATE_TEST_SUITE_P(Offers, PointsOfferBorder,
                         testing::Values(Offer { "HalfAKopeckIsNothing", "0.005", 0.005, false },
                                         Offer { "MoreThanHalfAKopeckIsSomething", "0.0051", 0.0051, true },
                                         Offer { "LessThanHalfAKopeckIsNothing", "0.0049", 0.0049, false },
                                         Offer { "AKopeckIsSomething", "0.01", 0.01, true },
                                         Offer { "NothingIsNothing", "0", 0.0, false },
                                         Offer { "DebtIsNothing", "-5", -5.0, false },
                                         Offer { "MuchIsSomething", "1000000.5", 1000000.5, true }),
                         [](const auto& row) { return std::string(row.param.rule); });

TEST_P(PointsOfferBorder, DecidesAndIsKeptAsItIs)
{
    EXPECT_EQ(ask(QString::fromLatin1(GetParam().text)), GetParam().enough);

    EXPECT_EQ(till.plugin.pointsForSpend, GetParam().points);
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(GetParam().points));
    EXPECT_EQ(till.told(), "post GetCardDiscountAmount\nsave");
    EXPECT_EQ(till.lastError(), ": ");
}

TEST_F(PointsOffer, OfflineDocumentHasNoneAndAsksNothing)
{
    till.goOffline();

    EXPECT_FALSE(till.plugin.hasPointsForSpend());

    till.server.expectNothing();
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), "");
    EXPECT_EQ(till.plugin.pointsForSpend, 0.0);
    EXPECT_EQ(till.card()->fields.pointsForSpend, 12.5);
    EXPECT_FALSE(till.stored(u"pointsForSpend"_s).isValid());
    EXPECT_EQ(till.lastError(), ": ");
}

TEST(PointsOfferWithoutACard, IsAFailureThatAsksNothing)
{
    TillAtWork till(TillAtWork::saleWithoutCard());
    till.plugin.pointsForSpend = 12.5;

    EXPECT_FALSE(till.plugin.hasPointsForSpend());

    till.server.expectNothing();
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), asking + "\nerror: В документе нет карты Vantiro");
    EXPECT_EQ(till.lastError(), "vantiroCardNotFound: В документе нет карты Vantiro");
    EXPECT_EQ(till.plugin.pointsForSpend, 0.0);
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
}

TEST_F(PointsOffer, FaultIsShownAndCountsAsNothing)
{
    till.server.fault("Карта заблокирована");

    EXPECT_FALSE(till.plugin.hasPointsForSpend());

    EXPECT_FALSE(till.server.take("GetCardDiscountAmount").isEmpty());
    EXPECT_EQ(till.told(),
              "post GetCardDiscountAmount\n"
              "error 0 0 cardExceptionLoyaltyIdentify: Система лояльности: Карта заблокирована\n"
              "save");
    EXPECT_EQ(till.log(), asking + "\ninfo: Бонусные баллы получены") << "an answer like any other";
    EXPECT_EQ(till.plugin.pointsForSpend, 0.0);
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(false));
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(0.0));
    EXPECT_EQ(till.card()->fields.pointsForSpend, 0.0) << "written with the state";
}

TEST_F(PointsOffer, LostConnectionMakesTheDocumentOffline)
{
    till.server.refuse();

    EXPECT_FALSE(till.plugin.hasPointsForSpend());

    EXPECT_FALSE(till.server.take("GetCardDiscountAmount").isEmpty());
    EXPECT_EQ(till.told(), "post GetCardDiscountAmount\nsave");
    EXPECT_EQ(till.log(),
              asking
                  + "\nerror: Произошла ошибка при выполнении запроса соединение отклонено\n"
                    "error: Нет связи с сервером");
    EXPECT_EQ(till.lastError(), earnOnly);
    EXPECT_EQ(till.plugin.pointsForSpend, 0.0);
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(0.0));
    EXPECT_EQ(till.card()->fields.pointsForSpend, 0.0);
}

TEST_F(PointsOffer, ErrorStatusOfTheServerCountsAsALostConnection)
{
    till.server.end(RestOutcome::http(404, "<html/>"));

    EXPECT_FALSE(till.plugin.hasPointsForSpend());

    EXPECT_FALSE(till.server.take("GetCardDiscountAmount").isEmpty());
    EXPECT_EQ(till.lastError(), earnOnly);
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));
}

TEST_F(PointsOffer, ThatIsNoNumberIsAFailure)
{
    EXPECT_FALSE(ask(u"12,50"_s));

    EXPECT_EQ(till.told(), "post GetCardDiscountAmount") << "nothing is stored";
    EXPECT_EQ(till.log(), asking + "\nerror: В ответе от сервера не найдена максимальная сумма оплаты");
    EXPECT_EQ(till.lastError(), "vantiroPaymentSumNotFound: В ответе от сервера не найдена максимальная сумма оплаты");
    EXPECT_EQ(till.plugin.pointsForSpend, 0.0);
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
    EXPECT_EQ(till.card()->fields.pointsForSpend, 12.5);
}

TEST_F(PointsOffer, LastErrorOfEarlierStays)
{
    EXPECT_FALSE(ask(u"12,50"_s));
    EXPECT_TRUE(ask(u"50"_s));
    EXPECT_EQ(till.lastError(), "vantiroPaymentSumNotFound: В ответе от сервера не найдена максимальная сумма оплаты");
}

TEST_F(PointsOffer, FailureToStoreReachesTheHost)
{
    till.server.answerText("GetCardDiscountAmount", u"50"_s);
    till.failSaves(u"диск заполнен"_s);

    EXPECT_THROW(static_cast<void>(till.plugin.hasPointsForSpend()), BasicException);

    EXPECT_FALSE(till.server.take("GetCardDiscountAmount").isEmpty());
    EXPECT_EQ(till.plugin.pointsForSpend, 50.0);
    EXPECT_EQ(till.lastError(), ": ");
}

TEST_F(PointsOffer, FailureToStoreTheLostConnectionReachesTheHost)
{
    till.server.refuse();
    till.failSaves(u"диск заполнен"_s);

    EXPECT_THROW(static_cast<void>(till.plugin.hasPointsForSpend()), BasicException);

    EXPECT_FALSE(till.server.take("GetCardDiscountAmount").isEmpty());
    EXPECT_EQ(till.plugin.pointsForSpend, 0.0);
    EXPECT_EQ(till.lastError(), earnOnly);
}

TEST_F(PointsOffer, ExceptionOfAnotherTypeReachesTheHost)
{
    till.server.whilePosting([] { throw BasicException(tr::Tr(u"сбой"_s)); });

    EXPECT_THROW(static_cast<void>(till.plugin.hasPointsForSpend()), BasicException);

    till.server.whilePosting({});
    EXPECT_FALSE(till.server.take("GetCardDiscountAmount").isEmpty());
    EXPECT_EQ(till.plugin.pointsForSpend, 0.0) << "the earlier offer is gone";
    EXPECT_EQ(till.log(), asking);
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
}
