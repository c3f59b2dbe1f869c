#include "till/store/document_states.h"

#include "till/store/document_json.h"
#include "till/store/store.h"
#include "till/work_events.h"

#include <QDateTime>
#include <QVariant>

#include <algorithm>
#include <array>
#include <utility>

namespace till::store {

namespace {

    constexpr std::array<std::pair<DocumentState, const char*>, 7> stateNames { {
        { DocumentState::open, "open" },
        { DocumentState::closing, "closing" },
        { DocumentState::aside, "aside" },
        { DocumentState::closed, "closed" },
        { DocumentState::cancelling, "cancelling" },
        { DocumentState::cancelled, "cancelled" },
        { DocumentState::damaged, "damaged" },
    } };

    [[nodiscard]] QString nameOf(DocumentState state)
    {
        for (const auto& [known, name] : stateNames) {
            if (known == state) {
                return QString::fromLatin1(name);
            }
        }
        return QString();
    }

    [[nodiscard]] DocumentState stateOf(const QString& text)
    {
        for (const auto& [known, name] : stateNames) {
            if (text == QLatin1String(name)) {
                return known;
            }
        }
        return DocumentState::open;
    }

    /// The highest number of the documents, as far as they are known. Only this process writes documents while the
    /// store is open.
    struct Numbers {
        quint64 opening = 0;
        qint64 lastRow = 0; // the documents up to it are known
        int highest = 0;
        QString savedLast; // identity
        int numberSavedLast = 0;
    };

    [[nodiscard]] Numbers& numbers()
    {
        thread_local Numbers instance;
        if (instance.opening != opening()) {
            instance = {};
            instance.opening = opening();
        }
        return instance;
    }

    void heedNumber(const QString& identity, int number)
    {
        Numbers& known = numbers();
        if (known.savedLast == identity && known.numberSavedLast == number) {
            return;
        }
        known.savedLast = identity;
        known.numberSavedLast = number;
        if (number >= known.highest) {
            known.highest = number;
        } else { // it may have been the one with the highest number
            known.lastRow = 0;
            known.highest = 0;
        }
    }

} // namespace

void saveAs(const QSharedPointer<AbstractDocument>& document, DocumentState state)
{
    const QByteArray body = toJson(document);
    QSqlQuery& query = prepareOnce(QStringLiteral(
        "INSERT INTO documents (identity, body, extra, saved_at, state, type, number) "
        "VALUES (?, CAST(? AS TEXT), '', ?, ?, ?, ?) " // the bytes as they are: a text would be bound in UTF-16
        "ON CONFLICT (identity) DO UPDATE SET body = excluded.body, saved_at = excluded.saved_at, "
        "state = excluded.state, type = excluded.type, number = excluded.number"));
    query.bindValue(0, document->getDocumentIdentity());
    query.bindValue(1, body);
    query.bindValue(2, QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs));
    query.bindValue(3, nameOf(state));
    query.bindValue(4, document->getDocumentType());
    query.bindValue(5, document->getChequeNumber());
    executeEnding(query);
    query.finish();
    heedNumber(document->getDocumentIdentity(), document->getChequeNumber());
    if (isWorkObserved()) {
        tellWork({ QStringLiteral("save"), nameOf(state), QString::fromUtf8(body) });
    }
}

void quarantine(const QString& identity)
{
    QSqlQuery query = prepare(QStringLiteral("UPDATE documents SET state = ? WHERE identity = ?"));
    query.addBindValue(nameOf(DocumentState::damaged));
    query.addBindValue(identity);
    executeEnding(query);
}

QList<DocumentEntry> documents()
{
    QSqlQuery query = prepare(QStringLiteral("SELECT identity, state, type, number FROM documents ORDER BY rowid"));
    execute(query);
    QList<DocumentEntry> entries;
    while (nextRow(query)) {
        entries.append({ query.value(0).toString(), stateOf(query.value(1).toString()), query.value(2).toInt(),
                         query.value(3).toInt() });
    }
    return entries;
}

int highestNumber()
{
    Numbers& known = numbers();
    QSqlQuery& query
        = prepareOnce(QStringLiteral("SELECT max(rowid), max(number) FROM documents WHERE rowid > ?"));
    query.bindValue(0, known.lastRow);
    execute(query);
    if (nextRow(query) && !query.isNull(0)) {
        known.lastRow = query.value(0).toLongLong();
        known.highest = std::max(known.highest, query.value(1).toInt());
    }
    query.finish();
    return known.highest;
}

QSharedPointer<AbstractDocument> documentOf(const QString& identity)
{
    QSqlQuery query = prepare(QStringLiteral("SELECT body FROM documents WHERE identity = ?"));
    query.addBindValue(identity);
    execute(query);
    return nextRow(query) ? documentFromJson(query.value(0).toString().toUtf8()) : nullptr;
}

} // namespace till::store
