#pragma once

#include "host/export.h"
#include "till/script/service_control.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace till {

/// Where a document of the till stands with the service. A plain value.
struct Standing {
    enum class State {
        applied, // once, with the same value
        pending, // queued, held, or still being told by the till
        refused, // shown as refused or damaged in the queue
        lost, // told by nobody and waiting nowhere
        doubled, // applied by more than one server
        different, // applied with another value
        phantom, // applied, but the till never closed or cancelled it
    };

    State state = State::applied;
    QString name; // number and kind
    QString uid;
    QString note; // one sentence, for a person
};

/// Points that the service took for an open cheque and of which the till knows nothing: the reply was lost or could not
/// be read, and nobody may guess about money. A plain value.
struct Doubt {
    QString card;
    QString uid;
    Kopecks points = 0;
};

struct Reconciliation {
    QList<Standing> standings;
    QList<Doubt> doubts;

    /// Nothing lost, no phantom, nothing doubled, every value equal. What is in doubt is counted apart.
    [[nodiscard]] VANTIRO_HOST_API bool holds() const;
};

/// Compares all documents of the store, and what waits in the queue, with the books of all servers. Throws
/// `ScriptError` when a server does not answer, `BasicException` when the store fails. [cheque-thread] [blocks]
[[nodiscard]] VANTIRO_HOST_API Reconciliation reconcile(const ServiceControl& service);

/// For a person: a line per document that is not simply applied, the doubts, and the four identities. [any-thread]
[[nodiscard]] VANTIRO_HOST_API QStringList reconciliationReport(const Reconciliation& reconciliation);

/// The `ChequeUID` of the cheque in a message of the queue; empty when there is none. [any-thread]
[[nodiscard]] VANTIRO_HOST_API QString uidOfMessage(const QByteArray& message);

} // namespace till
