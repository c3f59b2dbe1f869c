#pragma once

#include "host/document/document_impact_detail.h"

#include <QByteArray>
#include <QVariant>

namespace till {

/// The map that `serder` makes of a detail. [cheque-thread]
[[nodiscard]] QVariant storedDetail(const DocumentImpactDetail& detail);

/// A place for the JSON text of a detail, for whoever writes it: empty at first and again after every change of the
/// detail. Valid until then. [cheque-thread]
[[nodiscard]] QByteArray& keptDetailText(const DocumentImpactDetail& detail);

}
