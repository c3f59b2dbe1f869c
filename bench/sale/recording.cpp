#include "bench/sale/recording.h"

#include "bench/sale/shop.h"
#include "till/store/store.h"
#include "till/work_events.h"

#include <QScopeGuard>
#include <QVariant>

#include <stdexcept>

namespace {

void run(const QString& statement)
{
    QSqlQuery query = till::store::prepare(statement);
    till::store::execute(query);
}

[[nodiscard]] int rowsOf(const QString& table)
{
    QSqlQuery query = till::store::prepare(QStringLiteral("SELECT count(*) FROM ") + table);
    till::store::execute(query);
    return till::store::nextRow(query) ? query.value(0).toInt() : -1;
}

} // namespace

Recording record(Shop& shop, const std::function<void()>& work)
{
    const int queuedBefore = rowsOf(QStringLiteral("queue"));
    run(QStringLiteral("CREATE TABLE committed (id INTEGER PRIMARY KEY, body, extra, saved_at, state, type, number)"));
    for (const char* change : { "INSERT", "UPDATE" }) {
        run(QStringLiteral("CREATE TRIGGER on_%1 AFTER %1 ON documents BEGIN INSERT INTO committed VALUES "
                           "(NULL, new.body, new.extra, new.saved_at, new.state, new.type, new.number); END")
                .arg(QLatin1String(change)));
    }
    Recording recording;
    shop.service().keepRequests(true);
    till::observeWork([&](const till::WorkEvent& event) {
        if (event.kind == QStringLiteral("save")) {
            recording.steps.push_back({ shop.service().takeRequests(), {} });
        }
    });
    {
        const auto ended = qScopeGuard([] { till::observeWork({}); });
        work();
    }
    shop.service().keepRequests(false);
    recording.last = shop.service().takeRequests();

    size_t count = 0;
    QSqlQuery query = till::store::prepare(
        QStringLiteral("SELECT body, extra, saved_at, state, type, number FROM committed ORDER BY id"));
    till::store::execute(query);
    while (till::store::nextRow(query)) {
        if (count == recording.steps.size()) {
            throw std::runtime_error("a document was written more often than the till tells");
        }
        recording.steps[count++].row = { query.value(0).toByteArray(), query.value(1).toByteArray(),
                                         query.value(2).toByteArray(), query.value(3).toByteArray(),
                                         query.value(4).toInt(), query.value(5).toInt() };
    }
    if (count != recording.steps.size()) {
        throw std::runtime_error("the till tells of more writings of a document than there were");
    }
    if (rowsOf(QStringLiteral("queue")) != queuedBefore) {
        throw std::runtime_error("a message was queued: the service was not reached");
    }
    return recording;
}
