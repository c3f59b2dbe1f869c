#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace till::diagnosis {

/// The names that a configuration file uses, told apart by the rules of `till/facilities/config_file.h`, and the lines
/// that those rules do not understand. No values: they may be secrets. A plain value.
struct ConfigNames {
    struct Name {
        int line = 0; // from 1
        QString section; // empty above the first one
        QString name;
        bool hasValue = false;
    };
    struct Section {
        int line = 0;
        QString name;
    };

    QList<Name> names; // in the order of the file
    QList<Section> sections;
    QList<int> damagedLines;
};

[[nodiscard]] ConfigNames namesIn(const QByteArray& content);

/// The known name that was probably meant: the same in other letters, or within two typing mistakes. Empty if none is.
[[nodiscard]] QString nearest(const QString& name, const QStringList& known);

} // namespace till::diagnosis
