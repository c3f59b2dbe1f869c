#include "tests/bonus/bonus_client.h"
#include "tests/support/cheque_service.h"
#include "tests/support/sample_cheque.h"
#include "tests/support/log_recorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::MatchesRegex;

namespace {

const char* const started = "info vantiro: Получение сообщений от системы лояльности";

class Messages : public testing::Test {
protected:
    /// The messages of a reply with this inner document: "device: 'text' 'text'; device: 'text'".
    [[nodiscard]] std::string read(const QString& inner)
    {
        service.answerText("GetMessages", inner);
        return readNext();
    }

    [[nodiscard]] std::string readNext()
    {
        const QMap<int, QList<QString>> messages = client.getMessages(document, {}, {}, {});
        EXPECT_TRUE(service.take().body.contains("tem:GetMessages"));
        QStringList devices;
        for (auto it = messages.cbegin(); it != messages.cend(); ++it) {
            QString device = QString::number(it.key()) + u':';
            for (const QString& text : it.value()) {
                device += QStringLiteral(" '") + text + u'\'';
            }
            devices.append(device);
        }
        return readable(devices.join(QStringLiteral("; ")));
    }

    ChequeService service;
    BonusClient client;
    QSharedPointer<till::Cheque> document = sample::cheque(EDocumentType::sale);
    const LogRecorder log;
};

/// A discount that the server has just granted on the line 1, or on the whole cheque.
QSharedPointer<DiscountImpact> granted(EDiscountObject::type object, double sum)
{
    const auto totals = QSharedPointer<DocumentImpactDetail>::create();
    totals->setDiscountName(object == EDiscountObject::position ? QStringLiteral("Скидка Vantiro на позицию")
                                                                : QStringLiteral("Скидка Vantiro на чек"));
    totals->setDiscountType(EDiscountType::sum);
    totals->setDiscountMode(EDiscountMode::loyalty);
    totals->setImpactSource(EImpactSource::loyaltySystem);
    totals->setDiscountObject(object);
    totals->setDiscountCode(8);
    totals->setDiscountSum(sum);
    if (object == EDiscountObject::position) {
        totals->setPosition(1);
    }
    return QSharedPointer<DiscountImpact>::create(totals);
}

}

TEST_F(Messages, RequestCarriesDiscountsAndCoupons)
{
    sample::addCard(*document);
    service.answerText("GetMessages", QString());

    EXPECT_TRUE(client
                    .getMessages(document,
                                 { granted(EDiscountObject::cheque, 9.80), granted(EDiscountObject::position, 20) },
                                 { { 1, { QStringLiteral("item-1") } } }, { QStringLiteral("vantiro-10") })
                    .isEmpty());

    service.expect(
        "GetMessages",
        chequeParameter(
            sample::chequeTag(
                R"(Amount="150.00" SubtractedBonus="0.00" PositionCount="1" ChequeType="Sale" Status="Open")")
            + sample::cardElement("0.00")
            + R"( <ChequeLines>
  <ChequeLine ChequeLineNo="1" NoPayBonus="false" NoAddBonus="false" NoDiscounts="false" Price="89.90")"
              R"( Quantity="2.000" Amount="159.80" MinAmount="120.00" MinPrice="60.00")"
              R"( MaxDiscount="100.0" BonusDiscount="0.00">
   <Item ItemID="1042" Barcode="4600051000057"/>
   <Discounts>
    <Discount DiscountID="8" Type="Amount" Percent="0" Amount="20.00"/>
   </Discounts>
   <Coupon CouponNo="item-1"/>
  </ChequeLine>
 </ChequeLines>
)" + sample::sections
            + " <Coupon CouponNo=\"vantiro-10\"/>\n</Cheque>\n"));
}

TEST_F(Messages, StartIsLoggedBeforeTheRequest)
{
    QStringList beforeReply;
    service.whilePosting([&] { beforeReply = log.lines(); });

    EXPECT_EQ(read(QString()), "");

    EXPECT_EQ(readable(beforeReply), started);
    EXPECT_EQ(readable(log.lines()), started);
}

TEST_F(Messages, AreSortedByDevice)
{
    EXPECT_EQ(read(QStringLiteral(R"(<Messages><Msg Device="2" Body="кассиру"/><Msg Device="1" Body="покупателю"/>)"
                                  R"(<Msg Device="3" Body="прочее"/></Messages>)")),
              "1: 'покупателю'; 2: 'кассиру'; 3: 'прочее'");
    EXPECT_EQ(readable(log.lines()), started);
}

TEST_F(Messages, OfOneDeviceStandInDocumentOrder)
{
    EXPECT_EQ(read(QStringLiteral(R"(<M><Msg Device="2" Body="b"/><Msg Device="1" Body="x"/><Msg Device="2" Body="a"/>)"
                                  R"(<Msg Device="2" Body="b"/></M>)")),
              "1: 'x'; 2: 'b' 'a' 'b'");
}

TEST_F(Messages, StandAtAnyDepth)
{
    EXPECT_EQ(read(QStringLiteral(R"(<a><b><Msg Device="1" Body="x"><Msg Device="1" Body="y"/></Msg></b></a>)")),
              "1: 'x' 'y'");
}

TEST_F(Messages, EveryDeviceNumberIsKept)
{
    EXPECT_EQ(read(QStringLiteral(R"(<M><Msg Device="0" Body="a"/><Msg Device="-5" Body="b"/>)"
                                  R"(<Msg Device="2147483647" Body="c"/><Msg Device="-2147483648" Body="d"/></M>)")),
              "-2147483648: 'd'; -5: 'b'; 0: 'a'; 2147483647: 'c'");
    EXPECT_EQ(readable(log.lines()), started);
}

