#pragma once

#include "host/export.h"

#include <QString>
#include <QStringList>

namespace till {

/// The lines of a print form, laid out for paper of the given number of columns: texts by their alignment and broken
/// where they are too long, rules across the whole width, codes by their digits. A text that is no print form comes
/// back as it stands, line by line: what cannot be laid out is still shown. Control characters come as U+FFFD, since
/// the lines go to a terminal. [any-thread]
[[nodiscard]] VANTIRO_HOST_API QStringList layOut(const QString& printForm, int columns);

} // namespace till
