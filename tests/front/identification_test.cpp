#include "host/facilities/exceptions.h"
#include "tests/front/presented_card.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// A card is presented: is it this system's, and what does it hold?

TEST_F(Identification, ValidCardGetsItsBalance)
{
    answerWell();

    EXPECT_TRUE(identify());

    expectBothQuestions();
    EXPECT_EQ(till.told(), "post IsCardValid\npost GetCardBalance") << "nothing is stored for a card that is fine";
    EXPECT_EQ(till.log(),
              "info: Получение информации о карте Vantiro\n"
              "info: Валидация карты на сервере\n"
              "info: Получение баланса карты Vantiro");
    EXPECT_EQ(balance(), "double 1234.5");
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
}

TEST_F(Identification, RecordChangesInItsBalanceAlone)
{
    presented->fields.pointsForSpend = 33.0;
    presented->fields.spentSum = 4.0;
    answerWell();

    EXPECT_TRUE(identify());

    expectBothQuestions();
    EXPECT_EQ(presented->fields.pointsForSpend, 33.0);
    EXPECT_EQ(presented->fields.spentSum, 4.0);
    EXPECT_EQ(presented->fields.number, QVariant(u"9000000002"_s));
}

TEST_F(Identification, NumberOfTheCardIsReadAsText)
{
    presented->fields.number = 9000000002LL;
    answerWell();

    EXPECT_TRUE(identify());

    expectBothQuestions();
}

TEST_F(Identification, TypeOfTheNumberMakesNoDifference)
{
    for (const int numberType : { -1, 0, 1, 2, 77 }) {
        answerWell();
        EXPECT_TRUE(identify(numberType)) << numberType;
        expectBothQuestions();
    }
}

TEST_F(Identification, CardOfAnotherSystemIsNoError)
{
    for (const QString& text : { u"false"_s, u"True"_s, u""_s }) {
        till.server.answerText("IsCardValid", text);

        EXPECT_FALSE(identify()) << text.toStdString();

        till.server.expect("IsCardValid", cardParameter);
        EXPECT_EQ(till.told(), "post IsCardValid");
        EXPECT_EQ(till.log(),
                  "info: Получение информации о карте Vantiro\n"
                  "info: Валидация карты на сервере");
        EXPECT_EQ(till.lastError(), ": ");
        EXPECT_EQ(balance(), "double 11");
    }
}

TEST_F(Identification, LastErrorOfEarlierStaysWhenTheCardIsAnotherSystems)
{
    till.server.fault("Карта заблокирована");
    EXPECT_FALSE(identify());
    till.server.expect("IsCardValid", cardParameter);
    till.server.answerText("IsCardValid", u"false"_s);

    EXPECT_FALSE(identify());

    till.server.expect("IsCardValid", cardParameter);
    EXPECT_EQ(till.lastError(), ": Карта заблокирована");
}

TEST_F(Identification, LastErrorOfEarlierStaysWhenTheCardIsFine)
{
    till.server.fault("Карта заблокирована");
    EXPECT_FALSE(identify());
    till.server.expect("IsCardValid", cardParameter);
    answerWell();

    EXPECT_TRUE(identify());

    expectBothQuestions();
    EXPECT_EQ(till.lastError(), ": Карта заблокирована");
}

TEST_F(Identification, OfflineDocumentAsksNothingAndStoresNothing)
{
    till.goOffline();

    EXPECT_FALSE(identify());

    till.server.expectNothing();
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(),
              "info: Получение информации о карте Vantiro\n"
              "error: Нет связи с сервером");
    EXPECT_EQ(till.lastError(), "requestNoConnection: Нет связи с сервером");
    EXPECT_EQ(balance(), "double 11");
    EXPECT_FALSE(till.stored(u"pointsForSpend"_s).isValid());
}

