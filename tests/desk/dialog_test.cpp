#include "host/framework/dialog.h"
#include "tests/desk/recording_cashier.h"

#include <string>

using namespace Qt::StringLiterals;

namespace {

core::InputForm codeForm()
{
    core::InputForm form;
    form.title = tr::Tr(u"confirmTitle"_s, u"Подтверждение карты"_s);
    form.message = tr::Tr(u"confirmMessage"_s, u"Введите код из SMS"_s);
    form.scanError = tr::Tr(u"Код не читается"_s);
    form.okButton = tr::Tr(u"ОК"_s);
    form.cancelButton = tr::Tr(u"Отмена"_s);
    form.type = 5;
    form.id = u"vantiroCode"_s;
    form.lengthLimit = 4095;
    return form;
}

core::InputForm formOfLimit(int limit)
{
    core::InputForm form;
    form.lengthLimit = limit;
    return form;
}

class DialogAtTheDesk : public testing::Test {
protected:
    /// What the form gives when the line is typed into it.
    [[nodiscard]] std::string entered(int limit, const QString& line)
    {
        cashier.types(line);
        const core::BasicDialog::Result result = dialog->showForm(formOfLimit(limit));
        EXPECT_FALSE(result.canceled());
        return result.getData().toStdString();
    }

    RecordingCashier cashier;
    const QSharedPointer<Dialog> dialog = MockFactory<Dialog>::create();
};

TEST_F(DialogAtTheDesk, FormShowsItsTitleAndAsksWithItsMessage)
{
    cashier.types(u"1234"_s);
    const core::BasicDialog::Result result = dialog->showForm(codeForm());

    EXPECT_EQ(cashier.seen(), "show: Подтверждение карты\nask: Введите код из SMS");
    EXPECT_FALSE(result.canceled());
    EXPECT_EQ(result.getData().toStdString(), "1234");
}

TEST_F(DialogAtTheDesk, FormShowsTheArgumentsOfItsTexts)
{
    core::InputForm form;
    form.title = tr::Tr(u"title"_s, u"Карта %1"_s).arg(tr::Tr(u"№ %1"_s));
    form.message = tr::Tr(u"message"_s, u"Код для %1"_s).arg(tr::Tr(u"+7 999"_s));
    cashier.types(u"1"_s);
    static_cast<void>(dialog->showForm(form));

    EXPECT_EQ(cashier.seen(), "show: Карта № %1\nask: Код для +7 999");
}

TEST_F(DialogAtTheDesk, CashierWhoGivesUpCancelsTheForm)
{
    cashier.givesUp();
    const core::BasicDialog::Result result = dialog->showForm(codeForm());

    EXPECT_TRUE(result.canceled());
    EXPECT_EQ(result.getData().toStdString(), "");
}

TEST_F(DialogAtTheDesk, CanceledFormShowsNothingMore)
{
    cashier.givesUp();
    const core::BasicDialog::Result result = dialog->showForm(codeForm());
    static_cast<void>(cashier.seen());
    result.dispatchEvent(tr::Tr(u"Неверный код"_s));

    EXPECT_EQ(cashier.seen(), "");
}

TEST_F(DialogAtTheDesk, DispatchedEventIsShown)
{
    cashier.types(u"1234"_s);
    const core::BasicDialog::Result result = dialog->showForm(codeForm());
    static_cast<void>(cashier.seen());
    result.dispatchEvent(tr::Tr(u"vantiroIncorrectConfirmCode"_s, u"Неверный код подтверждения"_s));
    result.dispatchEvent(tr::Tr(u"ещё раз"_s));

    EXPECT_EQ(cashier.seen(), "show: Неверный код подтверждения\nshow: ещё раз");
}

TEST_F(DialogAtTheDesk, CopyOfAResultShowsOnTheSameForm)
{
    cashier.types(u"1234"_s);
    const core::BasicDialog::Result result = dialog->showForm(codeForm());
    static_cast<void>(cashier.seen());
    const core::BasicDialog::Result copy = result;
    copy.dispatchEvent(tr::Tr(u"Неверный код"_s));

    EXPECT_EQ(copy.getData().toStdString(), "1234");
    EXPECT_EQ(cashier.seen(), "show: Неверный код");
}

TEST_F(DialogAtTheDesk, WhatIsEnteredComesBackAsItWasEntered)
{
    EXPECT_EQ(entered(4095, u" +7 (999) 123  "_s), " +7 (999) 123  ");
    EXPECT_EQ(entered(4095, u"%1 <b>&amp;"_s), "%1 <b>&amp;");
    EXPECT_EQ(entered(4095, u"Ёлка"_s), "Ёлка");
}

TEST_F(DialogAtTheDesk, EntryOfTheLimitIsWhole)
{
    EXPECT_EQ(entered(4, u"1234"_s), "1234");
}

TEST_F(DialogAtTheDesk, EntryBeyondTheLimitIsCut)
{
    EXPECT_EQ(entered(4, u"12345"_s), "1234");
    EXPECT_EQ(entered(1, u"Ёлка"_s), "Ё");
}

TEST_F(DialogAtTheDesk, EntryOfAnyLengthFitsAFormWithoutLimit)
{
    EXPECT_EQ(entered(0, QString(5000, u'7')), std::string(5000, '7'));
}

TEST_F(DialogAtTheDesk, NoHalfOfACharacterIsLeftAtTheLimit)
{
    EXPECT_EQ(entered(4, u"123\U0001F600"_s), "123");
    EXPECT_EQ(entered(5, u"123\U0001F600"_s), "123\U0001F600");
    EXPECT_EQ(entered(5, u"123\U0001F6004"_s), "123\U0001F600");
}

TEST_F(DialogAtTheDesk, ErrorReachesTheCashier)
{
    dialog->showError(tr::Tr(u"key"_s, u"Сервер ответил: %1"_s).arg(tr::Tr(u"карта заблокирована"_s)), 0, 0);

    EXPECT_EQ(cashier.seen(), "show: Сервер ответил: карта заблокирована");
}

TEST_F(DialogAtTheDesk, MessageReachesTheCashier)
{
    dialog->showMessage(tr::Tr(u"key"_s, u"Купон нельзя удалить"_s), 1, 0, 0);

    EXPECT_EQ(cashier.seen(), "show: Купон нельзя удалить");
}

TEST_F(DialogAtTheDesk, FormsFollowEachOther)
{
    EXPECT_EQ(entered(4095, u"79990000001"_s), "79990000001");
    EXPECT_EQ(entered(4095, u"1234"_s), "1234");
}

TEST(DialogResult, IsCanceledWithoutAForm)
{
    const core::BasicDialog::Result result;
    result.dispatchEvent(tr::Tr(u"некому"_s));

    EXPECT_TRUE(result.canceled());
    EXPECT_EQ(result.getData().toStdString(), "");
}

TEST(DialogResult, WithoutAWayToShowShowsNothing)
{
    const core::BasicDialog::Result result(u"1234"_s, nullptr);
    result.dispatchEvent(tr::Tr(u"некому"_s));

    EXPECT_FALSE(result.canceled());
    EXPECT_EQ(result.getData().toStdString(), "1234");
}

} // namespace
