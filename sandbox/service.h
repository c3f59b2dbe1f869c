#pragma once

#include "sandbox/cheque.h"
#include "sandbox/database.h"
#include "sandbox/request_log.h"
#include "sandbox/rules.h"
#include "sandbox/soap.h"

#include <mutex>
#include <string>

namespace sandbox {

/// A reply in SOAP; the status is 200, or 500 for a fault.
struct ServiceReply {
    int status = 200;
    std::string body;
    std::string outcome;
    std::string uid; // of the cheque, for the log
    std::string reason; // of a refusal
};

/// The loyalty service behind its address: takes requests, changes the state, gives replies. Every request is kept, and
/// in one transaction with what it changes: there is no reply to anything that is not in the state.
class Service {
public:
    /// Makes the cards of the rules known in the state. Throws `DatabaseFailure`. [blocks: for the disk]
    Service(Rules serviceRules, const std::filesystem::path& state, std::string serverName, std::string soapNamespace);

    /// Executes the request whose `operation`, `headers`, `fault` and `body` are given. A failure of the database is a
    /// fault of the server. [any-thread] [blocks: for the disk and for other processes]
    [[nodiscard]] ServiceReply execute(RequestRecord request, std::string_view action);

    /// Keeps a request that is not executed. [any-thread] [blocks: for the disk]
    void keep(RequestRecord request);

    [[nodiscard]] const Rules& rules() const
    {
        return serviceRules;
    }
    [[nodiscard]] const std::string& name() const
    {
        return server;
    }
    [[nodiscard]] const std::string& soapNamespace() const
    {
        return space;
    }

    /// Calls the function with the state, alone. [any-thread]
    template <typename Function>
    auto withState(Function function)
    {
        const std::lock_guard lock(mutex);
        return function(database);
    }

private:
    struct Done {
        std::string result;
        std::string_view outcome;
    };

    [[nodiscard]] ServiceReply executeAlone(RequestRecord& request, std::string_view action);
    [[nodiscard]] Done perform(const Call& call, std::int64_t request, std::string& uid);
    [[nodiscard]] Done performOnCheque(const Call& call, std::int64_t request, std::string& uid);
    [[nodiscard]] Done performOnPoints(const Call& call, const Cheque& cheque, std::int64_t request);

    const Rules serviceRules;
    const std::string server;
    const std::string space;
    std::mutex mutex;
    Database database;
};

}
