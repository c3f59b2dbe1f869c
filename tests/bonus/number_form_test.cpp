#include "tests/bonus/bonus_client.h"
#include "tests/support/cheque_service.h"
#include "tests/support/log_recorder.h"
#include "tests/support/sample_cheque.h"

#include <gtest/gtest.h>

// Words that a lenient reader takes for numbers. A sum that is none would reach the cheque, the card and the accrual.

namespace {

const std::string sumNotFound
    = "VantiroException vantiroPaymentSumNotFound: В ответе от сервера не найдена максимальная сумма оплаты";

class NumberForm : public testing::TestWithParam<const char*> {
protected:
    /// What comes of a reply to the operation that has this inner text, with the number in place of %1.
    template <class Call>
    [[nodiscard]] std::string failureWith(const char* operation, const char* inner, const Call& call)
    {
        service.answerText(operation, QString::fromUtf8(inner).arg(QString::fromUtf8(GetParam())));
        std::string thrown = failureOf(call);
        EXPECT_FALSE(service.take(operation).isEmpty());
        return thrown;
    }

    [[nodiscard]] std::string discountsWith(const char* inner)
    {
        return failureWith("GetDiscounts", inner, [this] { (void)client.getDiscounts(document, {}, {}); });
    }

    ChequeService service;
    BonusClient client;
    const LogRecorder log;
    const QSharedPointer<till::Cheque> document = sample::cheque(EDocumentType::sale);
    const QSharedPointer<till::Card> card = sample::addCard(*document);
};

}

TEST_P(NumberForm, IsNoSumOfADiscountOnTheCheque)
{
    EXPECT_EQ(discountsWith(R"(<Cheque><Discount DiscountID="1" Amount="%1"/></Cheque>)"), failure::incorrectAnswer);
}

TEST_P(NumberForm, IsNoSumOfADiscountOnAPosition)
{
    EXPECT_EQ(discountsWith(
                  R"(<ChequeLine ChequeLineNo="1"><Discount DiscountID="1" Percent="0" Amount="%1"/></ChequeLine>)"),
              failure::incorrectAnswer);
}

TEST_P(NumberForm, IsNoPercentage)
{
    EXPECT_EQ(discountsWith(R"(<ChequeLine ChequeLineNo="1">)"
                            R"(<Discount DiscountID="1" Type="Percent" Percent="%1" Amount="1"/></ChequeLine>)"),
              failure::incorrectAnswer);
}

TEST_P(NumberForm, IsNoSumOfASpentLine)
{
    EXPECT_EQ(failureWith("SubtractBonus45", R"(<A><ChequeLine ChequeLineNo="1" Amount="%1"/></A>)",
                          [this] { (void)client.subtractBonus(document, 10.0); }),
              failure::incorrectAnswer);
}

TEST_P(NumberForm, IsNoAmountToSpend)
{
    EXPECT_EQ(failureWith("GetCardDiscountAmount", "%1", [this] { (void)client.getCardDiscountAmount(document, {}); }),
              sumNotFound);
    EXPECT_EQ(card->fields.pointsForSpend, 0.0);
}

INSTANTIATE_TEST_SUITE_P(Words, NumberForm,
                         testing::Values("nan", "NaN", "inf", "-inf", "+inf", "Infinity", "1e400", "-1e400", "0x10",
                                         "1_000", "1'000", "12.50.1", "--5", "."));
