#include "host/facilities/serder.h"

#include <QDateTime>
#include <QMetaProperty>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace serder {

namespace details {

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

/// `2024-03-05T14:07:09.250+03:00`, and `Z` for no distance, as Qt::ISODateWithMs has it of a moment that knows its
/// distance from UTC. Written here because each line of a cheque has a moment and Qt formats each by `printf`.
[[nodiscard]] QString isoText(const QDateTime& moment)
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

/// A moment as text that JSON keeps: with its distance from UTC, as the time of the till alone comes twice in the hour
/// in which clocks are set back. A moment that is none has no text.
[[nodiscard]] QVariant storedMoment(const QDateTime& moment)
{
    constexpr int lastYear = 9999; // beyond it, and before the first, years have other digits
    if (!moment.isValid()) {
        return {};
    }
    const int year = moment.date().year();
    return year > 0 && year <= lastYear
        ? isoText(moment)
        : moment.toOffsetFromUtc(moment.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

/// The same moment in the time of the till, in which it is shown.
[[nodiscard]] QVariant momentFrom(const QVariant& stored)
{
    const QDateTime moment = stored.toDateTime();
    return moment.isValid() ? moment.toLocalTime() : QVariant();
}

[[nodiscard]] bool isEmptyValue(const QVariant& value)
{
    return !value.isValid() || value.metaType() == QMetaType::fromType<std::nullptr_t>();
}

template <class T>
[[nodiscard]] QVariant wholeNumber(double number)
{
    const bool fits = number >= static_cast<double>(std::numeric_limits<T>::min())
        && number <= static_cast<double>(std::numeric_limits<T>::max());
    return fits && std::trunc(number) == number ? QVariant::fromValue(static_cast<T>(number)) : QVariant();
}

/// The stored value as one of the type, invalid when it is none. JSON has doubles for integers: those that are none, or
/// too large for the type, are refused and not rounded.
[[nodiscard]] QVariant valueOf(const QVariant& stored, const QMetaType& type)
{
    if (isEmptyValue(stored)) {
        return {};
    }
    if (type == QMetaType::fromType<QDateTime>()) {
        return momentFrom(stored);
    }
    QVariant value = stored;
    if (type == QMetaType::fromType<int>() || type.flags().testFlag(QMetaType::IsEnumeration)) {
        bool ok = false;
        value = wholeNumber<int>(stored.toDouble(&ok));
        value = ok ? value : QVariant();
    }
    return value.isValid() && value.convert(type) ? value : QVariant();
}

} // namespace

struct Strategy::Property {
    enum class Kind { moment, enumeration, any, other };

    QMetaProperty property;
    QString name;
    Kind kind = Kind::other;
};

Strategy::Strategy() = default;
Strategy::Strategy(const Strategy& other) = default;
Strategy& Strategy::operator=(const Strategy& other) = default;
Strategy::~Strategy() = default;

Strategy Strategy::create(const QMetaObject& metaObject)
{
    const auto kindOf = [](const QMetaProperty& property) {
        if (property.metaType() == QMetaType::fromType<QDateTime>()) {
            return Property::Kind::moment;
        }
        if (property.metaType() == QMetaType::fromType<QVariant>()) {
            return Property::Kind::any;
        }
        return property.isEnumType() ? Property::Kind::enumeration : Property::Kind::other;
    };
    Strategy strategy;
    for (int index = 0; index < metaObject.propertyCount(); ++index) {
        const QMetaProperty property = metaObject.property(index);
        if (property.isReadable() && property.isWritable() && property.isStored()) {
            strategy.properties.append({ property, QString::fromLatin1(property.name()), kindOf(property) });
        }
    }
    std::ranges::sort(strategy.properties, {}, &Property::name);
    return strategy;
}

void Strategy::serialize(QVariant* target, const void* object, const QMetaObject&) const
{
    QVariantMap map;
    for (const Property& entry : properties) {
        QVariant value = entry.property.readOnGadget(object);
        if (entry.kind == Property::Kind::moment) {
            value = storedMoment(value.toDateTime());
        } else if (entry.kind == Property::Kind::enumeration) {
            value = value.toInt(); // a store keeps numbers and knows nothing of the names
        }
        map.insert(map.cend(), entry.name, value);
    }
    *target = map;
}

void Strategy::deserialize(void* object, const QVariant& source, const QMetaObject&) const
{
    const QVariantMap map = source.toMap();
    for (const Property& entry : properties) {
        const auto stored = map.constFind(entry.name);
        if (stored == map.cend()) {
            continue;
        }
        if (entry.kind == Property::Kind::any) {
            entry.property.writeOnGadget(object, isEmptyValue(*stored) ? QVariant() : *stored);
        } else if (const QVariant value = valueOf(*stored, entry.property.metaType()); value.isValid()) {
            entry.property.writeOnGadget(object, value);
        }
    }
}

} // namespace details

void default_serder_type<QList<QString>>::serialize(QVariant* target, const QList<QString>& list)
{
    *target = QVariant::fromValue(list);
}

void default_serder_type<QList<QString>>::deserialize(QList<QString>* list, const QVariant& source)
{
    *list = source.toStringList();
}

} // namespace serder
