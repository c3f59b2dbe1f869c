#include "till/store/document_states.h"

#include "till/store/document_json.h"
#include "till/store/store.h"
#include "till/work_events.h"

#include <QDateTime>
#include <QVariant>

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

} // namespace

void saveAs(const QSharedPointer<AbstractDocument>& document, DocumentState state)
{
    const QString body = QString::fromUtf8(toJson(document));
    QSqlQuery query = prepare(QStringLiteral(
        "INSERT INTO documents (identity, body, extra, saved_at, state, type, number) VALUES (?, ?, '', ?, ?, ?, ?) "
        "ON CONFLICT (identity) DO UPDATE SET body = excluded.body, saved_at = excluded.saved_at, "
        "state = excluded.state, type = excluded.type, number = excluded.number"));
    query.addBindValue(document->getDocumentIdentity());
    query.addBindValue(body);
    query.addBindValue(QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs));
    query.addBindValue(nameOf(state));
    query.addBindValue(document->getDocumentType());
    query.addBindValue(document->getChequeNumber());
    executeEnding(query);
    tellWork({ QStringLiteral("save"), nameOf(state), body });
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

QSharedPointer<AbstractDocument> documentOf(const QString& identity)
{
    QSqlQuery query = prepare(QStringLiteral("SELECT body FROM documents WHERE identity = ?"));
    query.addBindValue(identity);
    execute(query);
    return nextRow(query) ? documentFromJson(query.value(0).toString().toUtf8()) : nullptr;
}

} // namespace till::store
