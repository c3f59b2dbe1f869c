#include "till/program/doctor_store.h"

#include "till/store/document_states.h"
#include "till/store/queue_records.h"

#include <algorithm>

namespace till::diagnosis {

namespace {

using store::DocumentState;
using store::RecordState;

[[nodiscard]] qint64 countOf(const QList<store::QueueRecord>& records, RecordState state)
{
    return std::ranges::count(records, state, &store::QueueRecord::state);
}

[[nodiscard]] Findings checkQueue(const QList<store::QueueRecord>& records)
{
    const QString message = QStringLiteral("message");
    const qint64 pending = countOf(records, RecordState::pending);
    Findings findings { ok(pending == 0 ? QStringLiteral("No message waits for delivery.")
                                        : QStringLiteral("Waiting for delivery: %1.").arg(counted(pending, message))) };
    const auto tell = [&](RecordState state, const QString& sentence) {
        if (const qint64 count = countOf(records, state); count > 0) {
            findings.append(warning(sentence.arg(counted(count, message))));
        }
    };
    tell(RecordState::held,
         QStringLiteral("Held back by a person: %1; let them go with vantiro-till queue release ID."));
    tell(
        RecordState::refused,
        QStringLiteral("Refused by the service: %1; see the reasons with vantiro-till queue list, and let them go with "
                       "queue release ID."));
    tell(RecordState::damaged,
         QStringLiteral("Damaged and never delivered: %1; look at them with vantiro-till queue list and show ID."));
    return findings;
}

[[nodiscard]] Findings checkDocuments(const QList<store::DocumentEntry>& documents)
{
    Findings findings;
    const auto tell = [&](DocumentState state, const QString& sentence) {
        if (const qint64 count = std::ranges::count(documents, state, &store::DocumentEntry::state); count > 0) {
            findings.append(warning(sentence.arg(counted(count, QStringLiteral("document")))));
        }
    };
    tell(DocumentState::closing,
         QStringLiteral(
             "Paid, but not told to the service yet: %1; start vantiro-till shell, which goes on with that."));
    tell(DocumentState::cancelling,
         QStringLiteral(
             "Cancelled, but not told to the service yet: %1; start vantiro-till shell, which goes on with that."));
    return findings;
}

} // namespace

Findings checkStore()
{
    return checkQueue(store::queueRecords()) + checkDocuments(store::documents());
}

} // namespace till::diagnosis
