#include "till/script/reconcile.h"

#include "host/facilities/exceptions.h"
#include "till/program/commands.h"
#include "till/program/player_session.h"
#include "till/script/script_line.h"

namespace till {

int reconcileBooks(const Places& places, const QList<ControlledServer>& servers)
try {
    requireTill(places);
    const OpenTill till(places);
    const Reconciliation reconciliation = reconcile(ServiceControl(servers));
    for (const QString& line : reconciliationReport(reconciliation)) {
        writeLine(line);
    }
    return reconciliation.holds() ? 0 : 1;
} catch (const ScriptError& error) {
    throw CommandError(error.text());
} catch (const BasicException& failure) {
    throw CommandError(failure.tr().ru());
}

} // namespace till
