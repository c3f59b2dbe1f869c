#include "tests/bonus/bonus_client.h"
#include "tests/support/cheque_service.h"
#include "tests/support/fixed_time.h"
#include "tests/bonus/impact_text.h"
#include "tests/support/sample_cheque.h"
#include "tests/support/sorted_attributes.h"
#include "tests/support/log_recorder.h"

#include <QDomDocument>
#include <QLocale>

#include <gtest/gtest.h>

namespace {

class DiscountsReply : public testing::Test {
protected:
    /// The records that the client makes of the inner document of a reply.
    [[nodiscard]] QList<QSharedPointer<DiscountImpact>> read(const QString& inner)
    {
        service.answerText("GetDiscounts", inner);
        QList<QSharedPointer<DiscountImpact>> impacts = client.getDiscounts(document, {}, {});
        EXPECT_TRUE(service.take().body.contains("tem:GetDiscounts"));
        return impacts;
    }

    const FixedTime clock { QDateTime(QDate(2026, 1, 31), QTime(10, 16)) };
    ChequeService service;
    BonusClient client;
    QSharedPointer<till::Cheque> document = sample::cheque(EDocumentType::sale);
};

// The start and the end of the line that `impactText` gives for a record of a cheque without a card.
const std::string onCheque = "'Скидка Vantiro на чек' at 2026-01-31T10:16:00, ";
const std::string onPosition = "'Скидка Vantiro на позицию' at 2026-01-31T10:16:00, ";
const std::string noCard = ", source 2, minimum price kept, card none, index none, details {}\n";

}

TEST_F(DiscountsReply, EmptyTextIsNoDiscounts)
{
    const LogRecorder log;

    EXPECT_TRUE(read(QString()).isEmpty());

    EXPECT_EQ(readable(log.lines()), "info vantiro: Нет дисконтных воздействий");
}

TEST_F(DiscountsReply, DiscountOnTheCheque)
{
    EXPECT_EQ(impactTexts(read(
                  QStringLiteral(R"(<Answer><Cheque><Discount DiscountID="7" Amount="12.50"/></Cheque></Answer>)"))),
              onCheque + "type 2, rate none, mode 2, object 0, position 0, sum 12.5, code 7" + noCard);
}

TEST_F(DiscountsReply, TypeAndPercentOfAChequeDiscountAreNotRead)
{
    EXPECT_EQ(impactTexts(read(QStringLiteral(
                  R"(<Cheque><Discount DiscountID="7" Amount="12.50" Type="Percent" Percent="ten"/></Cheque>)"))),
              onCheque + "type 2, rate none, mode 2, object 0, position 0, sum 12.5, code 7" + noCard);
}

TEST_F(DiscountsReply, PercentDiscountOnAPosition)
{
    EXPECT_EQ(impactTexts(read(QStringLiteral(R"(<ChequeLines><ChequeLine ChequeLineNo="3">)"
                                              R"(<Discount DiscountID="8" Type="Percent" Percent="10" Amount="12.50"/>)"
                                              R"(</ChequeLine></ChequeLines>)"))),
              onPosition + "type 1, rate double 10, mode 2, object 1, position 3, sum 12.5, code 8" + noCard);
}

TEST_F(DiscountsReply, SumDiscountOnAPosition)
{
    EXPECT_EQ(impactTexts(read(QStringLiteral(R"(<ChequeLine ChequeLineNo="3">)"
                                              R"(<Discount DiscountID="8" Type="Amount" Percent="0" Amount="5"/>)"
                                              R"(</ChequeLine>)"))),
              onPosition + "type 2, rate none, mode 2, object 1, position 3, sum 5, code 8" + noCard);
}

TEST_F(DiscountsReply, TypeIsComparedExactly)
{
    const QString reply = QStringLiteral(
        R"(<ChequeLine ChequeLineNo="3"><Discount DiscountID="8" Type="%1" Percent="10" Amount="5"/></ChequeLine>)");
    for (const char* const type : { "percent", "PERCENT", "Percent ", "Percents" }) {
        EXPECT_EQ(impactTexts(read(reply.arg(QLatin1String(type)))),
                  onPosition + "type 2, rate none, mode 2, object 1, position 3, sum 5, code 8" + noCard)
            << type;
    }
}

TEST_F(DiscountsReply, AbsentTypeIsASumDiscount)
{
    EXPECT_EQ(impactTexts(read(QStringLiteral(R"(<ChequeLine ChequeLineNo="3">)"
                                              R"(<Discount DiscountID="8" Percent="10" Amount="5"/></ChequeLine>)"))),
              onPosition + "type 2, rate none, mode 2, object 1, position 3, sum 5, code 8" + noCard);
}

TEST_F(DiscountsReply, SumIsNeverComputedFromTheRate)
{
    EXPECT_EQ(
        impactTexts(read(QStringLiteral(R"(<ChequeLine ChequeLineNo="1">)"
                                        R"(<Discount DiscountID="8" Type="Percent" Percent="150.5" Amount="0.01"/>)"
                                        R"(</ChequeLine>)"))),
        onPosition + "type 1, rate double 150.5, mode 2, object 1, position 1, sum 0.01, code 8" + noCard);
}

