#include "sandbox/ledger.h"

namespace sandbox {

Ledger::Ledger(Database& state)
    : database(state)
{
}

void Ledger::addCard(const std::string& number, Kopecks opening)
{
    Statement(database, "INSERT INTO card (number, opening) VALUES (?, ?) ON CONFLICT DO NOTHING")
        .bind(number)
        .bind(opening)
        .run();
}

Kopecks Ledger::balance(const std::string& card) const
{
    Statement query(database,
                    "SELECT opening + (SELECT coalesce(sum(points), 0) FROM entry WHERE entry.card = card.number) "
                    "FROM card WHERE number = ?");
    return query.bind(card).step() ? query.integer(0) : 0;
}

void Ledger::add(const std::string& card, const std::string& uid, std::string_view kind, Kopecks points,
                 std::int64_t request)
{
    if (points == 0) {
        return;
    }
    Statement(database, "INSERT INTO entry (card, uid, kind, points, request) VALUES (?, ?, ?, ?, ?)")
        .bind(card)
        .bind(uid)
        .bind(kind)
        .bind(points)
        .bind(request)
        .run();
}

std::map<std::string, Kopecks> Ledger::spentOn(const std::string& uid) const
{
    Statement query(database,
                    "SELECT card, -sum(points) FROM entry "
                    "WHERE uid = ? AND kind IN ('subtract', 'cancel', 'settle', 'give-back') "
                    "GROUP BY card HAVING sum(points) <> 0");
    query.bind(uid);
    std::map<std::string, Kopecks> spent;
    while (query.step()) {
        spent[query.text(0)] = query.integer(1);
    }
    return spent;
}

Kopecks Ledger::spentOn(const std::string& uid, const std::string& card) const
{
    const auto spent = spentOn(uid);
    const auto found = spent.find(card);
    return found == spent.end() ? 0 : found->second;
}

Kopecks Ledger::givenBackOn(const std::string& uid, const std::string& card) const
{
    Statement query(database,
                    "SELECT coalesce(sum(points), 0) FROM entry "
                    "WHERE uid = ? AND card = ? AND kind IN ('cancel', 'give-back')");
    query.bind(uid).bind(card).run();
    return query.integer(0);
}

}
