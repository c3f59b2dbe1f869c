#include "tests/script/script_till.h"
#include "till/script/books.h"
#include "till/script/script_line.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

// The till's book and the service's, side by side.

namespace {

class Books : public ScriptTill {
protected:
    /// Closes a sale of 50.00, less 10.00; its identity at the service.
    [[nodiscard]] QString sell(int number, const QStringList& before = {})
    {
        playWell({ u"open sale %1"_s.arg(number), u"scan 461 @50"_s });
        playWell(before);
        playWell({ u"pay cash"_s });
        const QString uid = till::chequeUid(checkout->document()->getDocumentIdentity());
        playWell({ u"close"_s });
        return uid;
    }

    [[nodiscard]] static QByteArray booked(const QString& uid, const QByteArray& amount,
                                           const QByteArray& spent = "0.00", const QByteArray& status = "Closed")
    {
        return R"({"uid":")" + uid.toUtf8() + R"(","type":"Sale","status":")" + status + R"(","amount":")" + amount
            + R"(","spent":")" + spent + "\"}";
    }

    void serviceHas(const QByteArrayList& cheques)
    {
        books = R"({"cheques":[)" + cheques.join(',') + R"(],"cards":[]})";
    }

    /// "7 sale: difference", a line each.
    [[nodiscard]] std::string compared() const
    {
        QStringList told;
        for (const till::BookLine& line : till::compareBooks(serviceControl)) {
            told.append(line.name + u": "_s + line.difference);
        }
        return told.join(u'\n').toStdString();
    }
};

} // namespace

TEST(ChequeUid, IsTheUuidOfTheIdentity)
{
    EXPECT_EQ(till::chequeUid(u"abc"_s).toStdString(), "B01D8779-68C6-576D-BEF4-26488C9C9223");
    EXPECT_EQ(till::chequeUid(u"1"_s).toStdString(), "11116E73-1C03-5DE6-9130-5F9925AE8AB4");
}

TEST_F(Books, AgreeChequeByCheque)
{
    const QString first = sell(7);
    const QString second = sell(8);
    serviceHas({ booked(second, "40.00"), booked(first, "40.00") });
    EXPECT_EQ(compared(), "7 sale: \n8 sale: ");
}

TEST_F(Books, SumThatDiffersByAKopeck)
{
    serviceHas({ booked(sell(7), "40.01") });
    EXPECT_EQ(compared(), "7 sale: the sums are 40.00 and 40.01");
}

TEST_F(Books, PointsThatDiffer)
{
    const QString uid = sell(7, { u"card 9000000001"_s, u"points 30"_s });
    serviceHas({ booked(uid, "10.00", "29.99") });
    EXPECT_EQ(compared(), "7 sale: the points are 30.00 and 29.99");
    serviceHas({ booked(uid, "10.00", "30.00") });
    EXPECT_EQ(compared(), "7 sale: ");
}

TEST_F(Books, ChequeThatTheServiceDoesNotHave)
{
    (void)sell(7);
    EXPECT_EQ(compared(), "7 sale: the service does not have it");
}

TEST_F(Books, ChequeThatTheTillDoesNotHave)
{
    serviceHas({ booked(u"00000000-0000-0000-0000-000000000000"_s, "5.00") });
    EXPECT_EQ(compared(), "Sale Closed: the till does not have it");
}

TEST_F(Books, ChequeThatTheServiceHasTwice)
{
    const QString uid = sell(7);
    serviceHas({ booked(uid, "40.00"), booked(uid, "40.00") });
    EXPECT_EQ(compared(), "7 sale: the service has it 2 times");
}

TEST_F(Books, OpenChequeIsInNeither)
{
    playWell({ u"open sale 7"_s, u"scan 461 @50"_s });
    EXPECT_EQ(compared(), "");
}

TEST_F(Books, CancelledChequeIsInBothUnlessItWasEmpty)
{
    playWell({ u"open sale 7"_s, u"cancel"_s, u"open sale 8"_s, u"scan 461 @50"_s, u"remove 1"_s });
    const QString uid = till::chequeUid(checkout->document()->getDocumentIdentity());
    playWell({ u"cancel"_s });
    serviceHas({ booked(uid, "50.00", "0.00", "Canceled") });
    EXPECT_EQ(compared(), "8 cancelled: ");
    serviceHas({ booked(uid, "50.00") });
    EXPECT_EQ(compared(), "8 cancelled: cancelled at the till, closed at the service");
}

TEST_F(Books, ClosedChequeThatTheServiceHasCancelledDiffers)
{
    const QString uid = sell(7);
    serviceHas({ booked(uid, "40.00", "0.00", "Canceled") });
    EXPECT_EQ(compared(), "7 sale: closed at the till, cancelled at the service");
}

TEST_F(Books, ReturnedPointsPayForNothing)
{
    playWell({ u"open return 7"_s, u"scan 461 @50"_s });
    const QString uid = till::chequeUid(checkout->document()->getDocumentIdentity());
    playWell({ u"close"_s });
    serviceHas({ booked(uid, "50.00", "-30.00") });
    EXPECT_EQ(compared(), "7 return: ");
}

TEST_F(Books, ServiceThatTellsNoNumberIsRefused)
{
    serviceHas({ booked(u"x"_s, "much") });
    EXPECT_EQ(play(u"expect books agree"_s), "the sandbox tells no number for amount");
}

TEST_F(Books, ServiceThatDoesNotAnswerIsNamed)
{
    const till::ServiceControl nobody(
        { { u"first"_s, QUrl(u"http://127.0.0.1:9/"_s), QUrl(u"http://127.0.0.1:9/"_s) } });
    try {
        (void)till::compareBooks(nobody);
        ADD_FAILURE() << "not refused";
    } catch (const till::ScriptError& error) {
        EXPECT_THAT(error.text().toStdString(),
                    testing::StartsWith("the sandbox at http://127.0.0.1:9/ does not answer: "));
    }
}

TEST(BookTable, HasTotalsAndAVerdict)
{
    till::BookLine good;
    good.name = u"7 sale"_s;
    good.tillSum = 4000;
    good.tillPoints = 3000;
    good.serviceSum = 4000;
    good.servicePoints = 3000;
    till::BookLine lost;
    lost.name = u"8 sale"_s;
    lost.tillSum = 150;
    lost.difference = u"the service does not have it"_s;
    EXPECT_EQ(till::bookTable({ good }).join(u'\n').toStdString(),
              "cheque                    till    points     service    points\n"
              "7 sale                   40.00     30.00       40.00     30.00\n"
              "turnover                 40.00     30.00       40.00     30.00\n"
              "The two books agree, to the kopeck and to the point: 1 cheques.");
    EXPECT_EQ(till::bookTable({ good, lost }).join(u'\n').toStdString(),
              "cheque                    till    points     service    points\n"
              "7 sale                   40.00     30.00       40.00     30.00\n"
              "8 sale                    1.50      0.00           -         -  the service does not have it\n"
              "turnover                 41.50     30.00       40.00     30.00\n"
              "The two books differ at 1 of 2 cheques.");
}
