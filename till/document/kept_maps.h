#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QVariant>

namespace till {

/// A map that was written, and its JSON text. It holds the map, so the text is that of any map that shares its data:
/// who changes one gets data of its own. A plain value.
struct KeptMap {
    QVariantMap map;
    QByteArray text;
};

/// Those of one text, in the order in which they stand there.
using KeptMaps = QList<KeptMap>;

}
