#pragma once

#include "sandbox/fault_plan.h"
#include "sandbox/request_journal.h"
#include "sandbox/service.h"

#include <optional>
#include <string>

namespace httplib {
class Server;
struct Request;
struct Response;
class ContentReader;
}

namespace sandbox {

/// What HTTP says about the service: path, method, credentials, content type and size, faults on demand. What is in
/// order goes to the service. Serves many connections at once.
class ServiceAddress {
public:
    /// All three outlive it.
    ServiceAddress(Service& loyaltyService, FaultPlan& faultPlan, RequestJournal& requestJournal);

    void setUp(httplib::Server& server);

private:
    void handlePost(const httplib::Request& request, httplib::Response& response, const httplib::ContentReader& reader);
    void serve(RequestRecord record, const std::string& action, httplib::Response& response);
    void serveFaulty(const Fault& fault, RequestRecord record, const std::string& action, httplib::Response& response);
    void execute(const std::optional<Fault>& fault, RequestRecord record, const std::string& action,
                 httplib::Response& response);
    void leaveUnexecuted(const Fault& fault, RequestRecord record, httplib::Response& response);
    void reject(int status, const std::string& reason, RequestRecord record, httplib::Response& response);
    void keep(const RequestRecord& record);
    [[nodiscard]] bool isLetIn(const httplib::Request& request) const;

    Service& service;
    FaultPlan& faults;
    RequestJournal& journal;
};

}
