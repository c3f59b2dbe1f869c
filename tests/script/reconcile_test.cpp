#include "tests/script/script_till.h"
#include "till/script/books.h"
#include "till/script/reconcile.h"
#include "till/store/document_states.h"
#include "till/store/queue_records.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::StartsWith;

// What a person is told of each document, and when the whole does not hold.

namespace {

class Reconcile : public ScriptTill {
protected:
    /// What a second service, of a state of its own, has booked.
    QByteArray secondBooks = R"({"state":"two","cheques":[],"entries":[],"cards":[]})";

    void SetUp() override
    {
        results["GetDiscounts"] = "<R/>";
        books = R"({"state":"one","cheques":[],"entries":[],"cards":[]})";
        serviceControl = till::ServiceControl({ { u"first"_s, service.url(), control.url() },
                                                { u"second"_s, service.url(), secondControl.url() } });
    }

    [[nodiscard]] QString uid() const
    {
        return till::chequeUid(checkout->document()->getDocumentIdentity());
    }

    /// Closes a sale of 50.00; its identity at the service.
    [[nodiscard]] QString sell(const QStringList& before = {})
    {
        playWell({ u"open sale 7"_s, u"scan 461 @50"_s });
        playWell(before);
        playWell({ u"pay cash"_s });
        const QString own = uid();
        playWell({ u"close"_s });
        return own;
    }

    [[nodiscard]] static QByteArray booked(const QString& uid, const QByteArray& amount = "50.00",
                                           const QByteArray& status = "Closed", const QByteArray& more = {})
    {
        return R"({"uid":")" + uid.toUtf8() + R"(","type":"Sale","status":")" + status + R"(","amount":")" + amount + '"'
            + (more.isEmpty() ? R"(,"spent":"0.00")" : more) + '}';
    }

    [[nodiscard]] static QByteArray spending(const QString& uid, const QByteArray& kind, const QByteArray& points)
    {
        return R"({"card":"9000000001","uid":")" + uid.toUtf8() + R"(","kind":")" + kind + R"(","points":")" + points + "\"}";
    }

    [[nodiscard]] static QByteArray booksOf(const QByteArray& state, const QByteArrayList& cheques,
                                            const QByteArrayList& entries = {})
    {
        return R"({"state":")" + state + R"(","cheques":[)" + cheques.join(',') + R"(],"entries":[)" + entries.join(',')
            + R"(],"cards":[]})";
    }

    /// The report, a line each, with U for the identity.
    [[nodiscard]] std::string report(const QString& identity) const
    {
        const till::Reconciliation result = till::reconcile(serviceControl);
        QString text = till::reconciliationReport(result).join(u'\n');
        EXPECT_EQ(result.holds(), text.endsWith(u"all is accounted for"));
        return text.replace(identity, u"U"_s).toStdString();
    }

private:
    vantiro_test::LoopbackServer secondControl { [this](const vantiro_test::HttpRequest&) {
        return vantiro_test::Answer::reply(200, secondBooks);
    } };
};

constexpr const char* accounted = "lost 0, phantom 0, doubled 0, of another value 0: all is accounted for";

} // namespace

TEST_F(Reconcile, NothingIsAccountedFor)
{
    EXPECT_EQ(report(u"-"_s), std::string("0 applied, 0 pending, 0 refused, 0 in doubt\n") + accounted);
}

TEST_F(Reconcile, SaleThatTheServiceHasIsApplied)
{
    const QString own = sell();
    books = booksOf("one", { booked(own) });
    EXPECT_EQ(report(own),
              std::string("applied    7 sale            U\n1 applied, 0 pending, 0 refused, 0 in doubt\n") + accounted);
}

TEST_F(Reconcile, OpenChequeIsNotSpokenOf)
{
    playWell({ u"open sale 7"_s, u"scan 461 @50"_s });
    EXPECT_EQ(report(uid()), std::string("0 applied, 0 pending, 0 refused, 0 in doubt\n") + accounted);
}

