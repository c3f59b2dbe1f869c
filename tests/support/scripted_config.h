#pragma once

#include "host/facilities/config.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>

/// A configuration of known content. While one of these lives, it is the host's `Config`; afterwards the former one is
/// back. [cheque-thread]
class ScriptedConfig : public Config {
public:
    ScriptedConfig();
    ~ScriptedConfig() override;

    /// Configures the key. A key that was never set gives the default, as does one whose value is of another type: a
    /// `QString` is read as text, an `int` as a number and a `bool` as a flag, nothing else.
    void set(const QString& key, const QVariant& value);

    /// What was asked for, in order, each with its type and default: "string Vantiro:user, else ''",
    /// "int Vantiro:timeout, else 5", "bool Vantiro:flag, else false".
    [[nodiscard]] QStringList questions() const;

    [[nodiscard]] QString getString(const QString& key, const QString& defaultValue) override;
    [[nodiscard]] int getInt(const QString& key, int defaultValue) override;
    [[nodiscard]] bool getBool(const QString& key, bool defaultValue) override;

private:
    template <class T>
    [[nodiscard]] T value(const QString& key, const T& defaultValue) const;

    Config* former;
    QHash<QString, QVariant> values;
    QStringList asked;
};
