#include "till/script/reconcile.h"

#include "till/document/cheque_contents.h"
#include "till/script/books.h"
#include "till/store/document_states.h"
#include "till/store/queue_records.h"

#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMultiHash>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>

namespace till {

namespace {

    using State = Standing::State;
    using store::DocumentState;
    using store::RecordState;

    [[nodiscard]] QString money(Kopecks sum)
    {
        return QString::number(roubles(sum), 'f', 2);
    }

    /// The text of the element, or the attribute of the first element of the name.
    [[nodiscard]] QString find(const QString& xml, QStringView element, QStringView attribute)
    {
        QXmlStreamReader reader(xml);
        while (!reader.atEnd()) {
            if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == element) {
                return attribute.isEmpty() ? reader.readElementText()
                                           : reader.attributes().value(attribute.toString()).toString();
            }
        }
        return QString();
    }

    [[nodiscard]] Standing waiting(const store::QueueRecord& record)
    {
        Standing standing;
        const bool waits = record.state == RecordState::pending || record.state == RecordState::held;
        standing.state = waits ? State::pending : State::refused;
        standing.note = QStringLiteral("record %1 of the queue").arg(record.id);
        if (!record.reason.isEmpty()) {
            standing.note += QStringLiteral(": ") + record.reason;
        }
        return standing;
    }

    [[nodiscard]] bool isFinished(DocumentState state)
    {
        return state == DocumentState::closed || state == DocumentState::cancelled;
    }

    [[nodiscard]] bool isBeingTold(DocumentState state)
    {
        return state == DocumentState::closing || state == DocumentState::cancelling;
    }

    [[nodiscard]] bool isCancelled(DocumentState state)
    {
        return state == DocumentState::cancelled || state == DocumentState::cancelling;
    }

    /// What the service is to know of the document at its end; none when it is told nothing.
    struct Claim {
        QString name;
        QString uid;
        DocumentState state;
        Kopecks amount = 0;
        Kopecks points = 0;
    };

    [[nodiscard]] QList<Claim> claims()
    {
        QList<Claim> list;
        for (const store::DocumentEntry& entry : store::documents()) {
            const QSharedPointer<AbstractDocument> document = store::documentOf(entry.identity);
            const auto& contents = dynamic_cast<const ChequeContents&>(*document);
            const BookEntry booked = bookEntryOf(contents, entry.state);
            if (!contents.liveLines().isEmpty() || !contents.deletedLines().isEmpty()) {
                list.append({ booked.name, chequeUid(entry.identity), entry.state, booked.sum, booked.points });
            }
        }
        return list;
    }

    [[nodiscard]] Standing standingOf(const Claim& claim, const QList<ServiceCheque>& applied,
                                      const QHash<QString, store::QueueRecord>& queued)
    {
        Standing standing;
        if (applied.size() > 1) {
            standing.state = State::doubled;
            standing.note = QStringLiteral("applied by %1 servers").arg(applied.size());
        } else if (applied.size() == 1) {
            const ServiceCheque& cheque = applied.constFirst();
            if (cheque.amount != claim.amount || cheque.points != claim.points) {
                standing.state = State::different;
                standing.note = QStringLiteral("the till has %1 and %2 points, the service %3 and %4 points")
                                    .arg(money(claim.amount), money(claim.points), money(cheque.amount),
                                         money(cheque.points));
            } else if (cheque.cancelled != isCancelled(claim.state)) {
                standing.state = State::different;
                standing.note = cheque.cancelled
                    ? QStringLiteral("the till has closed it, the service has it cancelled")
                    : QStringLiteral("the till has cancelled it, the service has it closed");
            } else if (cheque.conflicts > 0) {
                standing.note = QStringLiteral("the service was told another end of it, too, and has refused that");
            }
        } else if (const auto record = queued.constFind(claim.uid); record != queued.constEnd()) {
            standing = waiting(*record);
        } else if (isBeingTold(claim.state)) {
            standing.state = State::pending;
            standing.note = QStringLiteral("the till will tell it when it starts again");
        } else {
            standing.state = State::lost;
            standing.note = QStringLiteral("no server has it, and it waits nowhere");
        }
        standing.name = claim.name;
        standing.uid = claim.uid;
        return standing;
    }

} // namespace