TEST_F(Identification, LostConnectionMakesTheDocumentOffline)
{
    till.server.refuse();

    EXPECT_FALSE(identify());

    till.server.expect("IsCardValid", cardParameter);
    EXPECT_EQ(till.told(), "post IsCardValid\nsave");
    EXPECT_EQ(till.log(),
              "info: Получение информации о карте Vantiro\n"
              "info: Валидация карты на сервере\n"
              "error: Произошла ошибка при выполнении запроса соединение отклонено\n"
              "error: Нет связи с сервером");
    EXPECT_EQ(till.lastError(), "requestNoConnection: Нет связи с сервером") << "no remark about earning here";
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));
    EXPECT_EQ(balance(), "double 11");
}

TEST_F(Identification, ConnectionLostAtTheBalanceMakesTheDocumentOffline)
{
    till.server.answerText("IsCardValid", u"true"_s);
    till.server.refuse();

    EXPECT_FALSE(identify());

    expectBothQuestions();
    EXPECT_EQ(till.told(), "post IsCardValid\npost GetCardBalance\nsave");
    EXPECT_EQ(till.log(),
              weighing
                  + "error: Произошла ошибка при выполнении запроса соединение отклонено\n"
                    "error: Нет связи с сервером");
    EXPECT_EQ(till.lastError(), "requestNoConnection: Нет связи с сервером");
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));
    EXPECT_EQ(balance(), "double 11");
}

TEST_F(Identification, ErrorStatusOfTheServerCountsAsALostConnection)
{
    till.server.end(RestOutcome::http(503, "<html/>"));

    EXPECT_FALSE(identify());

    till.server.expect("IsCardValid", cardParameter);
    EXPECT_EQ(till.told(), "post IsCardValid\nsave");
    EXPECT_EQ(till.log(),
              validating
                  + "error: Произошла ошибка при выполнении запроса состояние 503\n"
                    "error: Нет связи с сервером");
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));
}

TEST_F(Identification, DocumentThatMustNotGoOfflineStaysOnline)
{
    till.contents().head.offlineAllowed = false;
    till.server.refuse();

    EXPECT_FALSE(identify());

    till.server.expect("IsCardValid", cardParameter);
    EXPECT_EQ(till.told(), "post IsCardValid");
    EXPECT_EQ(till.log(),
              validating
                  + "error: Произошла ошибка при выполнении запроса соединение отклонено\n"
                    "error: Нет связи с сервером");
    EXPECT_EQ(till.lastError(), "requestNoConnection: Нет связи с сервером");
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());

    answerWell();
    EXPECT_TRUE(identify()) << "the next card is asked about again";
    expectBothQuestions();
}

TEST_F(Identification, GoingOfflineStoresTheWholeState)
{
    till.requestWell();
    till.plugin.setPointsForSpend(till.document(), 12.5);
    till.server.refuse();

    EXPECT_FALSE(identify());

    till.server.expect("IsCardValid", cardParameter);
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(12.5));
    EXPECT_EQ(till.stored(u"discountImpacts"_s).toList().size(), 1);
    EXPECT_EQ(till.stored(u"bonusImpacts"_s).toList().size(), 0);
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));
    EXPECT_EQ(till.plugin.discountImpacts.size(), 1) << "what the cheque has earned so far stays";
}

TEST_F(Identification, FailureToStoreReachesTheHost)
{
    till.server.refuse();
    till.failSaves(u"диск заполнен"_s);

    EXPECT_THROW(static_cast<void>(identify()), BasicException);

    till.server.expect("IsCardValid", cardParameter);
    EXPECT_EQ(till.log(), validating + "error: Произошла ошибка при выполнении запроса соединение отклонено");
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_EQ(balance(), "double 11");
}

TEST_F(Identification, ExceptionOfAnotherTypeReachesTheHost)
{
    till.server.whilePosting([] { throw BasicException(tr::Tr(u"сбой"_s)); });

    EXPECT_THROW(static_cast<void>(identify()), BasicException);

    till.server.whilePosting({});
    till.server.expect("IsCardValid", cardParameter);
    EXPECT_EQ(till.log(), asking + "info: Валидация карты на сервере");
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
}
