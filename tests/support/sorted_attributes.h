#pragma once

#include <QByteArray>
#include <QString>

/// The text with the attributes of each start tag in the order of their names, tags within CDATA sections included;
/// everything else stays byte for byte. The order of attributes has no meaning, and Qt writes them in that of a hash,
/// so texts that are to be compared pass through here first.
[[nodiscard]] QString sortedAttributes(const QString& xml);
[[nodiscard]] QString sortedAttributes(const QByteArray& xml);
