#include "sandbox/service_address.h"

#include "sandbox/connection.h"
#include "sandbox/fault_reply.h"
#include "sandbox/xml_check.h"

#include <algorithm>

namespace sandbox {

namespace {

constexpr const char* contentType = "text/xml; charset=utf-8";

[[nodiscard]] RequestRecord recordOf(const httplib::Request& request)
{
    RequestRecord record;
    record.headers.insert(request.headers.begin(), request.headers.end());
    return record;
}

[[nodiscard]] std::string lowerCase(std::string text)
{
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

/// Of the content type: text/xml, and no other character set than UTF-8.
[[nodiscard]] bool isXmlContent(const httplib::Request& request)
{
    const std::string type = lowerCase(request.get_header_value("Content-Type"));
    const std::string kind = type.substr(0, type.find(';'));
    return kind.substr(0, kind.find_last_not_of(' ') + 1) == "text/xml"
        && (type.find("charset") == std::string::npos || type.find("utf-8") != std::string::npos);
}

/// For replies to requests whose body is not read to its end.
void endAfter(httplib::Response& response)
{
    response.set_header("Connection", "close");
    Connection::current().endAfterReply();
}

[[nodiscard]] bool hasBody(const httplib::Request& request)
{
    return request.has_header("Content-Length") || request.has_header("Transfer-Encoding");
}

}

ServiceAddress::ServiceAddress(Service& loyaltyService, FaultPlan& faultPlan, RequestJournal& requestJournal)
    : service(loyaltyService)
    , faults(faultPlan)
    , journal(requestJournal)
{
}

void ServiceAddress::setUp(httplib::Server& server)
{
    const auto wrongMethod = [this](const httplib::Request& request, httplib::Response& response) {
        if (request.path != "/") {
            reject(404, "no such path " + request.path, recordOf(request), response);
            return;
        }
        response.set_header("Allow", "POST");
        reject(405, "method " + request.method, recordOf(request), response);
    };
    const auto wrongMethodWithBody
        = [wrongMethod](const httplib::Request& request, httplib::Response& response, const httplib::ContentReader&) {
              endAfter(response);
              wrongMethod(request, response);
          };
    // By itself the library refuses only what it cannot read, and then nobody knows where a next request would begin.
    server.set_error_handler([](const httplib::Request&, httplib::Response& response) {
        if (response.status == 400 || response.status == 414 || response.status == 431) {
            endAfter(response);
        }
    });
    server.Get(".*", wrongMethod);
    server.Options(".*", wrongMethod);
    server.Put(".*", wrongMethodWithBody);
    server.Patch(".*", wrongMethodWithBody);
    server.Delete(".*", wrongMethodWithBody);
    server.Post(".*",
                [this](const httplib::Request& request, httplib::Response& response,
                       const httplib::ContentReader& reader) { handlePost(request, response, reader); });
}

void ServiceAddress::handlePost(const httplib::Request& request, httplib::Response& response,
                                const httplib::ContentReader& reader)
{
    RequestRecord record = recordOf(request);
    if (request.path != "/") {
        endAfter(response);
        reject(404, "no such path " + request.path, std::move(record), response);
        return;
    }
    if (!isXmlContent(request)) {
        endAfter(response);
        reject(415, "content type " + request.get_header_value("Content-Type"), std::move(record), response);
        return;
    }
    if (!hasBody(request)) {
        endAfter(response);
        reject(411, "neither Content-Length nor chunks", std::move(record), response);
        return;
    }
    bool isTooLarge = false;
    const bool isWhole = reader([&](const char* data, std::size_t size) {
        isTooLarge = record.body.size() + size > XmlLimits().bytes;
        if (!isTooLarge) {
            record.body.append(data, size);
        }
        return !isTooLarge;
    });
    if (isTooLarge) {
        endAfter(response);
        record.body.clear();
        reject(413, "more than " + std::to_string(XmlLimits().bytes) + " bytes", std::move(record), response);
    } else if (!isWhole) {
        response.status = 400; // the client has gone, or its encoding cannot be undone
    } else if (!isLetIn(request)) {
        response.set_header("WWW-Authenticate", "Basic realm=\"vantiro-sandbox\", charset=\"UTF-8\"");
        reject(401, "wrong or missing credentials", std::move(record), response);
    } else {
        serve(std::move(record), request.get_header_value("SOAPAction"), response);
    }
}

void ServiceAddress::serve(RequestRecord record, const std::string& action, httplib::Response& response)
{
    record.operation = operationOfAction(action, service.soapNamespace());
    const std::optional<Fault> fault = faults.take(record.operation);
    if (fault) {
        record.fault = formOf(fault->kind).name;
        serveFaulty(*fault, std::move(record), action, response);
    } else {
        execute(fault, std::move(record), action, response);
    }
}

void ServiceAddress::serveFaulty(const Fault& fault, RequestRecord record, const std::string& action,
                                 httplib::Response& response)
{
    switch (fault.kind) {
    case FaultKind::silence:
        leaveUnexecuted(fault, std::move(record), response);
        Connection::current().keepSilent();
        break;
    case FaultKind::status404:
    case FaultKind::status503:
        response.status = fault.kind == FaultKind::status404 ? 404 : 503;
        leaveUnexecuted(fault, std::move(record), response);
        break;
    case FaultKind::fault:
    case FaultKind::prefix: {
        const bool isPrefix = fault.kind == FaultKind::prefix;
        response.status = 500;
        response.set_content(isPrefix ? faultText(Blame::server, formOf(FaultKind::fault).argument, fault.argument)
                                      : faultText(Blame::server, fault.argument),
                             contentType);
        leaveUnexecuted(fault, std::move(record), response);
        break;
    }
    case FaultKind::delay:
        Connection::current().pause(std::chrono::milliseconds(fault.number()));
        [[fallthrough]];
    default:
        execute(fault, std::move(record), action, response);
    }
}

void ServiceAddress::execute(const std::optional<Fault>& fault, RequestRecord record, const std::string& action,
                             httplib::Response& response)
{
    const std::string operation = record.operation;
    const std::string faultName = record.fault;
    const ServiceReply reply = service.execute(std::move(record), action);
    response.status = reply.status;
    response.set_content(reply.body, contentType);
    if (fault) {
        spoilReply(*fault, response);
    }
    journal.write((operation.empty() ? "(no operation)" : operation) + (reply.uid.empty() ? "" : ' ' + reply.uid) + ' '
                  + std::to_string(reply.status) + ' ' + reply.outcome
                  + (reply.reason.empty() ? "" : ": " + reply.reason)
                  + (faultName.empty() ? "" : " [fault " + faultName + ']'));
}

void ServiceAddress::leaveUnexecuted(const Fault& fault, RequestRecord record, httplib::Response& response)
{
    record.outcome = outcome::notExecuted;
    record.status = fault.kind == FaultKind::silence ? 0 : response.status;
    keep(record);
}

void ServiceAddress::reject(int status, const std::string& reason, RequestRecord record, httplib::Response& response)
{
    response.status = status;
    record.outcome = outcome::rejected;
    record.status = status;
    record.reason = reason;
    keep(record);
}

void ServiceAddress::keep(const RequestRecord& record)
{
    journal.write((record.operation.empty() ? "(no operation)" : record.operation) + ' ' + std::to_string(record.status)
                  + ' ' + record.outcome + (record.reason.empty() ? "" : ": " + record.reason)
                  + (record.fault.empty() ? "" : " [fault " + record.fault + ']'));
    try {
        service.keep(record);
    } catch (const DatabaseFailure& failure) {
        journal.write(std::string("the request could not be kept: ") + failure.what());
    }
}

bool ServiceAddress::isLetIn(const httplib::Request& request) const
{
    const auto& credentials = service.rules().credentials;
    return !credentials
        || request.get_header_value("Authorization")
        == httplib::make_basic_authentication_header(credentials->user, credentials->password).second;
}

}
