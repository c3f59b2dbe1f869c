#include "host/facilities/exceptions.h"
#include "tests/front/till_at_work.h"
#include "tests/support/client_under_test.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace Qt::StringLiterals;

// The customer has no card at hand: the telephone number stands for it, confirmed by a code that the server has sent.

namespace {

const QByteArray phoneParameter = "   <tem:discountCardNumber>+79990000001</tem:discountCardNumber>\n";
const std::string asking = "info: Получение номера карты по номеру телефона '+79990000001'";
const char* const found = "ok, card '9000000001', error ': '";

class PhoneCard : public testing::Test {
protected:
    /// Whether it went well, the card and the error: "ok, card '9000000001', error ': '".
    [[nodiscard]] std::string find(const QString& entered, int type = loyalty::CardNumberInputData::phone)
    {
        const CardNumberResult result = till.plugin.getCardNumber({ type, entered });
        return (result.ok ? "ok, card '" : "failed, card '") + result.cardNumber.toStdString() + "', error '"
            + result.error.getKey().toStdString() + ": " + result.error.ru().toStdString() + '\'';
    }

    [[nodiscard]] std::string find()
    {
        return find(u"+79990000001"_s);
    }

    void answer(const QString& codeAndCard = u"aB12:9000000001"_s)
    {
        till.server.answerText("GetVerifyCode", codeAndCard);
    }

    void expectQuestion()
    {
        till.server.expect("GetVerifyCode", phoneParameter);
    }

    TillAtWork till { TillAtWork::saleWithoutCard() };
};

}

TEST_F(PhoneCard, CodeConfirmsTheCard)
{
    answer();
    till.cashier.enter(u"aB12"_s);

    EXPECT_EQ(find(), found);

    expectQuestion();
    EXPECT_EQ(till.told(), "post GetVerifyCode\nform inputVantiroConfirmCode");
    EXPECT_EQ(till.log(), asking);
    EXPECT_EQ(readable(till.cashier.shown()), "");
    EXPECT_EQ(till.lastError(), ": ");
}

TEST_F(PhoneCard, FormAsksForTheCode)
{
    answer();
    till.cashier.enter(u"aB12"_s);

    EXPECT_EQ(find(), found);

    expectQuestion();
    const QList<core::InputForm> forms = till.cashier.forms();
    ASSERT_EQ(forms.size(), 1);
    const core::InputForm form = forms.constFirst();
    const auto text = [](const tr::Tr& field) { return readable(field.getKey() + u": "_s + field.ru()); };
    EXPECT_EQ(text(form.title), "vantiroInputConfirmCodeTitle: Ввод кода подтверждения");
    EXPECT_EQ(text(form.message), "vantiroInputConfirmCodeMessage: Введите код подтверждения");
    EXPECT_EQ(text(form.scanError), "inputTextFormScanError: Ошибка разбора введенных данных, повторите сканирование");
    EXPECT_EQ(text(form.okButton), "inputTextFormOkBtn: ОК");
    EXPECT_EQ(text(form.cancelButton), "inputTextFormCancelBtn: Отмена");
    EXPECT_EQ(form.type, 5);
    EXPECT_EQ(readable(form.id), "inputVantiroConfirmCode");
    EXPECT_EQ(form.lengthLimit, 4095);
}

TEST_F(PhoneCard, NumberGoesOutAsItWasEntered)
{
    answer();
    till.cashier.enter(u"aB12"_s);

    EXPECT_EQ(find(u" 8 (999) %1 %2 "_s), found);

    till.server.expect("GetVerifyCode", "   <tem:discountCardNumber> 8 (999) %1 %2 </tem:discountCardNumber>\n");
    EXPECT_EQ(till.log(), "info: Получение номера карты по номеру телефона ' 8 (999) %1 %2 '");
}

TEST_F(PhoneCard, CashierWhoGivesUpIsNoFailure)
{
    answer();
    till.cashier.cancel();

    EXPECT_EQ(find(), "ok, card '', error ': '");

    expectQuestion();
    EXPECT_EQ(till.told(), "post GetVerifyCode\nform inputVantiroConfirmCode");
    EXPECT_EQ(till.log(), asking);
    EXPECT_EQ(readable(till.cashier.shown()), "");
}

TEST_F(PhoneCard, CodeMustBeTheSameToTheCharacter)
{
    for (const QString& entered : { u"aB12 "_s, u" aB12"_s, u"ab12"_s, u"AB12"_s, u"aB1"_s, u"aB123"_s, u""_s,
                                    u"9000000001"_s, u"аB12"_s /* Cyrillic */ }) {
        answer();
        till.cashier.enter(entered);
        EXPECT_EQ(find(), "failed, card '', error 'vantiroIncorrectConfirmCode: Неверный код подтверждения'")
            << '\'' << entered.toStdString() << '\'';
        expectQuestion();
    }
}

