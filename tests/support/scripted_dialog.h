#pragma once

#include "host/framework/dialog.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <functional>

/// A cashier who answers by a script. While one of these lives, it is what `MockFactory<Dialog>` gives out; afterwards
/// the factory makes real dialogs again. Two must not live at once.
///
/// A form beyond the script fails the test and counts as cancelled; so does an answer that nobody has asked for when
/// this object goes. [cheque-thread]
class ScriptedDialog : public Dialog {
public:
    ScriptedDialog()
    {
        EXPECT_EQ(MockFactory<Dialog>::mocked, nullptr) << "two substitutes at once";
        MockFactory<Dialog>::mocked = this;
    }

    ~ScriptedDialog() override
    {
        MockFactory<Dialog>::mocked = nullptr;
        EXPECT_TRUE(answers.isEmpty()) << answers.size() << " answers were never asked for";
    }

    /// The next form is left with this text.
    void enter(const QString& data)
    {
        answers.append([this, data] {
            return core::BasicDialog::Result(data, [this](const tr::Tr& text) { note(QStringLiteral("form"), text); });
        });
    }

    /// The next form is cancelled.
    void cancel()
    {
        answers.append([] { return core::BasicDialog::Result(); });
    }

    /// All that the cashier has seen, in order: "error 0 0 key: text", "message 1 0 0 key: text", "form key: text" for
    /// a text that a form was told to show. Forms themselves are in `forms`.
    [[nodiscard]] QStringList shown() const
    {
        return seen;
    }

    /// The forms shown, in order.
    [[nodiscard]] QList<core::InputForm> forms() const
    {
        return shownForms;
    }

    [[nodiscard]] core::BasicDialog::Result showForm(const core::InputForm& form) override
    {
        shownForms.append(form);
        if (answers.isEmpty()) {
            ADD_FAILURE() << "a form beyond the script: " << form.id.toStdString();
            return {};
        }
        return answers.takeFirst()();
    }

    void showError(const tr::Tr& text, int first, int second) override
    {
        note(QStringLiteral("error %1 %2").arg(first).arg(second), text);
    }

    void showMessage(const tr::Tr& text, int first, int second, int third) override
    {
        note(QStringLiteral("message %1 %2 %3").arg(first).arg(second).arg(third), text);
    }

private:
    void note(const QString& kind, const tr::Tr& text)
    {
        seen.append(kind + u' ' + text.getKey() + QStringLiteral(": ") + text.ru());
    }

    QList<std::function<core::BasicDialog::Result()>> answers;
    QList<core::InputForm> shownForms;
    QStringList seen;
};