TEST_F(Reconcile, QueuedSaleIsPending)
{
    down = true;
    const QString own = sell();
    EXPECT_EQ(report(own),
              std::string("pending    7 sale            U  record 1 of the queue\n"
                          "0 applied, 1 pending, 0 refused, 0 in doubt\n")
                  + accounted);
    till::store::setAside(1, till::store::RecordState::held, 0, u"later"_s);
    EXPECT_THAT(report(own), StartsWith("pending    7 sale            U  record 1 of the queue: later\n"));
}

TEST_F(Reconcile, RefusedAndDamagedRecordsAreToldWithTheirReason)
{
    down = true;
    const QString own = sell();
    for (const auto state : { till::store::RecordState::refused, till::store::RecordState::damaged }) {
        till::store::setAside(1, state, 1, u"no such card"_s);
        EXPECT_EQ(report(own),
                  std::string("refused    7 sale            U  record 1 of the queue: no such card\n"
                              "0 applied, 0 pending, 1 refused, 0 in doubt\n")
                      + accounted);
    }
}

TEST_F(Reconcile, ChequeThatIsBeingToldIsPending)
{
    playWell({ u"open sale 7"_s, u"scan 461 @50"_s });
    till::store::saveAs(checkout->document(), till::store::DocumentState::closing);
    EXPECT_THAT(report(uid()),
                StartsWith("pending    7 sale            U  the till will tell it when it starts again\n"));
}

TEST_F(Reconcile, SaleThatNobodyHasIsLost)
{
    const QString own = sell();
    EXPECT_EQ(report(own),
              "LOST       7 sale            U  no server has it, and it waits nowhere\n"
              "0 applied, 0 pending, 0 refused, 0 in doubt\n"
              "lost 1, phantom 0, doubled 0, of another value 0: THE BOOKS DO NOT AGREE");
}

TEST_F(Reconcile, SaleThatTheTillDoesNotKnowIsAPhantom)
{
    books = booksOf("one", { booked(u"STRANGE"_s) });
    EXPECT_EQ(report(u"STRANGE"_s),
              "PHANTOM    Sale Closed       U  applied, but the till does not know it\n"
              "0 applied, 0 pending, 0 refused, 0 in doubt\n"
              "lost 0, phantom 1, doubled 0, of another value 0: THE BOOKS DO NOT AGREE");
}

TEST_F(Reconcile, SaleThatTheTillHasNotClosedIsAPhantom)
{
    playWell({ u"open sale 7"_s, u"scan 461 @50"_s });
    books = booksOf("one", { booked(uid()) });
    EXPECT_THAT(report(uid()), StartsWith("PHANTOM    7 sale            U  applied, but the till has not closed it\n"));
}

TEST_F(Reconcile, SaleThatTwoServicesHaveIsDoubled)
{
    const QString own = sell();
    books = booksOf("one", { booked(own) });
    secondBooks = booksOf("two", { booked(own) });
    EXPECT_EQ(report(own),
              "DOUBLED    7 sale            U  applied by 2 servers\n"
              "0 applied, 0 pending, 0 refused, 0 in doubt\n"
              "lost 0, phantom 0, doubled 1, of another value 0: THE BOOKS DO NOT AGREE");
}

TEST_F(Reconcile, TwoEndsOfOneServiceCountOnce)
{
    const QString own = sell();
    books = booksOf("one", { booked(own) });
    secondBooks = books;
    EXPECT_THAT(report(own), StartsWith("applied    7 sale            U\n1 applied"));
}

TEST_F(Reconcile, KopeckOrPointMoreIsADifference)
{
    const QString own = sell();
    books = booksOf("one", { booked(own, "50.01") });
    EXPECT_EQ(report(own),
              "DIFFERENT  7 sale            U  the till has 50.00 and 0.00 points, the service 50.01 and 0.00 points\n"
              "0 applied, 0 pending, 0 refused, 0 in doubt\n"
              "lost 0, phantom 0, doubled 0, of another value 1: THE BOOKS DO NOT AGREE");
    books = booksOf("one", { booked(own, "50.00", "Closed", R"(,"spent":"0.01")") });
    EXPECT_THAT(report(own),
                HasSubstr("the till has 50.00 and 0.00 points, the service 50.00 and 0.01 points"));
}

