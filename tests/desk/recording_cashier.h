#pragma once

#include "till/desk/cashier.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <optional>
#include <string>

/// A cashier who writes down what reaches him and answers by a script. While one of these lives, the desk knows no
/// other; afterwards it is the terminal's again. A question beyond the script fails the test, and so does an answer
/// that nobody has asked for. [cheque-thread]
class RecordingCashier {
public:
    RecordingCashier()
    {
        till::setCashier({ [this](const QString& text) { note("show", text); },
                           [this](const QString& prompt) { return answer(prompt); },
                           [this](const QString& slip) { note("slip", slip); } });
    }

    ~RecordingCashier()
    {
        till::setCashier(till::terminalCashier());
        EXPECT_TRUE(answers.isEmpty()) << answers.size() << " answers were never asked for";
    }

    void types(const QString& line)
    {
        answers.append(line);
    }

    void givesUp()
    {
        answers.append(std::nullopt);
    }

    /// All that has reached him since the last time, in order: "show: text", "ask: prompt", "slip: text".
    [[nodiscard]] std::string seen()
    {
        const std::string result = notes.join(u'\n').toStdString();
        notes.clear();
        return result;
    }

private:
    Q_DISABLE_COPY_MOVE(RecordingCashier)

    void note(const char* how, const QString& text)
    {
        notes.append(QString::fromLatin1(how) + QStringLiteral(": ") + text);
    }

    [[nodiscard]] std::optional<QString> answer(const QString& prompt)
    {
        note("ask", prompt);
        if (answers.isEmpty()) {
            ADD_FAILURE() << "a question beyond the script: " << prompt.toStdString();
            return std::nullopt;
        }
        return answers.takeFirst();
    }

    QList<std::optional<QString>> answers;
    QStringList notes;
};
