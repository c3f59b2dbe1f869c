#include "host/facilities/serder.h"

#include "till/facilities/moment_text.h"

#include <QDateTime>
#include <QMetaProperty>

#include <algorithm>
#include <cmath>
#include <limits>

namespace serder {

namespace details {

namespace {

/// A moment as text that JSON keeps; one that is none has no text.
[[nodiscard]] QVariant storedMoment(const QDateTime& moment)
{
    if (!moment.isValid()) {
        return {};
    }
    // Details of one discount were made in one instant.
    thread_local QDateTime last;
    thread_local QVariant lastText;
    if (!till::hasSameBits(moment, last)) {
        last = moment;
        lastText = till::momentText(moment);
    }
    return lastText;
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
