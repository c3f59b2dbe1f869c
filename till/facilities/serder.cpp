#include "host/facilities/serder.h"

#include <QDateTime>
#include <QMetaProperty>

#include <cmath>
#include <limits>

namespace serder {

namespace details {

namespace {

/// A moment as text that JSON keeps: with its distance from UTC, as the time of the till alone comes twice in the hour
/// in which clocks are set back. A moment that is none has no text.
[[nodiscard]] QVariant storedMoment(const QDateTime& moment)
{
    return moment.isValid() ? moment.toOffsetFromUtc(moment.offsetFromUtc()).toString(Qt::ISODateWithMs) : QVariant();
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

Strategy::Strategy() = default;
Strategy::Strategy(const Strategy& other) = default;
Strategy& Strategy::operator=(const Strategy& other) = default;
Strategy::~Strategy() = default;

Strategy Strategy::create(const QMetaObject& metaObject)
{
    Strategy strategy;
    for (int index = 0; index < metaObject.propertyCount(); ++index) {
        const QMetaProperty property = metaObject.property(index);
        if (property.isReadable() && property.isWritable() && property.isStored()) {
            strategy.properties.append(index);
        }
    }
    return strategy;
}

void Strategy::serialize(QVariant* target, const void* object, const QMetaObject& metaObject) const
{
    QVariantMap map;
    for (const int index : properties) {
        const QMetaProperty property = metaObject.property(index);
        QVariant value = property.readOnGadget(object);
        if (property.metaType() == QMetaType::fromType<QDateTime>()) {
            value = storedMoment(value.toDateTime());
        } else if (property.isEnumType()) {
            value = value.toInt(); // a store keeps numbers and knows nothing of the names
        }
        map.insert(QString::fromLatin1(property.name()), value);
    }
    *target = map;
}

void Strategy::deserialize(void* object, const QVariant& source, const QMetaObject& metaObject) const
{
    const QVariantMap map = source.toMap();
    for (const int index : properties) {
        const QMetaProperty property = metaObject.property(index);
        const auto entry = map.constFind(QString::fromLatin1(property.name()));
        if (entry == map.constEnd()) {
            continue;
        }
        if (property.metaType() == QMetaType::fromType<QVariant>()) {
            property.writeOnGadget(object, isEmptyValue(*entry) ? QVariant() : *entry);
        } else if (const QVariant value = valueOf(*entry, property.metaType()); value.isValid()) {
            property.writeOnGadget(object, value);
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
