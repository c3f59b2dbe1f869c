#pragma once

#include "sandbox/database.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>

namespace sandbox {

/// The state as JSON, for people and tests. Sums and points are texts with two decimals. The caller has the state
/// alone.

/// The state's own name, which no other has; cheques, entries of points, cards and totals.
[[nodiscard]] nlohmann::json booksJson(const Database& database);

struct RequestFilter {
    std::int64_t since = 0; // requests with a greater number
    std::int64_t limit = 1000;
    std::string operation; // empty texts filter nothing
    std::string uid;
    std::string outcome;
    std::string server;
};

/// Requests in order.
[[nodiscard]] nlohmann::json requestsJson(const Database& database, const RequestFilter& filter);

}
