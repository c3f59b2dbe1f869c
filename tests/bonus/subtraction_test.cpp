#include "tests/bonus/bonus_client.h"
#include "tests/support/cheque_service.h"
#include "tests/support/fixed_time.h"
#include "tests/bonus/impact_text.h"
#include "tests/support/sample_cheque.h"
#include "tests/support/sorted_attributes.h"
#include "tests/support/log_recorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::MatchesRegex;

namespace {

class Subtraction : public testing::Test {
protected:
    /// The spread over positions that the client makes of a reply with this inner text: "1: 10; 2: 2.5".
    [[nodiscard]] std::string spread(const QString& inner)
    {
        service.answerText("SubtractBonus45", inner);
        const QSharedPointer<BonusImpact> impact = client.subtractBonus(document, 100.0);
        EXPECT_TRUE(service.take().body.contains("tem:SubtractBonus45"));
        EXPECT_EQ(impact->getTotals()->getDiscountSum(), 100.0) << "the totals stay at what was asked for";
        const std::string text = impactText(impact);
        const std::size_t start = text.find("details {") + 9;
        return text.substr(start, text.size() - start - 1);
    }

    /// What a subtraction throws whose reply has this inner text.
    [[nodiscard]] std::string refusal(const QString& inner)
    {
        service.answerText("SubtractBonus45", inner);
        return refusalOfNext();
    }

    [[nodiscard]] std::string refusalOfNext()
    {
        std::string failure = failureOf([&] { (void)client.subtractBonus(document, 100.0); });
        EXPECT_TRUE(service.take().body.contains("tem:SubtractBonus45"));
        service.expectNothing(); // above all no cancellation: whether the points are gone is not known here
        return failure;
    }

    ChequeService service;
    BonusClient client;
    QSharedPointer<till::Cheque> document = sample::cheque(EDocumentType::sale);
    QSharedPointer<till::Card> card = sample::addCard(*document);
    const LogRecorder log;
};

}

TEST_F(Subtraction, SendsCardAmountAndCheque)
{
    service.answerText("SubtractBonus45", QStringLiteral("<Answer/>"));

    EXPECT_FALSE(client.subtractBonus(document, 100.5).isNull());

    service.expect("SubtractBonus45",
                   "   <tem:discountCardNumber>9000000001</tem:discountCardNumber>\n"
                   "   <tem:amount>100.50</tem:amount>\n"
                       + chequeParameter(sample::openChequeWithCard()));
}

TEST_F(Subtraction, ChequeShowsThePointsThatTheDocumentHolds)
{
    document->impacts.append(sample::points(15.0, 15.0));
    document->head.documentSum = 164.80;
    service.answerText("SubtractBonus45", QStringLiteral("<Answer/>"));

    EXPECT_FALSE(client.subtractBonus(document, 1.0).isNull());

    service.expect(
        "SubtractBonus45",
        "   <tem:discountCardNumber>9000000001</tem:discountCardNumber>\n"
        "   <tem:amount>1.00</tem:amount>\n"
            + chequeParameter(
                sample::chequeTag(
                    R"(Amount="164.80" SubtractedBonus="15.00" PositionCount="1" ChequeType="Sale" Status="Open")")
                + sample::cardElement("15.00") + sample::lines("194.80", "15.00") + sample::sections + "</Cheque>\n"));
}

TEST_F(Subtraction, AmountIsRoundedOnTheWireAlone)
{
    service.answerText("SubtractBonus45", QStringLiteral("<Answer/>"));

    const auto impact = client.subtractBonus(document, 10.129);

    EXPECT_TRUE(service.take().body.contains("<tem:amount>10.13</tem:amount>"));
    EXPECT_EQ(impact->getTotals()->getDiscountSum(), 10.129);
    EXPECT_EQ(impact->getTotals()->getDiscountRate(), QVariant(10.129));
}

TEST_F(Subtraction, AmountIsNotLimited)
{
    for (const auto& [amount, text] : { std::pair { -5.0, "-5.00" }, { 0.0, "0.00" }, { 1e6, "1000000.00" } }) {
        service.answerText("SubtractBonus45", QStringLiteral("<Answer/>"));
        EXPECT_EQ(client.subtractBonus(document, amount)->getTotals()->getDiscountSum(), amount);
        EXPECT_TRUE(service.take().body.contains(QByteArray("<tem:amount>") + text + "</tem:amount>"));
    }
}

TEST_F(Subtraction, NumberOfTheCardIsReadAsText)
{
    card->fields.number = 9000000001LL;
    service.answerText("SubtractBonus45", QStringLiteral("<Answer/>"));

    EXPECT_FALSE(client.subtractBonus(document, 1.0).isNull());

    EXPECT_TRUE(service.take().body.contains("<tem:discountCardNumber>9000000001</tem:discountCardNumber>"));
}