TEST_F(DiscountsReply, ValuesOutOfSensePassThrough)
{
    EXPECT_EQ(impactTexts(
                  read(QStringLiteral(R"(<A><Cheque><Discount DiscountID="0" Amount="0"/>)"
                                      R"(<Discount DiscountID="-2147483648" Amount="-3.5"/></Cheque>)"
                                      R"(<ChequeLine ChequeLineNo="-99">)"
                                      R"(<Discount DiscountID="2147483647" Type="Percent" Percent="-1" Amount="1e3"/>)"
                                      R"(</ChequeLine></A>)"))),
              onCheque + "type 2, rate none, mode 2, object 0, position 0, sum 0, code 0" + noCard //
                  + onCheque + "type 2, rate none, mode 2, object 0, position 0, sum -3.5, code -2147483648" + noCard
                  + onPosition + "type 1, rate double -1, mode 2, object 1, position -99, sum 1000, code 2147483647"
                  + noCard);
}

TEST_F(DiscountsReply, SumsAreNotRounded)
{
    const auto impacts = read(QStringLiteral(R"(<Cheque><Discount DiscountID="7" Amount="0.125000001"/></Cheque>)"));

    ASSERT_EQ(impacts.size(), 1);
    EXPECT_EQ(impacts.constFirst()->getTotals()->getDiscountSum(), 0.125000001);
}

TEST_F(DiscountsReply, ChequeComesBeforePositionsEachInDocumentOrder)
{
    EXPECT_EQ(impactTexts(read(QStringLiteral(R"(<Answer>
 <ChequeLine ChequeLineNo="2">
  <Discount DiscountID="21" Type="" Percent="0" Amount="1"/>
  <Discount DiscountID="20" Type="" Percent="0" Amount="2"/>
 </ChequeLine>
 <ChequeLine ChequeLineNo="1"><Discount DiscountID="10" Type="" Percent="0" Amount="3"/></ChequeLine>
 <Cheque>
  <Discount DiscountID="5" Amount="4"/>
  <Discount DiscountID="4" Amount="5"/>
 </Cheque>
</Answer>)"))),
              onCheque + "type 2, rate none, mode 2, object 0, position 0, sum 4, code 5" + noCard //
                  + onCheque + "type 2, rate none, mode 2, object 0, position 0, sum 5, code 4" + noCard + onPosition
                  + "type 2, rate none, mode 2, object 1, position 2, sum 1, code 21" + noCard + onPosition
                  + "type 2, rate none, mode 2, object 1, position 2, sum 2, code 20" + noCard + onPosition
                  + "type 2, rate none, mode 2, object 1, position 1, sum 3, code 10" + noCard);
}

TEST_F(DiscountsReply, OnlyTheFirstChequeCounts)
{
    EXPECT_EQ(impactTexts(read(QStringLiteral(R"(<A><Cheque><Discount DiscountID="1" Amount="1"/></Cheque>)"
                                              R"(<Cheque><Discount DiscountID="2" Amount="bad"/></Cheque></A>)"))),
              onCheque + "type 2, rate none, mode 2, object 0, position 0, sum 1, code 1" + noCard);
}

TEST_F(DiscountsReply, DiscountsCountAtAnyDepth)
{
    EXPECT_EQ(
        impactTexts(read(QStringLiteral(R"(<a><b><Cheque><c><Discount DiscountID="1" Amount="1"/></c></Cheque></b>)"
                                        R"(<d><ChequeLine ChequeLineNo="1"><e><f>)"
                                        R"(<Discount DiscountID="2" Percent="0" Amount="2"/>)"
                                        R"(</f></e></ChequeLine></d></a>)"))),
        onCheque + "type 2, rate none, mode 2, object 0, position 0, sum 1, code 1" + noCard //
            + onPosition + "type 2, rate none, mode 2, object 1, position 1, sum 2, code 2" + noCard);
}

TEST_F(DiscountsReply, LinesNestedInTheChequeCountTwice)
{
    EXPECT_EQ(impactTexts(read(QStringLiteral(R"(<Cheque><ChequeLines><ChequeLine ChequeLineNo="1">)"
                                              R"(<Discount DiscountID="2" Type="Percent" Percent="10" Amount="2"/>)"
                                              R"(</ChequeLine></ChequeLines></Cheque>)"))),
              onCheque + "type 2, rate none, mode 2, object 0, position 0, sum 2, code 2" + noCard //
                  + onPosition + "type 1, rate double 10, mode 2, object 1, position 1, sum 2, code 2" + noCard);
}

TEST_F(DiscountsReply, SameDiscountOnTwoLinesIsTwoRecords)
{
    EXPECT_EQ(
        impactTexts(read(QStringLiteral(
            R"(<A><ChequeLine ChequeLineNo="1"><Discount DiscountID="2" Percent="0" Amount="2"/></ChequeLine>)"
            R"(<ChequeLine ChequeLineNo="2"><Discount DiscountID="2" Percent="0" Amount="2"/></ChequeLine></A>)"))),
        onPosition + "type 2, rate none, mode 2, object 1, position 1, sum 2, code 2" + noCard //
            + onPosition + "type 2, rate none, mode 2, object 1, position 2, sum 2, code 2" + noCard);
}

TEST_F(DiscountsReply, RecordsShareNothing)
{
    const auto impacts = read(QStringLiteral(R"(<Cheque><Discount DiscountID="1" Amount="1"/>)"
                                             R"(<Discount DiscountID="1" Amount="1"/></Cheque>)"));

    ASSERT_EQ(impacts.size(), 2);
    EXPECT_NE(impacts.at(0), impacts.at(1));
    EXPECT_NE(impacts.at(0)->getTotals(), impacts.at(1)->getTotals());
}

TEST_F(DiscountsReply, TagsAreBareAndCaseSensitive)
{
    EXPECT_TRUE(read(QStringLiteral(R"(<A xmlns:x="urn:x"><x:Cheque><x:Discount DiscountID="1" Amount="1"/></x:Cheque>)"
                                    R"(<cheque><Discount DiscountID="1" Amount="1"/></cheque>)"
                                    R"(<chequeLine><Discount DiscountID="1" Amount="1"/></chequeLine></A>)"))
                    .isEmpty());
}

// Unlike the subtraction, this operation takes the text as the outer reply holds it.
TEST_F(DiscountsReply, EscapesOfTheInnerDocumentAreItsOwn)
{
    EXPECT_EQ(impactTexts(read(QStringLiteral(R"(<ChequeLine ChequeLineNo="1">)"
                                              R"(<Discount DiscountID="2" Type="a &amp;lt; b" Percent="0" Amount="2"/>)"
                                              R"(</ChequeLine>)"))),
              onPosition + "type 2, rate none, mode 2, object 1, position 1, sum 2, code 2" + noCard);
}

TEST_F(DiscountsReply, InnerDocumentMayDeclareAnEncoding)
{
    EXPECT_EQ(impactTexts(read(QStringLiteral(R"(<?xml version="1.0" encoding="utf-16"?>)"
                                              R"(<Cheque><Discount DiscountID="1" Amount="1"/></Cheque>)"))),
              onCheque + "type 2, rate none, mode 2, object 0, position 0, sum 1, code 1" + noCard);
}

TEST_F(DiscountsReply, LocaleHasNoSay)
{
    const QLocale former;
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));

    EXPECT_EQ(impactTexts(read(QStringLiteral(R"(<Cheque><Discount DiscountID="1" Amount="1234.5"/></Cheque>)"))),
              onCheque + "type 2, rate none, mode 2, object 0, position 0, sum 1234.5, code 1" + noCard);

    QLocale::setDefault(former);
}

