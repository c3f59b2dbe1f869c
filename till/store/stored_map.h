#pragma once

#include "host/facilities/exceptions.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QVariant>

#include <limits>
#include <optional>

namespace till {

/// Ends the writing or the reading of a document.
[[noreturn]] inline void refuseDocument(const QString& reason)
{
    tr::Tr text(QStringLiteral("tillDocumentFailed"), QStringLiteral("Документ не записывается и не читается: %1"));
    throw BasicException(text.arg(tr::Tr(reason)));
}

/// One object of a stored document, read strictly: an entry that is missing or of another type throws `BasicException`.
/// What was written is always whole, so such an object was damaged, and a document about money is never guessed at. A
/// value. [any-thread]
class StoredMap {
public:
    explicit StoredMap(const QJsonObject& storedObject)
        : object(storedObject)
    {
    }

    [[nodiscard]] QString text(QStringView key) const
    {
        return entry(key, QJsonValue::String).toString();
    }

    [[nodiscard]] double number(QStringView key) const
    {
        return entry(key, QJsonValue::Double).toDouble();
    }

    [[nodiscard]] int whole(QStringView key) const
    {
        constexpr qint64 none = std::numeric_limits<qint64>::max();
        const qint64 value = entry(key, QJsonValue::Double).toInteger(none);
        if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max()) {
            damaged(key);
        }
        return static_cast<int>(value);
    }

    [[nodiscard]] bool flag(QStringView key) const
    {
        return entry(key, QJsonValue::Bool).toBool();
    }

    [[nodiscard]] std::optional<double> numberIfAny(QStringView key) const
    {
        return isNull(key) ? std::nullopt : std::optional(number(key));
    }

    /// In the time of the till; invalid where there is none.
    [[nodiscard]] QDateTime momentIfAny(QStringView key) const
    {
        if (isNull(key)) {
            return {};
        }
        const QDateTime moment = QDateTime::fromString(text(key), Qt::ISODateWithMs);
        if (!moment.isValid()) {
            damaged(key);
        }
        return moment.toLocalTime();
    }

    /// Whatever stands there; invalid where there is nothing.
    [[nodiscard]] QVariant any(QStringView key) const
    {
        return isNull(key) ? QVariant() : object.value(key).toVariant();
    }

    [[nodiscard]] StoredMap map(QStringView key) const
    {
        return StoredMap(entry(key, QJsonValue::Object).toObject());
    }

    [[nodiscard]] QList<StoredMap> maps(QStringView key) const
    {
        QList<StoredMap> list;
        for (const QJsonValue& value : entry(key, QJsonValue::Array).toArray()) {
            if (!value.isObject()) {
                damaged(key);
            }
            list.append(StoredMap(value.toObject()));
        }
        return list;
    }

    [[nodiscard]] QStringList texts(QStringView key) const
    {
        QStringList list;
        for (const QJsonValue& value : entry(key, QJsonValue::Array).toArray()) {
            if (!value.isString()) {
                damaged(key);
            }
            list.append(value.toString());
        }
        return list;
    }

    [[nodiscard]] QStringList keys() const
    {
        return object.keys();
    }

    [[nodiscard]] QVariantMap values() const
    {
        return object.toVariantMap();
    }

    [[nodiscard]] bool isNull(QStringView key) const
    {
        if (!object.contains(key)) {
            damaged(key);
        }
        return object.value(key).isNull();
    }

    [[noreturn]] static void damaged(QStringView key)
    {
        refuseDocument(QStringLiteral("\"%1\" is missing or damaged").arg(key));
    }

private:
    [[nodiscard]] QJsonValue entry(QStringView key, QJsonValue::Type type) const
    {
        const QJsonValue value = object.value(key);
        if (value.type() != type) {
            damaged(key);
        }
        return value;
    }

    QJsonObject object;
};

} // namespace till
