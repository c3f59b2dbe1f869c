#pragma once

#include "host/export.h"
#include "till/document/cheque_contents.h"
#include "till/script/service_control.h"
#include "till/store/document_states.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace till {

/// A finished cheque in the till's book and in the service's. A plain value.
struct BookLine {
    QString name; // number and kind, as the till knows it
    QString uid;
    std::optional<Kopecks> tillSum; // none: the till does not know the cheque
    Kopecks tillPoints = 0;
    std::optional<Kopecks> serviceSum; // none: the service does not
    Kopecks servicePoints = 0;
    bool tillCancelled = false;
    bool serviceCancelled = false;
    QString difference; // empty when both agree
};

/// What the till has to say of a finished document. A plain value.
struct BookEntry {
    QString name; // number and kind
    Kopecks sum = 0;
    Kopecks points = 0; // that paid for it
};

[[nodiscard]] VANTIRO_HOST_API BookEntry bookEntryOf(const ChequeContents& contents, store::DocumentState state);

/// The UUID by which the service knows the document. [any-thread]
[[nodiscard]] VANTIRO_HOST_API QString chequeUid(const QString& documentIdentity);

/// Both books, cheque by cheque: what the till has closed and cancelled, and what the service has booked. Throws
/// `ScriptError` when the service does not answer, `BasicException` when the store fails. [cheque-thread] [blocks]
[[nodiscard]] VANTIRO_HOST_API QList<BookLine> compareBooks(const ServiceControl& service);

/// The lines as a table, with the totals below it. [any-thread]
[[nodiscard]] VANTIRO_HOST_API QStringList bookTable(const QList<BookLine>& lines);

} // namespace till