TEST_F(DiscountsReply, InnerDocumentIsDumpedToTheTrace)
{
    const LogRecorder log;

    EXPECT_EQ(
        read(QStringLiteral(R"(<Answer><Cheque><Discount DiscountID="7" Amount="12.50"/></Cheque></Answer>)")).size(),
        1);

    const QStringList lines = log.lines();
    ASSERT_EQ(lines.size(), 1);
    EXPECT_EQ(readable(sortedAttributes(lines.constFirst())),
              "trace vantiro: Данные ответа от сервера: \n"
              "<Answer>\n"
              " <Cheque>\n"
              "  <Discount Amount=\"12.50\" DiscountID=\"7\"/>\n"
              " </Cheque>\n"
              "</Answer>\n");
}

// An argument of a log line is no format.
TEST_F(DiscountsReply, DumpKeepsPlaceMarkersOfTheServer)
{
    const LogRecorder log;

    EXPECT_TRUE(read(QStringLiteral(R"(<Answer Note="%1 %2"/>)")).isEmpty());

    EXPECT_EQ(readable(log.lines()), "trace vantiro: Данные ответа от сервера: \n<Answer Note=\"%1 %2\"/>\n");
}

TEST_F(DiscountsReply, PartsOfTheReadingStandAlone)
{
    QDomDocument reply;
    ASSERT_TRUE(reply.setContent(
        QStringLiteral(R"(<A><Cheque><Discount DiscountID="1" Amount="1"/></Cheque>)"
                       R"(<ChequeLine ChequeLineNo="4"><Discount DiscountID="2" Percent="0" Amount="2"/>)"
                       R"(</ChequeLine></A>)")));

    EXPECT_EQ(impactTexts(client.extractCheckDiscounts(reply)),
              onCheque + "type 2, rate none, mode 2, object 0, position 0, sum 1, code 1" + noCard);
    EXPECT_EQ(impactTexts(client.extractPositionDiscounts(reply)),
              onPosition + "type 2, rate none, mode 2, object 1, position 4, sum 2, code 2" + noCard);
    EXPECT_TRUE(client.extractCheckDiscounts(QDomDocument()).isEmpty());
    EXPECT_TRUE(client.extractPositionDiscounts(QDomDocument()).isEmpty());
    EXPECT_EQ(readable(client.processResponseXml(QStringLiteral("<a><b/></a>")).toString(1)), "<a>\n <b/>\n</a>\n");
}