TEST_F(Subtraction, RecordHoldsAmountCardAndSpread)
{
    service.answerText("SubtractBonus45",
                       QStringLiteral(R"(<Answer><ChequeLine ChequeLineNo="1" Amount="60.25"/>)"
                                      R"(<ChequeLine ChequeLineNo="2" Amount="40"/></Answer>)"));
    const FixedTime clock(QDateTime(QDate(2001, 1, 1), QTime(0, 0)));

    const QDateTime before = QDateTime::currentDateTime();
    const auto impact = client.subtractBonus(document, 100.25);
    const QDateTime after = QDateTime::currentDateTime();

    EXPECT_TRUE(service.take().body.contains("tem:SubtractBonus45"));
    const auto totals = impact->getTotals();
    EXPECT_LE(before, totals->getDateTime()) << "the time is taken directly, not from the clock that can be replaced";
    EXPECT_LE(totals->getDateTime(), after);
    EXPECT_EQ(totals->getCardRecord(), card);
    totals->setDateTime(QDateTime(QDate(2026, 1, 31), QTime(10, 16)));
    EXPECT_EQ(
        impactText(impact),
        "'Баллы Vantiro' at 2026-01-31T10:16:00, type 5, rate double 100.25, mode 2, object 0, position 0, "
        "sum 100.25, code 0, source 2, minimum price kept, card 9000000001, index int 77, details {1: 60.25; 2: 40}");
}

TEST_F(Subtraction, RecordIsPreparedWithoutTheServer)
{
    const auto impact = client.prepareBonusImpact(document, 7.5);

    impact->getTotals()->setDateTime(QDateTime(QDate(2026, 1, 31), QTime(10, 16)));
    EXPECT_EQ(impactText(impact),
              "'Баллы Vantiro' at 2026-01-31T10:16:00, type 5, rate double 7.5, mode 2, object 0, position 0, sum 7.5, "
              "code 0, source 2, minimum price kept, card 9000000001, index int 77, details {}");
    service.expectNothing();
    EXPECT_EQ(readable(log.lines()), "");
}

TEST_F(Subtraction, TouchesNeitherCardNorDocument)
{
    card->setPointsForSpend(33.0);
    service.answerText("SubtractBonus45", QStringLiteral("<Answer/>"));

    EXPECT_FALSE(client.subtractBonus(document, 1.0).isNull());

    EXPECT_TRUE(service.take().body.contains("tem:SubtractBonus45"));
    EXPECT_EQ(card->fields.pointsForSpend, 33.0);
    EXPECT_EQ(card->fields.spentSum, 0.0);
    EXPECT_TRUE(document->impacts.isEmpty());
}

TEST_F(Subtraction, DocumentWithoutLinesGivesTotalsAlone)
{
    EXPECT_EQ(spread(QStringLiteral("<Answer/>")), "");
}

TEST_F(Subtraction, LinesNeedNotAddUp)
{
    EXPECT_EQ(spread(QStringLiteral(R"(<A><ChequeLine ChequeLineNo="1" Amount="500.005"/>)"
                                    R"(<ChequeLine ChequeLineNo="-2" Amount="-1"/></A>)")),
              "-2: -1; 1: 500.005");
}

TEST_F(Subtraction, LinesStandAtAnyDepth)
{
    EXPECT_EQ(spread(QStringLiteral(R"(<A><B><ChequeLine ChequeLineNo="1" Amount="1">)"
                                    R"(<ChequeLine ChequeLineNo="2" Amount="2"/></ChequeLine></B></A>)")),
              "1: 1; 2: 2");
}

// The till's records add up what comes for one position; each line is handed over, in order.
TEST_F(Subtraction, LineThatComesTwiceIsAddedTwice)
{
    EXPECT_EQ(spread(QStringLiteral(R"(<A><ChequeLine ChequeLineNo="1" Amount="1.5"/>)"
                                    R"(<ChequeLine ChequeLineNo="1" Amount="2.5"/></A>)")),
              "1: 4");
}

TEST_F(Subtraction, NothingElseOfTheAnswerIsRead)
{
    EXPECT_EQ(spread(QStringLiteral(
                  R"(<A Amount="bad"><Cheque Amount="x"/><chequeLine/><x:ChequeLine xmlns:x="urn:x"/></A>)")),
              "");
}

TEST_F(Subtraction, AnswerMayBeEscapedOnceMore)
{
    EXPECT_EQ(
        spread(QStringLiteral("&lt;A&gt;&lt;ChequeLine ChequeLineNo=&quot;1&quot; Amount=&apos;60.25&apos;/&gt;&#xD;"
                              "&lt;/A&gt;")),
        "1: 60.25");
}

// The answer is parsed as it stands first, and again without its escapes; only the second reading counts.
TEST_F(Subtraction, FirstReadingLeavesNothingBehind)
{
    EXPECT_EQ(spread(QStringLiteral(R"(<A><ChequeLine ChequeLineNo="1" Amount="1"/>)"
                                    R"(&lt;ChequeLine ChequeLineNo="2" Amount="2"/&gt;</A>)")),
              "1: 1; 2: 2");
}

TEST_F(Subtraction, SecondReadingAloneDecides)
{
    EXPECT_EQ(refusal(QStringLiteral(R"(<A><ChequeLine ChequeLineNo="1" Amount="1"/>&lt;</A>)")),
              failure::incorrectAnswer);

    EXPECT_THAT(readable(log.lines()),
                MatchesRegex(R"(error vantiro: Не удалось интерпретировать ответ от сервера\(.+, \[1,[0-9]+\]\))"));
}

