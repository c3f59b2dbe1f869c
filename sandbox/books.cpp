#include "sandbox/books.h"

#include "sandbox/money.h"

#include <nlohmann/json.hpp>

namespace sandbox {

namespace {

using nlohmann::json;

[[nodiscard]] json optionalText(const Statement& row, int column)
{
    return row.isNull(column) ? json() : json(row.text(column));
}

[[nodiscard]] std::string money(const Statement& row, int column)
{
    return moneyText(row.integer(column));
}

[[nodiscard]] json cheques(const Database& database)
{
    Statement row(database,
                  "SELECT uid, type, status, number, shift, open_time, close_time, card, amount, earned, spent, "
                  "sale, note, request, "
                  "(SELECT count(*) FROM request r WHERE r.uid = c.uid AND r.outcome = 'repeat' "
                  " AND r.operation IN ('Accrual', 'OfflineAccrual')), "
                  "(SELECT count(*) FROM request r WHERE r.uid = c.uid AND r.outcome = 'conflict') "
                  "FROM cheque c ORDER BY request");
    json list = json::array();
    while (row.step()) {
        list.push_back({ { "uid", row.text(0) },
                         { "type", row.text(1) },
                         { "status", row.text(2) },
                         { "number", row.text(3) },
                         { "shift", row.text(4) },
                         { "openTime", row.text(5) },
                         { "closeTime", row.text(6) },
                         { "card", optionalText(row, 7) },
                         { "amount", money(row, 8) },
                         { "earned", money(row, 9) },
                         { "spent", money(row, 10) },
                         { "sale", optionalText(row, 11) },
                         { "note", row.text(12) },
                         { "request", row.integer(13) },
                         { "repeats", row.integer(14) },
                         { "conflicts", row.integer(15) } });
    }
    return list;
}

[[nodiscard]] json entries(const Database& database)
{
    Statement row(database, "SELECT id, card, uid, kind, points, request FROM entry ORDER BY id");
    json list = json::array();
    while (row.step()) {
        list.push_back({ { "id", row.integer(0) },
                         { "card", row.text(1) },
                         { "uid", row.text(2) },
                         { "kind", row.text(3) },
                         { "points", money(row, 4) },
                         { "request", row.integer(5) } });
    }
    return list;
}

[[nodiscard]] json cards(const Database& database)
{
    Statement row(database,
                  "SELECT number, opening, "
                  "coalesce(sum(CASE WHEN kind IN ('earn', 'return-earned') THEN points END), 0), "
                  "-coalesce(sum(CASE WHEN kind NOT IN ('earn', 'return-earned') THEN points END), 0), "
                  "opening + coalesce(sum(points), 0) "
                  "FROM card LEFT JOIN entry ON entry.card = card.number GROUP BY number ORDER BY number");
    json list = json::array();
    while (row.step()) {
        list.push_back({ { "number", row.text(0) },
                         { "opening", money(row, 1) },
                         { "earned", money(row, 2) },
                         { "spent", money(row, 3) },
                         { "balance", money(row, 4) } });
    }
    return list;
}

[[nodiscard]] json totals(const Database& database)
{
    Statement row(database,
                  "SELECT "
                  "count(*) FILTER (WHERE status = 'Closed' AND type = 'Sale'), "
                  "coalesce(sum(amount) FILTER (WHERE status = 'Closed' AND type = 'Sale'), 0), "
                  "count(*) FILTER (WHERE status = 'Closed' AND type = 'Return'), "
                  "coalesce(sum(amount) FILTER (WHERE status = 'Closed' AND type = 'Return'), 0), "
                  "count(*) FILTER (WHERE status = 'Closed' AND type = ''), "
                  "count(*) FILTER (WHERE status = 'Canceled'), "
                  "coalesce(sum(earned), 0), coalesce(sum(spent), 0), "
                  "(SELECT count(*) FROM request), "
                  "(SELECT count(*) FROM request WHERE outcome = 'repeat'), "
                  "(SELECT count(*) FROM request WHERE outcome = 'conflict'), "
                  "(SELECT count(*) FROM request WHERE outcome = 'refused') "
                  "FROM cheque");
    static_cast<void>(row.step());
    return { { "sales", row.integer(0) },       { "saleAmount", money(row, 1) },  { "returns", row.integer(2) },
             { "returnAmount", money(row, 3) }, { "others", row.integer(4) },     { "canceled", row.integer(5) },
             { "earned", money(row, 6) },       { "spent", money(row, 7) },       { "requests", row.integer(8) },
             { "repeats", row.integer(9) },     { "conflicts", row.integer(10) }, { "refused", row.integer(11) } };
}

}

json booksJson(const Database& database)
{
    Statement state(database, "SELECT id FROM state");
    static_cast<void>(state.step());
    return { { "state", state.text(0) },
             { "cheques", cheques(database) },
             { "entries", entries(database) },
             { "cards", cards(database) },
             { "totals", totals(database) } };
}

json requestsJson(const Database& database, const RequestFilter& filter)
{
    Statement row(database,
                  "SELECT id, time, server, operation, uid, outcome, status, reason, fault, headers, body FROM request "
                  "WHERE id > ?1 AND (?2 = '' OR operation = ?2) AND (?3 = '' OR uid = ?3) "
                  "AND (?4 = '' OR outcome = ?4) AND (?5 = '' OR server = ?5) ORDER BY id LIMIT ?6");
    row.bind(filter.since).bind(filter.operation).bind(filter.uid).bind(filter.outcome).bind(filter.server);
    row.bind(filter.limit);
    json list = json::array();
    while (row.step()) {
        list.push_back({ { "id", row.integer(0) },
                         { "time", row.text(1) },
                         { "server", row.text(2) },
                         { "operation", row.text(3) },
                         { "uid", row.text(4) },
                         { "outcome", row.text(5) },
                         { "status", row.integer(6) },
                         { "reason", row.text(7) },
                         { "fault", row.text(8) },
                         { "headers", json::parse(row.text(9)) },
                         { "body", row.text(10) } });
    }
    return list;
}

}