TEST_F(PhoneCard, WrongCodeIsToldOnTheFormWhichDoesNotComeBack)
{
    answer();
    till.cashier.enter(u"aB13"_s);

    EXPECT_EQ(find(), "failed, card '', error 'vantiroIncorrectConfirmCode: Неверный код подтверждения'");

    expectQuestion();
    EXPECT_EQ(till.told(), "post GetVerifyCode\nform inputVantiroConfirmCode");
    EXPECT_EQ(readable(till.cashier.shown()), "form vantiroIncorrectConfirmCode: Неверный код подтверждения");
    EXPECT_EQ(till.log(), asking + "\nerror: Неверный код подтверждения");
    EXPECT_EQ(till.lastError(), ": ") << "the result carries the error";
}

TEST_F(PhoneCard, OfflineDocumentIsNoReasonNotToAsk)
{
    till.goOffline();
    answer();
    till.cashier.enter(u"aB12"_s);

    EXPECT_EQ(find(), found);

    expectQuestion();
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));
}

TEST_F(PhoneCard, LostConnectionLeavesTheDocumentOnline)
{
    till.server.refuse();

    EXPECT_EQ(find(), "failed, card '', error 'requestNoConnection: Нет связи с сервером'");

    expectQuestion();
    EXPECT_EQ(till.told(), "post GetVerifyCode") << "no form, and nothing is stored";
    EXPECT_EQ(till.log(),
              asking
                  + "\nerror: Произошла ошибка при выполнении запроса соединение отклонено\n"
                    "error: Нет связи с сервером");
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
}

TEST_F(PhoneCard, ExceptionOfAnotherTypeReachesTheHost)
{
    till.server.whilePosting([] { throw BasicException(tr::Tr(u"сбой"_s)); });

    EXPECT_THROW(static_cast<void>(find()), BasicException);

    till.server.whilePosting({});
    expectQuestion();
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), asking);
}

namespace {

struct BadLookup {
    const char* rule;
    RestOutcome outcome;
    const char* error; // "key: text"
    const char* log;
};

void PrintTo(const BadLookup& row, std::ostream* out)
{
    *out << row.error;
}

class PhoneCardFailure : public PhoneCard, public testing::WithParamInterface<BadLookup> { };

}

INSTANTIATE_TEST_SUITE_P(
    Answers, PhoneCardFailure,
    testing::Values(
        BadLookup { "Fault", RestOutcome::http(500, soap::reply(soap::fault("Телефон не найден"))),
                    ": Телефон не найден", "\nerror: Телефон не найден" },
        BadLookup { "NoResult", RestOutcome::http(200, soap::reply("<Other/>")),
                    "vantiroConfirmCodeNotFound: В ответе от сервера не найден код подтверждения для добавления карты",
                    "\nerror: В ответе от сервера не найден код подтверждения для добавления карты" },
        BadLookup { "NoCode",
                    RestOutcome::http(200, soap::reply("<GetVerifyCodeResult>:9000000001</GetVerifyCodeResult>")),
                    "requestIncorrectAnswer: Некорректный ответ от сервера", "\nerror: Некорректный ответ от сервера" },
        BadLookup { "NoCard", RestOutcome::http(200, soap::reply("<GetVerifyCodeResult>1234:</GetVerifyCodeResult>")),
                    "requestIncorrectAnswer: Некорректный ответ от сервера",
                    "\nerror: Некорректный ответ от сервера" }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(PhoneCardFailure, ShowsNoForm)
{
    till.server.end(GetParam().outcome);

    EXPECT_EQ(find(), std::string("failed, card '', error '") + GetParam().error + '\'');

    expectQuestion();
    EXPECT_EQ(till.told(), "post GetVerifyCode");
    EXPECT_EQ(till.log(), asking + GetParam().log);
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
}

// Whatever else the cashier may have entered, the host's own answer stands.
TEST_F(PhoneCard, OtherTypesAreLeftToTheHost)
{
    for (const int type : { -1, 0, 2, 15 }) {
        EXPECT_EQ(find(u"1234"_s, type),
                  "failed, card '', error 'loyaltyCardSearchNotSupported: Поиск карты по введенным данным не "
                  "поддерживается'");
        till.server.expectNothing();
        EXPECT_EQ(till.told(), "");
        EXPECT_EQ(till.log(),
                  "error: Система лояльности не поддерживает поиск карты по введенному типу " + std::to_string(type));
        EXPECT_EQ(till.lastError(), ": ");
    }
}