TEST_F(Subtraction, FirstOfTwoResultsIsTaken)
{
    service.answer("<SubtractBonus45Result>&lt;A/&gt;</SubtractBonus45Result>"
                   "<SubtractBonus45Result>neither XML nor read</SubtractBonus45Result>");

    EXPECT_FALSE(client.subtractBonus(document, 1.0).isNull());

    EXPECT_TRUE(service.take().body.contains("tem:SubtractBonus45"));
}

TEST_F(Subtraction, AnswerIsDumpedToTheTraceWithoutItsEscapes)
{
    EXPECT_EQ(spread(QStringLiteral("&lt;A Note=&quot;%1&quot;&gt;&lt;B/&gt;&lt;/A&gt;")), "");

    EXPECT_EQ(readable(log.lines()), "trace vantiro: Данные ответа от сервера: \n<A Note=\"%1\">\n <B/>\n</A>\n");
}

TEST_F(Subtraction, WithoutACardSendsNothing)
{
    EXPECT_EQ(failureOf([&] { (void)client.subtractBonus(sample::cheque(EDocumentType::sale), 1.0); }),
              "VantiroException vantiroCardNotFound: В документе нет карты Vantiro");

    service.expectNothing();
    EXPECT_EQ(readable(log.lines()), "");
}

TEST_F(Subtraction, MissingResultIsRefused)
{
    service.answer(R"(<SubtractBonus45Response xmlns="http://tempuri.org/"/>)");

    EXPECT_EQ(refusalOfNext(), failure::incorrectAnswer);
    EXPECT_EQ(readable(log.lines()), "");
}

TEST_F(Subtraction, AnswerThatIsNoXmlIsRefused)
{
    EXPECT_EQ(refusal(QStringLiteral("<A>\n <ChequeLine ChequeLineNo=\"1\" Amount=\"1\"/>\n </Wrong>")),
              failure::incorrectAnswer);

    EXPECT_THAT(readable(log.lines()),
                MatchesRegex(R"(error vantiro: Не удалось интерпретировать ответ от сервера\(.+, \[3,[0-9]+\]\))"));
}

TEST_F(Subtraction, EmptyAnswerIsRefused)
{
    EXPECT_EQ(refusal(QString()), failure::incorrectAnswer);

    EXPECT_THAT(
        readable(log.lines()),
        MatchesRegex(R"(error vantiro: Не удалось интерпретировать ответ от сервера\(.*, \[[0-9]+,[0-9]+\]\))"));
}

TEST_F(Subtraction, AnswerWithDocumentTypeIsRefused)
{
    EXPECT_EQ(refusal(QStringLiteral("<!DOCTYPE A><A/>")), failure::incorrectAnswer);
    EXPECT_EQ(refusal(QStringLiteral("&lt;!DOCTYPE A&gt;&lt;A/&gt;")), failure::incorrectAnswer);
}

TEST_F(Subtraction, AnswerNestedWithoutEndIsRefused)
{
    EXPECT_EQ(refusal(QStringLiteral("<a>").repeated(20000) + QStringLiteral("</a>").repeated(20000)),
              failure::incorrectAnswer);
    EXPECT_EQ(refusal(QStringLiteral("&lt;a>").repeated(20000) + QStringLiteral("&lt;/a>").repeated(20000)),
              failure::incorrectAnswer);
}

TEST_F(Subtraction, DamagedLineCostsTheRecord)
{
    for (const char* const attributes :
         { R"(Amount="1")", R"(ChequeLineNo="" Amount="1")", R"(ChequeLineNo="x" Amount="1")",
           R"(ChequeLineNo="1.0" Amount="1")", R"(ChequeLineNo="2147483648" Amount="1")", R"(ChequeLineNo="1")",
           R"(ChequeLineNo="1" Amount="")", R"(ChequeLineNo="1" Amount="12,50")", R"(ChequeLineNo="1" Amount="x")" }) {
        EXPECT_EQ(refusal(QStringLiteral(R"(<A><ChequeLine ChequeLineNo="9" Amount="9"/><ChequeLine )")
                          + QLatin1String(attributes) + QStringLiteral("/></A>")),
                  failure::incorrectAnswer)
            << attributes;
    }
    for (const QString& line : log.lines()) {
        EXPECT_TRUE(line.startsWith(QStringLiteral("trace vantiro: Данные ответа от сервера: \n"))) << readable(line);
    }
    EXPECT_EQ(log.lines().size(), 9);
}

TEST_F(Subtraction, LostReplyIsNotAskedForAgainAndNotCompensated)
{
    service.refuse();

    EXPECT_EQ(refusalOfNext(), failure::noConnection);
}

TEST_F(Subtraction, FaultPassesThrough)
{
    service.fault("Недостаточно баллов");

    EXPECT_EQ(refusalOfNext(), failure::fault("Недостаточно баллов"));
    EXPECT_EQ(readable(log.lines()), "");
}
