#include "till/script/arguments.h"

#include "till/script/script_line.h"

#include <QRegularExpression>

namespace till {

namespace {

    [[noreturn]] void refuse(const QString& text, const QString& name, const QString& wanted)
    {
        throw ScriptError(QStringLiteral("%1 must be %2, not \"%3\"").arg(name, wanted, text));
    }

    [[nodiscard]] double decimal(const QString& text, const QString& name, int places)
    {
        static const QRegularExpression form(QStringLiteral("\\A[0-9]{1,9}(\\.[0-9]{1,3})?\\z"));
        const qsizetype point = text.indexOf(u'.');
        if (!form.match(text).hasMatch() || (point >= 0 && text.size() - point - 1 > places)) {
            refuse(text, name, QStringLiteral("a number with at most %1 decimals").arg(places));
        }
        return text.toDouble();
    }

} // namespace

Arguments::Arguments(const QStringList& words)
    : rest(words)
{
}

bool Arguments::isEmpty() const
{
    return rest.isEmpty();
}

QString Arguments::word(const QString& name)
{
    if (rest.isEmpty()) {
        throw ScriptError(QStringLiteral("%1 is missing").arg(name));
    }
    return rest.takeFirst();
}

int Arguments::number(const QString& name)
{
    static const QRegularExpression form(QStringLiteral("\\A[0-9]{1,9}\\z"));
    const QString text = word(name);
    if (!form.match(text).hasMatch()) {
        refuse(text, name, QStringLiteral("a whole number"));
    }
    return text.toInt();
}

double Arguments::money(const QString& name)
{
    return moneyOf(word(name), name);
}

double Arguments::quantity(const QString& name)
{
    return quantityOf(word(name), name);
}

std::optional<int> Arguments::numberIfAny(const QString& name)
{
    return rest.isEmpty() ? std::nullopt : std::optional(number(name));
}

std::optional<double> Arguments::moneyIfAny(const QString& name)
{
    return rest.isEmpty() ? std::nullopt : std::optional(money(name));
}

bool Arguments::take(const QString& word)
{
    if (rest.isEmpty() || rest.constFirst() != word) {
        return false;
    }
    rest.removeFirst();
    return true;
}

std::optional<QString> Arguments::takeAfter(QChar mark)
{
    if (rest.isEmpty() || !rest.constFirst().startsWith(mark)) {
        return std::nullopt;
    }
    return rest.takeFirst().sliced(1);
}

void Arguments::requireEnd() const
{
    if (!rest.isEmpty()) {
        throw ScriptError(QStringLiteral("\"%1\" is not understood here").arg(rest.constFirst()));
    }
}

double Arguments::moneyOf(const QString& text, const QString& name)
{
    return decimal(text, name, 2);
}

double Arguments::quantityOf(const QString& text, const QString& name)
{
    return decimal(text, name, 3);
}

} // namespace till
