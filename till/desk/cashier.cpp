#include "till/desk/cashier.h"

#include <QTextStream>

#include <cstdio>

namespace till {

namespace {

    void print(const QString& text)
    {
        QTextStream(stdout) << text << Qt::endl;
    }

    [[nodiscard]] std::optional<QString> readLine(const QString& prompt)
    {
        QTextStream(stdout) << prompt << QLatin1String(": ") << Qt::flush;
        // One stream for the life of the process: it reads ahead, and a second one would miss what it holds.
        static QTextStream input(stdin);
        QString line;
        if (!input.readLineInto(&line) || line.isEmpty()) {
            return std::nullopt;
        }
        return line;
    }

    [[nodiscard]] Cashier& current()
    {
        static Cashier cashier = terminalCashier();
        return cashier;
    }

} // namespace

Cashier terminalCashier()
{
    return Cashier { print, readLine, print };
}

void setCashier(const Cashier& replacement)
{
    current() = replacement;
}

const Cashier& cashier()
{
    return current();
}

} // namespace till
