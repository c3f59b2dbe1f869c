#pragma once

#include "sandbox/database.h"

#include <map>
#include <string>

namespace sandbox {

/// How a request ended.
namespace outcome {
inline constexpr std::string_view answered = "answered";
inline constexpr std::string_view refused = "refused"; // with a SOAP fault
inline constexpr std::string_view repeat = "repeat"; // had been executed before; answered as then
inline constexpr std::string_view conflict = "conflict"; // the same UID with other contents; answered as the first
inline constexpr std::string_view rejected = "rejected"; // by HTTP alone: path, method, credentials and the like
inline constexpr std::string_view notExecuted = "not executed"; // by a fault on demand
}

/// A request as it came, and its end.
struct RequestRecord {
    std::string server;
    std::string operation; // empty when it names none
    std::string uid;
    std::string outcome;
    int status = 0; // of HTTP; 0 when no reply was meant
    std::string reason; // of a refusal
    std::string fault; // the fault on demand that it met
    std::multimap<std::string, std::string> headers;
    std::string body;
};

/// Every request, kept. Credentials never get here: their headers are left out. Everything runs inside the caller's
/// transaction.
class RequestLog {
public:
    explicit RequestLog(Database& state);

    /// The number of the new record.
    [[nodiscard]] std::int64_t add(const RequestRecord& request);
    /// Writes what is known only afterwards: operation, UID, outcome, status and reason.
    void finish(std::int64_t id, const RequestRecord& request);

private:
    Database& database;
};

/// Now, UTC, as "2024-03-05T14:07:09.123Z". [any-thread]
[[nodiscard]] std::string currentTimeText();

}
