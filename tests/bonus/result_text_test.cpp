#include "tests/bonus/bonus_client.h"
#include "tests/bonus/impact_text.h"
#include "tests/support/cheque_service.h"
#include "tests/support/log_recorder.h"
#include "tests/support/sample_cheque.h"

#include <gtest/gtest.h>

// The text of a result counts, however the service has written it down: escaped, as a data section, or in pieces.

namespace {

class ResultText : public testing::Test {
protected:
    /// The next reply holds this XML within the result of the operation.
    void answer(const QByteArray& operation, const QByteArray& content)
    {
        service.answer('<' + operation + R"(Response xmlns="http://tempuri.org/"><)" + operation + "Result>" + content
                       + "</" + operation + "Result></" + operation + "Response>");
    }

    void expectAsked(const QByteArray& operation)
    {
        EXPECT_FALSE(service.take(operation).isEmpty());
        service.expectNothing();
    }

    ChequeService service;
    BonusClient client;
    const LogRecorder log;
    const QSharedPointer<till::Cheque> document = sample::cheque(EDocumentType::sale);
    const QSharedPointer<till::Card> card = sample::addCard(*document);
};

}

TEST_F(ResultText, OfDiscountsMayBeADataSection)
{
    answer("GetDiscounts", R"(<![CDATA[<Cheque><Discount DiscountID="7" Amount="12.50"/></Cheque>]]>)");

    const auto impacts = client.getDiscounts(document, {}, {});

    expectAsked("GetDiscounts");
    ASSERT_EQ(impacts.size(), 1);
    EXPECT_EQ(impacts.constFirst()->getTotals()->getDiscountCode(), 7);
    EXPECT_EQ(impacts.constFirst()->getTotals()->getDiscountSum(), 12.5);
}

TEST_F(ResultText, OfMessagesMayComeInPieces)
{
    answer("GetMessages", R"(&lt;Msg Device="2"<!-- x --><![CDATA[ Body="a&lt;b"]]>/&gt;)");

    EXPECT_EQ(client.getMessages(document, {}, {}, {}),
              (QMap<int, QList<QString>> { { 2, { QStringLiteral("a<b") } } }));

    expectAsked("GetMessages");
}

TEST_F(ResultText, OfTheAmountMayComeInPieces)
{
    answer("GetCardDiscountAmount", "1<!-- x --><![CDATA[50]]>.75");

    EXPECT_EQ(client.getCardDiscountAmount(document, {}), 150.75);

    expectAsked("GetCardDiscountAmount");
}

TEST_F(ResultText, OfASubtractionMayBeADataSection)
{
    answer("SubtractBonus45", R"(<![CDATA[<A><ChequeLine ChequeLineNo="1" Amount="60.25"/></A>]]>)");

    const auto impact = client.subtractBonus(document, 60.25);

    expectAsked("SubtractBonus45");
    ASSERT_EQ(impact->getDetails().keys(), QList<int> { 1 });
    EXPECT_EQ(impact->getDetails().value(1)->getDiscountSum(), 60.25);
}

TEST_F(ResultText, OfASubtractionMayBeAnEscapedDataSection)
{
    answer("SubtractBonus45",
           "<![CDATA[&lt;A&gt;&lt;ChequeLine ChequeLineNo=&quot;2&quot; Amount=&quot;1.5&quot;/&gt;&lt;/A&gt;]]>");

    const auto impact = client.subtractBonus(document, 1.5);

    expectAsked("SubtractBonus45");
    EXPECT_EQ(impact->getDetails().keys(), QList<int> { 2 });
}

TEST_F(ResultText, OfALookUpMayBeADataSection)
{
    QString number;
    QString code;
    answer("GetVerifyCode", "<![CDATA[1234]]>:<![CDATA[5555]]>");

    client.getCardNumberAndCodeByPhone(QStringLiteral("+79990000001"), number, code);

    expectAsked("GetVerifyCode");
    EXPECT_EQ(readable(number), "5555");
    EXPECT_EQ(readable(code), "1234");
}

TEST_F(ResultText, OfAValidationMayBeADataSection)
{
    answer("IsCouponValid", "<![CDATA[true]]>");

    EXPECT_TRUE(client.isCouponValid(QStringLiteral("vantiro-10")));

    expectAsked("IsCouponValid");
}

TEST_F(ResultText, OfASlipMayBeADataSection)
{
    answer("Accrual", "<![CDATA[<doc><left>a &amp;lt; b</left></doc>]]>");

    client.accrualAnyCheck(document);

    expectAsked("Accrual");
    // Unescaped once, "&amp;lt;" is a bare bracket: what came is printed as it came.
    EXPECT_EQ(readable(client.lastReport.toString(1)),
              "<doc>\n <noformat>&lt;doc>&lt;left>a &amp;amp;lt; b&lt;/left>&lt;/doc></noformat>\n</doc>\n");
}

TEST_F(ResultText, OfAReadableSlipMayBeADataSection)
{
    answer("Accrual", "<![CDATA[<doc><left>Спасибо</left></doc>]]>");

    client.accrualAnyCheck(document);

    expectAsked("Accrual");
    EXPECT_EQ(readable(client.lastReport.toString(1)), "<doc>\n <left>Спасибо</left>\n</doc>\n");
}
