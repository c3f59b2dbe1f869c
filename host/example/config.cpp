#include "host/facilities/config.h"

#include <QHash>

template class Singleton<Config>;

namespace {

// Written here once and only read afterwards, so any thread may ask.
const QHash<QString, QString>& values()
{
    static const QHash<QString, QString> values {
        { QStringLiteral("Vantiro:hosts"), QStringLiteral("https://first.example/,https://second.example/") },
        { QStringLiteral("Vantiro:timeout"), QStringLiteral("3") },
        { QStringLiteral("Vantiro:restoreLoyaltyState"), QStringLiteral("true") },
    };
    return values;
}

} // namespace

Config::Config() = default;
Config::~Config() = default;

QString Config::getString(const QString& key, const QString& defaultValue)
{
    return values().value(key, defaultValue);
}

int Config::getInt(const QString& key, int defaultValue)
{
    bool ok = false;
    const int number = values().value(key).toInt(&ok);
    return ok ? number : defaultValue;
}

bool Config::getBool(const QString& key, bool defaultValue)
{
    const QString word = values().value(key);
    if (word == QStringLiteral("true")) {
        return true;
    }
    return word == QStringLiteral("false") ? false : defaultValue;
}
