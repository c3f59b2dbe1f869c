#include "sandbox/request_log.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>

namespace sandbox {

namespace {

[[nodiscard]] std::string lowerCase(std::string text)
{
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

[[nodiscard]] bool mayBeKept(const std::string& header)
{
    // The last four are no headers: the HTTP library adds them.
    static constexpr std::array<std::string_view, 8> leftOut { "authorization", "proxy-authorization", "cookie",
                                                               "set-cookie",    "remote_addr",         "remote_port",
                                                               "local_addr",    "local_port" };
    return std::ranges::find(leftOut, lowerCase(header)) == leftOut.end();
}

[[nodiscard]] std::string headersText(const std::multimap<std::string, std::string>& headers)
{
    nlohmann::json json = nlohmann::json::object();
    for (const auto& [name, value] : headers) {
        if (mayBeKept(name)) {
            json[name] = value;
        }
    }
    return json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}

RequestLog::RequestLog(Database& state)
    : database(state)
{
}

std::int64_t RequestLog::add(const RequestRecord& request)
{
    Statement(database,
              "INSERT INTO request (time, server, operation, uid, outcome, status, reason, fault, headers, body) "
              "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
        .bind(currentTimeText())
        .bind(request.server)
        .bind(request.operation)
        .bind(request.uid)
        .bind(request.outcome)
        .bind(request.status)
        .bind(request.reason)
        .bind(request.fault)
        .bind(headersText(request.headers))
        .bind(request.body)
        .run();
    return database.lastId();
}

void RequestLog::finish(std::int64_t id, const RequestRecord& request)
{
    Statement(database, "UPDATE request SET operation = ?, uid = ?, outcome = ?, status = ?, reason = ? WHERE id = ?")
        .bind(request.operation)
        .bind(request.uid)
        .bind(request.outcome)
        .bind(request.status)
        .bind(request.reason)
        .bind(id)
        .run();
}

std::string currentTimeText()
{
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto milliseconds
        = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
    std::tm parts {};
    gmtime_r(&seconds, &parts);
    std::array<char, 32> date {};
    const std::size_t length = std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &parts);
    std::string fraction = std::to_string(milliseconds);
    fraction.insert(0, 3 - fraction.size(), '0');
    return std::string(date.data(), length) + '.' + fraction + 'Z';
}

}