QString uidOfMessage(const QByteArray& message)
{
    const QString body
        = QJsonDocument::fromJson(message).object()[QStringLiteral("body")].toString();
    return find(find(body, u"cheque", {}), u"Cheque", u"ChequeUID");
}

Reconciliation reconcile(const ServiceControl& service)
{
    QHash<QString, store::QueueRecord> queued;
    for (const store::QueueRecord& record : store::queueRecords()) {
        queued.insert(uidOfMessage(record.message), record);
    }
    QHash<QString, QList<ServiceCheque>> applied;
    for (const ServiceCheque& cheque : service.allCheques()) {
        applied[cheque.uid].append(cheque);
    }

    Reconciliation result;
    QHash<QString, Claim> known;
    for (const Claim& claim : claims()) {
        known.insert(claim.uid, claim);
        const QList<ServiceCheque> cheques = applied.take(claim.uid);
        if (isFinished(claim.state) || isBeingTold(claim.state) || !cheques.isEmpty()) {
            result.standings.append(standingOf(claim, cheques, queued));
        }
        if (!cheques.isEmpty() && !isFinished(claim.state) && !isBeingTold(claim.state)) {
            result.standings.last().state = State::phantom;
            result.standings.last().note = QStringLiteral("applied, but the till has not closed it");
        }
    }
    for (auto cheques = applied.cbegin(); cheques != applied.cend(); ++cheques) {
        result.standings.append({ State::phantom, cheques->constFirst().kind, cheques.key(),
                                  QStringLiteral("applied, but the till does not know it") });
    }
    for (const ServiceSpending& spending : service.spendings()) {
        const Kopecks points = spending.points - (known.contains(spending.uid) ? known[spending.uid].points : 0);
        if (points != 0) {
            result.doubts.append({ spending.card, spending.uid, points });
        }
    }
    return result;
}

bool Reconciliation::holds() const
{
    return std::ranges::all_of(standings, [](const Standing& standing) {
        return standing.state == State::applied || standing.state == State::pending || standing.state == State::refused;
    });
}

QStringList reconciliationReport(const Reconciliation& reconciliation)
{
    static constexpr std::array<std::pair<State, const char*>, 7> names { {
        { State::applied, "applied" },
        { State::pending, "pending" },
        { State::refused, "refused" },
        { State::lost, "LOST" },
        { State::phantom, "PHANTOM" },
        { State::doubled, "DOUBLED" },
        { State::different, "DIFFERENT" },
    } };
    QStringList report;
    QHash<int, int> counts;
    for (const Standing& standing : reconciliation.standings) {
        ++counts[static_cast<int>(standing.state)];
        const auto name = std::ranges::find(names, standing.state, &std::pair<State, const char*>::first);
        report.append(QStringLiteral("%1  %2  %3  %4")
                          .arg(QString::fromLatin1(name->second).leftJustified(9), standing.name.leftJustified(16),
                               standing.uid, standing.note)
                          .trimmed());
    }
    for (const Doubt& doubt : reconciliation.doubts) {
        report.append(
            QStringLiteral("in doubt   %1 points of card %2 for cheque %3: the service took them, and the till "
                           "never got the answer")
                .arg(money(doubt.points), doubt.card, doubt.uid));
    }
    const auto count = [&counts](State state) { return QString::number(counts.value(static_cast<int>(state))); };
    report.append(QStringLiteral("%1 applied, %2 pending, %3 refused, %4 in doubt")
                      .arg(count(State::applied), count(State::pending), count(State::refused),
                           QString::number(reconciliation.doubts.size())));
    report.append(QStringLiteral("lost %1, phantom %2, doubled %3, of another value %4: %5")
                      .arg(count(State::lost), count(State::phantom), count(State::doubled), count(State::different),
                           reconciliation.holds() ? QStringLiteral("all is accounted for")
                                                  : QStringLiteral("THE BOOKS DO NOT AGREE")));
    return report;
}

} // namespace till
