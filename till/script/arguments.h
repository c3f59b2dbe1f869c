#pragma once

#include "host/export.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace till {

/// The arguments of one line, taken one after the other. What is missing or is no number throws `ScriptError` with the
/// name under which the usage of the verb knows it. [cheque-thread]
class VANTIRO_HOST_API Arguments {
public:
    /// Without the verb.
    explicit Arguments(const QStringList& words);

    [[nodiscard]] bool isEmpty() const;
    [[nodiscard]] QString word(const QString& name);
    [[nodiscard]] int number(const QString& name);
    /// Roubles with at most two decimals, a point between them.
    [[nodiscard]] double money(const QString& name);
    [[nodiscard]] double quantity(const QString& name);
    [[nodiscard]] std::optional<int> numberIfAny(const QString& name);
    [[nodiscard]] std::optional<double> moneyIfAny(const QString& name);

    /// Takes the next word when it is this one.
    [[nodiscard]] bool take(const QString& word);
    /// Takes the next word when it begins with this; gives what follows.
    [[nodiscard]] std::optional<QString> takeAfter(QChar mark);

    /// Nothing may be left. Throws `ScriptError`.
    void requireEnd() const;

    [[nodiscard]] static double moneyOf(const QString& text, const QString& name);
    [[nodiscard]] static double quantityOf(const QString& text, const QString& name);

private:
    QStringList rest;
};

} // namespace till
