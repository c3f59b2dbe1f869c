#include "tests/front/heard_events.h"
#include "tests/front/kept_state.h"
#include "tests/front/passed_on.h"
#include "tests/support/client_under_test.h"

#include <gtest/gtest.h>

#include <utility>

using namespace Qt::StringLiterals;

// A closed document while the first server is away, and while parts of the till fail.

namespace {

void close(TillAtWork& till)
{
    till.tell(TillAtWork::event(10, till.document()));
}

/// The second of two servers becomes the one in use.
void goToTheSecondServer(TillAtWork& till)
{
    till.server.refuse();
    till.server.answerText("IsCouponValid", u"false"_s);
    EXPECT_TRUE(till.addCoupon(u"vantiro-1"_s));
    EXPECT_EQ(readable(till.server.take().url.toString()), "http://first/");
    EXPECT_EQ(readable(till.server.take().url.toString()), "http://second/");
    static_cast<void>(till.told());
    static_cast<void>(till.log());
}

const TillAtWork::Settings twoServers { { u"Vantiro:hosts"_s, u"http://first/,http://second/"_s } };

/// A printer without paper.
class FailingPrinter : public TextPrinter {
public:
    FailingPrinter()
        : former(std::exchange(MockFactory<TextPrinter>::mocked, this))
    {
    }

    ~FailingPrinter() override
    {
        MockFactory<TextPrinter>::mocked = former;
    }

    void printText(const QString&, int) override
    {
        throw BasicException(tr::Tr(u"нет бумаги"_s));
    }

private:
    TextPrinter* former;
};

} // namespace

TEST(ClosedDocument, AwayFromTheFirstServerTheLookForABetterOneComesFirst)
{
    TillAtWork till(TillAtWork::saleWithoutCard().closed(), twoServers);
    goToTheSecondServer(till);
    till.server.answer("<AccrualResponse/>");

    close(till);

    EXPECT_EQ(till.told(), "event 245\npost Accrual");
    EXPECT_EQ(readable(till.server.take().url.toString()), "http://second/");
    EXPECT_EQ(till.log(),
              "info: Пинг серверов\n"
              "info: Отправка чека на сервер в online режиме\n"
              "info: Отправка чека на сервер\n"
              "info: Чек отправлен в online режиме");
}

TEST(ClosedDocument, FailureToLookForABetterServerPassesOnBeforeAnythingIsSent)
{
    TillAtWork till(TillAtWork::saleWithoutCard().closed(), twoServers);
    goToTheSecondServer(till);
    giveLoyaltyData(till.plugin);
    const HeardEvents events([](const Event& event) {
        if (event.getCode() == 245) {
            throw BasicException(tr::Tr(u"нет потоков"_s));
        }
    });

    EXPECT_EQ(passedOn([&till] { close(till); }), "нет потоков");

    EXPECT_EQ(till.told(), "event 245");
    EXPECT_EQ(loyaltyDataOf(till.plugin), loyalty_data::asGiven);
}

TEST(ClosedDocument, FailureOfTheQueuePassesOnWithTheLoyaltyDataKept)
{
    TillAtWork till(TillAtWork::saleWithoutCard().closed());
    giveLoyaltyData(till.plugin);
    till.server.refuse();
    till.queue.fail(tr::Tr(u"диск полон"_s));

    EXPECT_EQ(passedOn([&till] { close(till); }), "диск полон");

    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
    EXPECT_TRUE(QString::fromStdString(till.log()).endsWith(u"\ninfo: Отправка чека на сервер в режиме offline"_s));
    EXPECT_EQ(loyaltyDataOf(till.plugin), loyalty_data::asGiven);
}

TEST(ClosedDocument, FailureOfThePrinterPassesOnAndQueuesNothing)
{
    TillAtWork till(TillAtWork::saleWithoutCard().closed());
    giveLoyaltyData(till.plugin);
    const FailingPrinter printer;
    till.server.answerText("Accrual", u"Спасибо"_s);

    EXPECT_EQ(passedOn([&till] { close(till); }), "нет бумаги");

    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
    EXPECT_EQ(till.told(), "post Accrual") << "the server has the cheque: it must not go out a second time";
    EXPECT_EQ(loyaltyDataOf(till.plugin), loyalty_data::asGiven);
}
