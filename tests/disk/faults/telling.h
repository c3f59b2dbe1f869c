#pragma once

#include <QJsonObject>

/// Writes the fact on the standard output as one line of JSON, at once: what has been told stays told when the process
/// dies. The process ends when nobody listens any more.
void tell(const QJsonObject& fact);
