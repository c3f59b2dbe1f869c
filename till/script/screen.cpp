#include "till/script/screen.h"

#include "till/desk/cashier.h"

namespace till {

Screen::Screen(std::function<void(const QString&)> outputFunction,
               std::function<std::optional<QString>(const QString&)> askFunction)
    : output(std::move(outputFunction))
    , askElsewhere(std::move(askFunction))
{
    Cashier cashier;
    cashier.show = [this](const QString& text) {
        shownTexts.append(text);
        output(QStringLiteral("    ") + text);
    };
    cashier.ask = [this](const QString& prompt) -> std::optional<QString> {
        if (answers.isEmpty()) {
            return askElsewhere ? askElsewhere(prompt) : std::nullopt;
        }
        output(QStringLiteral("    %1: %2").arg(prompt, answers.constFirst()));
        return answers.takeFirst();
    };
    cashier.handOver = [this](const QString& slip) {
        printedSlips.append(slip);
        allSlips.append(slip);
        for (const QString& line : slip.split(u'\n')) {
            output(QStringLiteral("    | ") + line);
        }
    };
    setCashier(cashier);
}

Screen::~Screen()
{
    setCashier(terminalCashier());
}

void Screen::answerNext(const QString& text)
{
    answers.append(text);
}

void Screen::dropAnswers()
{
    answers.clear();
}

void Screen::beginStep()
{
    shownTexts.clear();
    printedSlips.clear();
}

const QStringList& Screen::shown() const
{
    return shownTexts;
}

const QStringList& Screen::printed() const
{
    return printedSlips;
}

const QStringList& Screen::slips() const
{
    return allSlips;
}

void Screen::write(const QString& line) const
{
    output(line);
}

} // namespace till
