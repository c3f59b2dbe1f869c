#include "tests/crash/verdict.h"

#include "till/document/cheque_contents.h"
#include "till/script/reconcile.h"
#include "till/store/queue_records.h"

#include <QRegularExpression>

#include <cstdlib>
#include <stdexcept>

namespace crash {

namespace {

using till::store::DocumentEntry;
using till::store::DocumentState;

[[noreturn]] void fail(const QString& text)
{
    throw std::runtime_error(text.toStdString());
}

[[nodiscard]] QList<DocumentEntry> documentsOf(int base)
{
    QList<DocumentEntry> mine;
    for (const DocumentEntry& entry : till::store::documents()) {
        if (entry.number > base && entry.number <= base + documentsOfRun) {
            mine.append(entry);
        }
    }
    return mine;
}

[[nodiscard]] Disagreement disagreementOf(const till::Reconciliation& books)
{
    using State = till::Standing::State;
    Disagreement count;
    for (const till::Standing& standing : books.standings) {
        count.lost += standing.state == State::lost ? 1 : 0;
        count.doubled += standing.state == State::doubled ? 1 : 0;
        count.phantom += standing.state == State::phantom ? 1 : 0;
        count.different += standing.state == State::different ? 1 : 0;
    }
    return count;
}

void requirePaid(const DocumentEntry& entry, const till::ChequeContents& contents)
{
    till::Kopecks paid = 0;
    for (const QSharedPointer<MoneyItem>& payment : contents.payments) {
        paid += till::kopecks(payment->getAmount());
    }
    if (entry.type == EDocumentType::sale && paid != till::kopecks(contents.sum())) {
        fail(QStringLiteral("sale %1 costs %2 and is paid with %3")
                 .arg(QString::number(entry.number), QString::number(contents.sum(), 'f', 2),
                      QString::number(till::roubles(paid), 'f', 2)));
    }
}

void requireEnding(const Ending& ending, const DocumentEntry& entry)
{
    if (entry.state != ending.state) {
        fail(QStringLiteral("document %1 has not come to its end").arg(entry.number));
    }
    const QSharedPointer<AbstractDocument> document = till::store::documentOf(entry.identity);
    const auto& contents = dynamic_cast<const till::ChequeContents&>(*document);
    const auto lines = contents.liveLines().size() + contents.deletedLines().size();
    if (lines != ending.lines) {
        fail(QStringLiteral("document %1 has %2 lines instead of %3")
                 .arg(QString::number(entry.number), QString::number(lines), QString::number(ending.lines)));
    }
    if (contents.attachedCards().isEmpty() == ending.hasCard) {
        fail(QStringLiteral("document %1 has ended with%2 a card")
                 .arg(QString::number(entry.number), ending.hasCard ? QStringLiteral("out") : QString()));
    }
    if (entry.state == DocumentState::closed) {
        requirePaid(entry, contents);
    }
}

} // namespace

Disagreement& Disagreement::operator+=(const Disagreement& other)
{
    lost += other.lost;
    doubled += other.doubled;
    phantom += other.phantom;
    different += other.different;
    return *this;
}

till::Kopecks requireBooks(const till::ServiceControl& service, Disagreement& disagreement)
{
    const till::Reconciliation books = till::reconcile(service);
    if (!books.holds()) {
        disagreement = disagreementOf(books);
        fail(till::reconciliationReport(books)
                 .filter(QRegularExpression(QStringLiteral("^(LOST|PHANTOM|DOUBLED|DIFFERENT)")))
                 .join(u"; "));
    }
    till::Kopecks doubt = 0; // the runs before have left none
    for (const till::Doubt& one : books.doubts) {
        doubt += std::abs(one.points);
    }
    return doubt;
}

void requireEndings(const Story& story, int base)
{
    const QList<DocumentEntry> left = documentsOf(base);
    for (const Ending& ending : story.endings) {
        qsizetype count = 0;
        for (const DocumentEntry& entry : left) {
            if (entry.number == base + ending.document) {
                ++count;
                requireEnding(ending, entry);
            }
        }
        if (count != 1) {
            fail(QStringLiteral("document %1 is there %2 times").arg(base + ending.document).arg(count));
        }
    }
    if (left.size() != story.endings.size()) {
        fail(QStringLiteral("there are %1 documents instead of %2").arg(left.size()).arg(story.endings.size()));
    }
    const QList<till::store::QueueRecord> queue = till::store::queueRecords();
    if (!queue.isEmpty()) {
        fail(QStringLiteral("the queue still holds record %1: %2")
                 .arg(queue.constFirst().id)
                 .arg(queue.constFirst().reason));
    }
}

} // namespace crash
