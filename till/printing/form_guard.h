#pragma once

#include <QString>
#include <QStringView>

namespace till {

/// Why the text must not be given to the XML reader, or nothing when it may: forms are refused that are too long, that
/// declare a document type, that are nested too deep or whose elements have too many attributes, since the reader's
/// time grows with the square of the last two; and those with faults that the reader reads over, a character reference
/// with a prefix before its digits and a declaration that says something twice. Says nothing else about well-formedness.
/// One pass. [any-thread]
[[nodiscard]] QString refusalOfForm(QStringView text);

} // namespace till
