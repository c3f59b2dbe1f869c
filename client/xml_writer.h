#pragma once

#include <QDomDocument>
#include <QString>

namespace vantiro {

/// The text of the document, with an indent of one blank: byte for byte what `toString(1)` gives, in time that grows
/// with the text alone. `toString` moves the rest of a text or attribute for each character that it escapes, so one
/// long text of a server would stop the till for minutes, and its stack grows with the depth of the tree.
///
/// Names are written as they were given: the document is one without namespace processing, document type and entities,
/// as every document here is. Attributes stand in the order of the element's own map, or in that of an earlier element
/// of the name with the same ones: `toString` may have the two in different orders when they were given in different
/// ones. The time of the first such element grows with the square of their number. A null document gives a null text.
/// Writes nothing to the log. [any-thread]
[[nodiscard]] QString writeXml(const QDomDocument& document);

} // namespace vantiro
