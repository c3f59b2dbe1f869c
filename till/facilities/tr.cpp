#include "host/facilities/tr.h"

#include <algorithm>

namespace tr {

namespace {

/// A place marker in a text: "%" and one or two digits, the first not 0.
struct Marker {
    qsizetype start = 0;
    qsizetype length = 0;
    int number = 0;
};

[[nodiscard]] bool isDigit(const QString& text, qsizetype index)
{
    return index < text.size() && text.at(index) >= u'0' && text.at(index) <= u'9';
}

[[nodiscard]] QList<Marker> findMarkers(const QString& text)
{
    QList<Marker> markers;
    for (qsizetype i = text.indexOf(u'%'); i >= 0; i = text.indexOf(u'%', i + 1)) {
        if (!isDigit(text, i + 1) || text.at(i + 1) == u'0') {
            continue;
        }
        const qsizetype length = isDigit(text, i + 2) ? 3 : 2;
        markers.append({ i, length, text.sliced(i + 1, length - 1).toInt() });
    }
    return markers;
}

[[nodiscard]] QList<int> distinctNumbers(const QList<Marker>& markers)
{
    QList<int> numbers;
    for (const Marker& marker : markers) {
        numbers.append(marker.number);
    }
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

} // namespace

Tr::Tr() = default;

Tr::Tr(const QString& plainText)
    : text(plainText)
{
}

Tr::Tr(const QString& translationKey, const QString& russianText)
    : key(translationKey)
    , text(russianText)
{
}

Tr::Tr(const Tr& other) = default;
Tr& Tr::operator=(const Tr& other) = default;
Tr::~Tr() = default;

Tr& Tr::arg(const Tr& argument)
{
    arguments.append(argument);
    return *this;
}

QString Tr::ru() const
{
    if (arguments.isEmpty()) {
        return text;
    }
    // One pass over the template: what an argument brings in is never looked at again.
    const QList<Marker> markers = findMarkers(text);
    const QList<int> numbers = distinctNumbers(markers);
    QString result;
    qsizetype copied = 0;
    for (const Marker& marker : markers) {
        const qsizetype argument = numbers.indexOf(marker.number);
        if (argument >= arguments.size()) {
            continue;
        }
        result += QStringView(text).sliced(copied, marker.start - copied);
        result += arguments.at(argument).ru();
        copied = marker.start + marker.length;
    }
    return result + QStringView(text).sliced(copied).toString();
}

QString Tr::getKey() const
{
    return key;
}

Tr::operator QVariant() const
{
    return QVariant::fromValue(*this);
}

} // namespace tr

namespace {

// Registered when the library is loaded: a variant is asked for its text by whoever shows it.
[[maybe_unused]] const bool converterRegistered
    = QMetaType::registerConverter<tr::Tr, QString>([](const tr::Tr& text) { return text.ru(); });

} // namespace
