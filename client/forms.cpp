#include "client/forms.h"

#include <array>

namespace vantiro::forms {

namespace {

/// As `QString::number(value, 'f', decimals)` has it. Qt works out the exact decimal value of each double, some
/// thousand instructions a number, and a cheque has half a dozen numbers a line. That is needed only where rounding
/// hangs on it.
template <int decimals>
[[nodiscard]] QString fixed(double value)
{
    constexpr quint64 base = 10;
    constexpr double scale = decimals == 2 ? 100.0 : 1000.0;
    constexpr double most = 1e6; // below it the product is exact to a ten-millionth
    constexpr double doubt = 1e-6; // this near to the middle between two numbers the exact value decides
    const auto exactly = [value] { return QString::number(value, 'f', decimals); };
    const double size = value < 0 ? -value : value;
    if (!(size < most)) { // or is no number at all
        return exactly();
    }
    const double scaled = size * scale;
    auto units = static_cast<quint64>(scaled);
    const double rest = scaled - static_cast<double>(units);
    if (rest > 0.5 - doubt && rest < 0.5 + doubt) {
        return exactly();
    }
    units += rest > 0.5 ? 1 : 0;
    if (units == 0) { // which may have a sign
        return exactly();
    }

    std::array<char16_t, 16> text {};
    char16_t* begin = text.data() + text.size();
    const auto put = [&begin](char16_t letter) { *--begin = letter; };
    const auto putDigit = [&] {
        put(static_cast<char16_t>(u'0' + units % base));
        units /= base;
    };
    for (int i = 0; i < decimals; ++i) {
        putDigit();
    }
    put(u'.');
    do {
        putDigit();
    } while (units != 0);
    if (value < 0) {
        put(u'-');
    }
    return QString(reinterpret_cast<const QChar*>(begin), text.data() + text.size() - begin);
}

/// Writes the number over so many letters of the text, with zeros before it.
void putDigits(QChar* text, int at, int digits, int number)
{
    constexpr int base = 10;
    for (int place = at + digits - 1; place >= at; --place) {
        text[place] = QChar(u'0' + number % base);
        number /= base;
    }
}

} // namespace

QString money(double value)
{
    return fixed<2>(value);
}

QString quantity(double value)
{
    return fixed<3>(value);
}

// Not by a pattern: Qt reads one anew each time, which was a tenth of a short cheque.
QString dateTime(const QDateTime& value)
{
    constexpr int lastYear = 9999; // beyond it, and before the first, years have other digits
    const QDate date = value.date();
    if (!value.isValid() || date.year() < 1 || date.year() > lastYear) {
        return value.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
    }
    const QTime time = value.time();
    QString text = QStringLiteral("0000-00-00T00:00:00");
    QChar* const letters = text.data();
    putDigits(letters, 0, 4, date.year());
    putDigits(letters, 5, 2, date.month());
    putDigits(letters, 8, 2, date.day());
    putDigits(letters, 11, 2, time.hour());
    putDigits(letters, 14, 2, time.minute());
    putDigits(letters, 17, 2, time.second());
    return text;
}

} // namespace vantiro::forms
