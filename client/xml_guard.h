#pragma once

#include <QString>
#include <QStringView>

namespace vantiro {

/// Whether the parser may see a text, and if not, why and where. A plain value.
struct XmlVerdict {
    QString fault; // empty when it may
    qsizetype at = 0; // the index of the fault
};

/// Checks the text against the limits and for whatever could make the parser's work grow faster than the text, in one
/// pass that neither recurses nor keeps anything that grows. [any-thread]
[[nodiscard]] XmlVerdict checkXml(QStringView text);

} // namespace vantiro