TEST_F(Reconcile, ClosedHereAndCancelledThereIsADifference)
{
    const QString own = sell();
    books = booksOf("one", { booked(own, "50.00", "Canceled") });
    EXPECT_EQ(report(own),
              "DIFFERENT  7 sale            U  the till has closed it, the service has it cancelled\n"
              "0 applied, 0 pending, 0 refused, 0 in doubt\n"
              "lost 0, phantom 0, doubled 0, of another value 1: THE BOOKS DO NOT AGREE");
}

TEST_F(Reconcile, CancelledHereAndClosedThereIsADifference)
{
    playWell({ u"open sale 7"_s, u"scan 461 @50"_s });
    const QString own = uid();
    playWell({ u"cancel"_s });
    books = booksOf("one", { booked(own, "50.00", "Canceled") });
    EXPECT_THAT(report(own), StartsWith("applied    7 cancelled       U\n"));
    books = booksOf("one", { booked(own) });
    EXPECT_THAT(report(own),
                StartsWith("DIFFERENT  7 cancelled       U  the till has cancelled it, the service has it closed\n"));
}

TEST_F(Reconcile, AnotherEndThatTheServiceHasRefusedIsTold)
{
    const QString own = sell();
    books = booksOf("one", { booked(own, "50.00", "Closed", R"(,"spent":"0.00","conflicts":1)") });
    EXPECT_EQ(report(own),
              std::string("applied    7 sale            U  the service was told another end of it, too, and has refused that\n"
                          "1 applied, 0 pending, 0 refused, 0 in doubt\n")
                  + accounted);
}

TEST_F(Reconcile, PointsTakenWithoutTheTillAreInDoubtAndCountedApart)
{
    const QString own = sell();
    books = booksOf("one", { booked(own) }, { spending(own, "subtract", "-30.00") });
    EXPECT_EQ(report(own),
              std::string("applied    7 sale            U\n"
                          "in doubt   30.00 points of card 9000000001 for cheque U: the service took them, and the till never "
                          "got the answer\n"
                          "1 applied, 0 pending, 0 refused, 1 in doubt\n")
                  + accounted);
}

TEST_F(Reconcile, PointsThatWereGivenBackAreInNoDoubt)
{
    const QString own = sell();
    for (const char* const kind : { "cancel", "settle", "give-back" }) {
        books = booksOf("one", { booked(own) }, { spending(own, "subtract", "-30.00"), spending(own, kind, "30.00"),
                                                  spending(own, "earn", "2.50") });
        EXPECT_THAT(report(own), HasSubstr("1 applied, 0 pending, 0 refused, 0 in doubt\n")) << kind;
    }
}

TEST_F(Reconcile, PointsThatPaidAreInNoDoubt)
{
    const QString own = sell({ u"card 9000000001"_s, u"request"_s, u"points 30"_s });
    books = booksOf("one", { booked(own, "20.00", "Closed", R"(,"spent":"30.00")") },
                    { spending(own, "subtract", "-30.00") });
    EXPECT_EQ(report(own),
              std::string("applied    7 sale            U\n1 applied, 0 pending, 0 refused, 0 in doubt\n") + accounted);
}

TEST_F(Reconcile, EmptyCancelledChequeIsToldToNobody)
{
    playWell({ u"open sale 7"_s, u"cancel"_s });
    EXPECT_EQ(report(u"-"_s), std::string("0 applied, 0 pending, 0 refused, 0 in doubt\n") + accounted);
}

TEST(UidOfMessage, IsThatOfTheChequeInIt)
{
    EXPECT_EQ(till::uidOfMessage(R"({"body":"<a><cheque>&lt;Cheque ChequeUID='U'/&gt;</cheque></a>"})").toStdString(), "U");
    EXPECT_EQ(till::uidOfMessage(R"({"body":"<a><cheque>none</cheque></a>"})").toStdString(), "");
    EXPECT_EQ(till::uidOfMessage("no message").toStdString(), "");
}
