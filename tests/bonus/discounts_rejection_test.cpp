#include "tests/bonus/bonus_client.h"
#include "tests/support/cheque_service.h"
#include "tests/support/sample_cheque.h"
#include "tests/support/log_recorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

using testing::MatchesRegex;

namespace {

const std::string discountsNotFound
    = "VantiroException vantiroDiscountsNotFound: В ответе от сервера не найден результат дисконтных воздействий";

/// What `getDiscounts` throws; the log is left to the caller.
std::string failureOfReply(ChequeService& service)
{
    BonusClient client;
    std::string failure = failureOf([&] { (void)client.getDiscounts(sample::cheque(EDocumentType::sale), {}, {}); });
    EXPECT_TRUE(service.take().body.contains("tem:GetDiscounts"));
    return failure;
}

}

TEST(DiscountsResult, IsRequired)
{
    ChequeService service;
    const LogRecorder log;
    service.answer(R"(<GetDiscountsResponse xmlns="http://tempuri.org/"/>)");

    EXPECT_EQ(failureOfReply(service), discountsNotFound);
    EXPECT_EQ(readable(log.lines()), "");
}

TEST(DiscountsResult, IsRequiredOnlyOnce)
{
    ChequeService service;
    const LogRecorder log;
    service.answer("<GetDiscountsResult></GetDiscountsResult><GetDiscountsResult></GetDiscountsResult>");

    EXPECT_EQ(failureOfReply(service), discountsNotFound);
    EXPECT_EQ(readable(log.lines()), "");
}

TEST(DiscountsResult, IsReadByItsBareTag)
{
    ChequeService service;
    service.answer(R"(<x:GetDiscountsResult xmlns:x="http://tempuri.org/"></x:GetDiscountsResult>)");

    EXPECT_EQ(failureOfReply(service), discountsNotFound);
}

TEST(DiscountsResult, StandsAtAnyDepth)
{
    ChequeService service;
    service.answer("<a><b><c><GetDiscountsResult/></c></b></a>");

    EXPECT_EQ(failureOfReply(service), "nothing");
}

TEST(DiscountsExchange, FailurePassesThrough)
{
    ChequeService service;

    service.fault("Отказано");
    EXPECT_EQ(failureOfReply(service), failure::fault("Отказано"));
    service.refuse();
    EXPECT_EQ(failureOfReply(service), failure::noConnection);
    service.end(RestOutcome::http(503, "<a/>"));
    EXPECT_EQ(failureOfReply(service), failure::noConnection);
    service.end(RestOutcome::http(200, QByteArray()));
    EXPECT_EQ(failureOfReply(service), failure::incorrectAnswer);
    service.expectNothing();
}

TEST(DiscountsInnerText, MustBeXml)
{
    ChequeService service;
    const LogRecorder log;
    service.answerText("GetDiscounts", QStringLiteral("<Answer>\n <Cheque/>\n </Wrong>"));

    EXPECT_EQ(failureOfReply(service), failure::incorrectAnswer);
    EXPECT_THAT(readable(log.lines()),
                MatchesRegex(R"(error vantiro: Не удалось разобрать ответ от сервера\(.+, \[3,[0-9]+\]\))"));
}

TEST(DiscountsInnerText, IsNotUnescapedOnceMore)
{
    ChequeService service;
    const LogRecorder log;
    service.answerText("GetDiscounts", QStringLiteral("&lt;Answer/&gt;"));

    EXPECT_EQ(failureOfReply(service), failure::incorrectAnswer);
    EXPECT_THAT(readable(log.lines()),
                MatchesRegex(R"(error vantiro: Не удалось разобрать ответ от сервера\(.+, \[[0-9]+,[0-9]+\]\))"));
}

TEST(DiscountsInnerText, OfPlainWordsIsNoDocument)
{
    ChequeService service;
    service.answer("<GetDiscountsResult>plain words</GetDiscountsResult>");

    EXPECT_EQ(failureOfReply(service), failure::incorrectAnswer);
}

TEST(DiscountsInnerText, WithDocumentTypeIsRefused)
{
    ChequeService service;
    const LogRecorder log;
    service.answerText("GetDiscounts", QStringLiteral("<!DOCTYPE Answer [<!ENTITY e \"1\">]><Answer>&e;</Answer>"));

    EXPECT_EQ(failureOfReply(service), failure::incorrectAnswer);
    EXPECT_THAT(readable(log.lines()),
                MatchesRegex(R"(error vantiro: Не удалось разобрать ответ от сервера\(.+, \[[0-9]+,[0-9]+\]\))"));
}

// The dump to the log walks the document recursively: one of some thousand levels would end the till.
TEST(DiscountsInnerText, NestedWithoutEndIsRefused)
{
    ChequeService service;
    const LogRecorder log;
    const QString deep = QStringLiteral("<a>").repeated(20000) + QStringLiteral("</a>").repeated(20000);
    service.answerText("GetDiscounts", deep);

    EXPECT_EQ(failureOfReply(service), failure::incorrectAnswer);
    EXPECT_THAT(readable(log.lines()),
                MatchesRegex(R"(error vantiro: Не удалось разобрать ответ от сервера\(.+, \[[0-9]+,[0-9]+\]\))"));
}

namespace {

struct Rejected {
    std::string name;
    QString inner;
};

void PrintTo(const Rejected& rejected, std::ostream* out)
{
    *out << rejected.inner.toStdString();
}

QString chequeDiscount(const char* attributes)
{
    return QStringLiteral("<A><Cheque><Discount DiscountID=\"1\" Amount=\"1\"/><Discount ") + QLatin1String(attributes)
        + QStringLiteral("/></Cheque></A>");
}

QString lineDiscount(const char* attributes)
{
    return QStringLiteral("<A><ChequeLine ChequeLineNo=\"1\"><Discount DiscountID=\"1\" Percent=\"0\" Amount=\"1\"/>"
                          "<Discount ")
        + QLatin1String(attributes) + QStringLiteral("/></ChequeLine></A>");
}

class DiscountsAttribute : public testing::TestWithParam<Rejected> { };

}

TEST_P(DiscountsAttribute, CostsTheWholeAnswer)
{
    ChequeService service;
    const LogRecorder log;
    service.answerText("GetDiscounts", GetParam().inner);

    EXPECT_EQ(failureOfReply(service), failure::incorrectAnswer);
    const QStringList lines = log.lines();
    ASSERT_EQ(lines.size(), 1) << "only the dump of the reply is logged: " << readable(lines);
    EXPECT_TRUE(lines.constFirst().startsWith(QStringLiteral("trace vantiro: Данные ответа от сервера: \n")));
}

INSTANTIATE_TEST_SUITE_P(
    Rejected, DiscountsAttribute,
    testing::Values(
        Rejected { "ChequeDiscountWithoutId", chequeDiscount(R"(Amount="1")") },
        Rejected { "ChequeDiscountWithEmptyId", chequeDiscount(R"(DiscountID="" Amount="1")") },
        Rejected { "ChequeDiscountWithWordAsId", chequeDiscount(R"(DiscountID="x" Amount="1")") },
        Rejected { "ChequeDiscountWithFractionAsId", chequeDiscount(R"(DiscountID="1.0" Amount="1")") },
        Rejected { "ChequeDiscountWithHexId", chequeDiscount(R"(DiscountID="0x10" Amount="1")") },
        Rejected { "ChequeDiscountWithIdAbove32Bits", chequeDiscount(R"(DiscountID="2147483648" Amount="1")") },
        Rejected { "ChequeDiscountWithIdBelow32Bits", chequeDiscount(R"(DiscountID="-2147483649" Amount="1")") },
        Rejected { "ChequeDiscountWithoutAmount", chequeDiscount(R"(DiscountID="1")") },
        Rejected { "ChequeDiscountWithEmptyAmount", chequeDiscount(R"(DiscountID="1" Amount="")") },
        Rejected { "ChequeDiscountWithDecimalComma", chequeDiscount(R"(DiscountID="1" Amount="12,50")") },
        Rejected { "ChequeDiscountWithThousandsBlank", chequeDiscount(R"(DiscountID="1" Amount="1 234.50")") },
        Rejected { "ChequeDiscountWithCurrency", chequeDiscount(R"(DiscountID="1" Amount="12.50 RUB")") },
        Rejected { "ChequeDiscountWithAttributeInOtherCase", chequeDiscount(R"(DiscountId="1" Amount="1")") },
        Rejected { "LineWithoutNumberAndDiscounts", QStringLiteral("<A><ChequeLine/></A>") },
        Rejected { "LineWithEmptyNumber", QStringLiteral(R"(<A><ChequeLine ChequeLineNo=""/></A>)") },
        Rejected { "LineWithWordAsNumber", QStringLiteral(R"(<A><ChequeLine ChequeLineNo="one"/></A>)") },
        Rejected { "LineWithNumberAbove32Bits", QStringLiteral(R"(<A><ChequeLine ChequeLineNo="2147483648"/></A>)") },
        Rejected { "LineDiscountWithoutId", lineDiscount(R"(Type="" Percent="0" Amount="1")") },
        Rejected { "LineDiscountWithIdAbove32Bits", lineDiscount(R"(DiscountID="2147483648" Percent="0" Amount="1")") },
        Rejected { "LineDiscountWithoutAmount", lineDiscount(R"(DiscountID="1" Percent="0")") },
        Rejected { "LineDiscountWithDecimalComma", lineDiscount(R"(DiscountID="1" Percent="0" Amount="12,50")") },
        Rejected { "PercentDiscountWithoutPercent", lineDiscount(R"(DiscountID="1" Type="Percent" Amount="1")") },
        Rejected { "SumDiscountWithoutPercent", lineDiscount(R"(DiscountID="1" Type="Amount" Amount="1")") },
        Rejected { "SumDiscountWithEmptyPercent",
                   lineDiscount(R"(DiscountID="1" Type="Amount" Percent="" Amount="1")") },
        Rejected { "PercentWithDecimalComma",
                   lineDiscount(R"(DiscountID="1" Type="Percent" Percent="1,5" Amount="1")") },
        Rejected { "PercentWithSign", lineDiscount(R"(DiscountID="1" Type="Percent" Percent="10%" Amount="1")") },
        Rejected { "LineAfterGoodCheque",
                   QStringLiteral(R"(<A><Cheque><Discount DiscountID="1" Amount="1"/></Cheque><ChequeLine/></A>)") }),
    [](const testing::TestParamInfo<Rejected>& tested) { return tested.param.name; });
