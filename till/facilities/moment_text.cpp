#include "till/facilities/moment_text.h"

#include <cstdlib>
#include <cstring>

namespace till {

namespace {

    /// The number in so many digits, with zeros before it. Returns the place behind it.
    [[nodiscard]] QChar* putDigits(QChar* place, int number, int digits)
    {
        constexpr int base = 10;
        for (int i = digits - 1; i >= 0; --i) {
            place[i] = QChar(u'0' + static_cast<char16_t>(number % base));
            number /= base;
        }
        return place + digits;
    }

    /// Written here because each line of a cheque has a moment and Qt formats each by `printf`.
    [[nodiscard]] QString textOfFourDigitYear(const QDateTime& moment)
    {
        constexpr int minute = 60;
        constexpr qsizetype longest = 29;
        int year = 0;
        int month = 0;
        int day = 0;
        moment.date().getDate(&year, &month, &day);
        const QTime time = moment.time();
        const int offset = moment.offsetFromUtc();
        const int minutes = std::abs(offset) / minute;
        QString text(longest, u'-');
        QChar* const begin = text.data();
        QChar* place = putDigits(begin, year, 4) + 1;
        place = putDigits(place, month, 2) + 1;
        place = putDigits(place, day, 2);
        *place++ = u'T';
        place = putDigits(place, time.hour(), 2);
        *place++ = u':';
        place = putDigits(place, time.minute(), 2);
        *place++ = u':';
        place = putDigits(place, time.second(), 2);
        *place++ = u'.';
        place = putDigits(place, time.msec(), 3);
        if (offset == 0) {
            *place++ = u'Z';
        } else {
            *place++ = offset < 0 ? u'-' : u'+';
            place = putDigits(place, minutes / minute, 2);
            *place++ = u':';
            place = putDigits(place, minutes % minute, 2);
        }
        text.truncate(place - begin);
        return text;
    }

} // namespace

QString momentText(const QDateTime& moment)
{
    constexpr int lastYear = 9999; // beyond it, and before the first, years have other digits
    const int year = moment.date().year();
    return year > 0 && year <= lastYear
        ? textOfFourDigitYear(moment)
        : moment.toOffsetFromUtc(moment.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

bool hasSameBits(const QDateTime& one, const QDateTime& other)
{
    return std::memcmp(&one, &other, sizeof(QDateTime)) == 0;
}

} // namespace till
