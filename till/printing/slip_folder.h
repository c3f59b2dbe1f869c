#pragma once

#include "host/export.h"

#include <QString>

namespace till {

/// From now on every slip that is printed is kept in this folder too, which is made when it is missing: slip-001.txt,
/// slip-001.png and slip-001.escpos, for paper of 80 mm with 42 columns, and slip-001.xml, the print form itself, as
/// `vantiro-till slip` takes it. Numbers go on behind those that the folder holds, and no file is ever written twice.
/// An empty name keeps slips nowhere, which is how a till begins. [cheque-thread]
VANTIRO_HOST_API void setSlipFolder(const QString& folder);

/// Keeps the printed text in the folder, if one is set. What cannot be written is logged; the other files are written
/// all the same. Never throws. [cheque-thread] [blocks: for the disk]
void keepSlip(const QString& printForm) noexcept;

} // namespace till