TEST_F(Messages, AbsentBodyIsAnEmptyText)
{
    EXPECT_EQ(read(QStringLiteral(R"(<M><Msg Device="1"/><Msg Device="1" Body=""/></M>)")), "1: '' ''");
    EXPECT_EQ(readable(log.lines()), started);
}

TEST_F(Messages, BodyIsKeptAsTheParserDecodedIt)
{
    EXPECT_EQ(read(QStringLiteral(R"(<M><Msg Device="1" Body="&lt;10 &amp;amp; %1"/></M>)")), "1: '<10 &amp; %1'");
}

TEST_F(Messages, BadDeviceCostsOneMessageAndGivesOneWarning)
{
    EXPECT_EQ(read(QStringLiteral(
                  R"(<M><Msg Device="1" Body="a"/><Msg Device="x" Body="b"/><Msg Device="2" Body="c"/></M>)")),
              "1: 'a'; 2: 'c'");
    EXPECT_EQ(readable(log.lines()), std::string(started) + "\nwarn vantiro: Ошибка получения атрибута 'Device'");
}

TEST_F(Messages, EachBadDeviceWarns)
{
    EXPECT_EQ(read(QStringLiteral(R"(<M><Msg Body="a"/><Msg Device="" Body="b"/><Msg Device="2147483648" Body="c"/>)"
                                  R"(<Msg Device="-2147483649" Body="d"/><Msg Device="1.0" Body="e"/></M>)")),
              "");
    EXPECT_EQ(readable(log.of(QStringLiteral("vantiro"))),
              "info: Получение сообщений от системы лояльности\n"
              "warn: Ошибка получения атрибута 'Device'\n"
              "warn: Ошибка получения атрибута 'Device'\n"
              "warn: Ошибка получения атрибута 'Device'\n"
              "warn: Ошибка получения атрибута 'Device'\n"
              "warn: Ошибка получения атрибута 'Device'");
}

TEST_F(Messages, DocumentWithoutMessagesGivesNone)
{
    EXPECT_EQ(read(QStringLiteral("<Messages><msg Device=\"1\" Body=\"a\"/></Messages>")), "");
    EXPECT_EQ(readable(log.lines()), started);
}

TEST_F(Messages, MissingResultIsNoFault)
{
    service.answer(R"(<GetMessagesResponse xmlns="http://tempuri.org/"/>)");

    EXPECT_EQ(readNext(), "");
    EXPECT_EQ(readable(log.lines()), started);
}

TEST_F(Messages, FirstOfTwoResultsIsTaken)
{
    service.answer("<GetMessagesResult>&lt;Msg Device=\"1\" Body=\"first\"/&gt;</GetMessagesResult>"
                   "<GetMessagesResult>&lt;Msg Device=\"1\" Body=\"second\"/&gt;</GetMessagesResult>");

    EXPECT_EQ(readNext(), "1: 'first'");
}

TEST_F(Messages, EmptyFirstOfTwoResultsIsTaken)
{
    service.answer("<GetMessagesResult/>"
                   "<GetMessagesResult>&lt;Msg Device=\"1\" Body=\"second\"/&gt;</GetMessagesResult>");

    EXPECT_EQ(readNext(), "");
}

TEST_F(Messages, InnerTextMustBeXml)
{
    service.answerText("GetMessages", QStringLiteral("<M>\n <Msg Device=\"1\" Body=\"a\"/>\n </Wrong>"));

    EXPECT_EQ(failureOf([&] { (void)client.getMessages(document, {}, {}, {}); }), failure::incorrectAnswer);

    EXPECT_TRUE(service.take().body.contains("tem:GetMessages"));
    EXPECT_THAT(readable(log.lines()),
                MatchesRegex(std::string(started)
                             + "\nerror vantiro: Не удалось интерпретировать ответ от сервера"
                               R"(\(.+, \[3,[0-9]+\]\))"));
}

TEST_F(Messages, InnerTextIsNotUnescapedOnceMore)
{
    service.answerText("GetMessages", QStringLiteral("&lt;Msg Device=\"1\" Body=\"a\"/&gt;"));

    EXPECT_EQ(failureOf([&] { (void)client.getMessages(document, {}, {}, {}); }), failure::incorrectAnswer);

    EXPECT_TRUE(service.take().body.contains("tem:GetMessages"));
}

TEST_F(Messages, InnerTextWithDocumentTypeIsRefused)
{
    service.answerText("GetMessages", QStringLiteral("<!DOCTYPE M><M><Msg Device=\"1\" Body=\"a\"/></M>"));

    EXPECT_EQ(failureOf([&] { (void)client.getMessages(document, {}, {}, {}); }), failure::incorrectAnswer);

    EXPECT_TRUE(service.take().body.contains("tem:GetMessages"));
    EXPECT_THAT(readable(log.lines()),
                MatchesRegex(std::string(started)
                             + "\nerror vantiro: Не удалось интерпретировать ответ от сервера"
                               R"(\(.+, \[[0-9]+,[0-9]+\]\))"));
}

TEST_F(Messages, FaultPassesThrough)
{
    service.fault("Отказано");

    EXPECT_EQ(failureOf([&] { (void)client.getMessages(document, {}, {}, {}); }), failure::fault("Отказано"));

    EXPECT_TRUE(service.take().body.contains("tem:GetMessages"));
    EXPECT_EQ(readable(log.lines()), started);
}

TEST_F(Messages, LostReplyPassesThrough)
{
    service.refuse();

    EXPECT_EQ(failureOf([&] { (void)client.getMessages(document, {}, {}, {}); }), failure::noConnection);

    EXPECT_TRUE(service.take().body.contains("tem:GetMessages"));
    service.expectNothing();
}
