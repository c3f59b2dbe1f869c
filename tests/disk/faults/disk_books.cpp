#include "tests/disk/faults/disk_books.h"

#include "host/facilities/exceptions.h"
#include "till/document/cheque_contents.h"
#include "till/script/books.h"
#include "till/store/document_json.h"
#include "till/store/document_states.h"
#include "till/store/queue_records.h"
#include "till/store/store.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSqlQuery>
#include <QVariant>

using namespace Qt::StringLiterals;

namespace {

[[nodiscard]] QString nameOf(till::store::DocumentState state)
{
    constexpr const char* names[] { "open", "closing", "aside", "closed", "cancelling", "cancelled", "damaged" };
    return QString::fromLatin1(names[static_cast<int>(state)]);
}

/// What stands between the quotes behind the name of an attribute, at its first place.
[[nodiscard]] QString attribute(const QString& body, const QString& name)
{
    return body.section(u' ' + name + u"=\""_s, 1, 1).section(u'"', 0, 0);
}

[[nodiscard]] QString shapeOf(const till::ChequeContents& contents)
{
    return u"%1: lines %2, off %3, payments %4, cards %5"_s.arg(contents.head.number)
        .arg(contents.liveLines().size())
        .arg(contents.deletedLines().size())
        .arg(contents.payments.size())
        .arg(contents.attachedCards().size());
}

void readDocuments(DiskBooks& books)
{
    using enum till::store::DocumentState;
    QMap<QString, QString> names; // that stand for what is drawn anew in each run
    const QList<till::store::DocumentEntry> entries = till::store::documents();
    for (const till::store::DocumentEntry& entry : entries) {
        names.insert(entry.identity, u"identity-%1"_s.arg(names.size()));
        names.insert(till::chequeUid(entry.identity), u"uid-%1"_s.arg(names.size()));
        const QSharedPointer<AbstractDocument> document = till::store::documentOf(entry.identity);
        if (!document) {
            books.damage = "the document " + entry.identity.toStdString() + " cannot be found";
            return;
        }
        const auto& contents = dynamic_cast<const till::ChequeContents&>(*document);
        QString text = QString::fromUtf8(till::toJson(document));
        static const QRegularExpression moments(u"\"dateTime\":\"[^\"]*\""_s); // of impacts: the clock's own
        text.remove(moments);
        for (auto name = names.cbegin(); name != names.cend(); ++name) {
            text.replace(name.key(), name.value());
        }
        const QString state = QString::number(entry.number) + u' ' + nameOf(entry.state);
        books.states.append(state);
        books.documents.append(state + u": "_s + text);
        books.shapes.append(shapeOf(contents));
        if ((entry.state == closed || entry.state == cancelled)
            && !(contents.liveLines().isEmpty() && contents.deletedLines().isEmpty())) {
            books.ended.insert(till::chequeUid(entry.identity), QString::number(contents.sum(), 'f', 2));
        }
    }
}

} // namespace

DiskBooks readBooks(const QString& folder)
{
    DiskBooks books;
    try {
        till::store::open(folder);
        QSqlQuery query = till::store::prepare(u"PRAGMA integrity_check"_s);
        till::store::execute(query);
        if (!query.next() || query.value(0).toString() != u"ok") {
            books.damage = query.value(0).toString().toStdString();
        }
        query.finish();
        readDocuments(books);
        const QList<till::store::QueueRecord> records = till::store::queueRecords();
        for (const till::store::QueueRecord& record : records) {
            books.queue.append(QJsonDocument::fromJson(record.message).object()[u"body"_s].toString());
        }
    } catch (const BasicException& failure) {
        books.damage = failure.tr().ru().toStdString();
    }
    till::store::close();
    return books;
}

std::string DiskBooks::accountsFor(const QStringList& told) const
{
    QMap<QString, QString> known;
    for (const QString& body : told + queue) {
        const QString uid = attribute(body, u"ChequeUID"_s);
        const QString sum = attribute(u' ' + body.section(u"<Cheque "_s, 1), u"Amount"_s);
        if (known.value(uid, sum) != sum) {
            return "two values of one cheque: " + known.value(uid).toStdString() + " and " + sum.toStdString();
        }
        known.insert(uid, sum);
    }
    for (auto cheque = ended.cbegin(); cheque != ended.cend(); ++cheque) {
        if (known.value(cheque.key()) != cheque.value()) {
            return "a cheque of " + cheque.value().toStdString() + " is known as \""
                + known.value(cheque.key()).toStdString() + '"';
        }
    }
    return known.size() == ended.size() ? std::string() : "the service knows a cheque that the till has not ended";
}
