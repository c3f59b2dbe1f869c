#include "sandbox/control_address.h"

#include "sandbox/books.h"
#include "sandbox/listener.h"

#include <httplib.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>

namespace sandbox {

namespace {

using nlohmann::json;

constexpr std::size_t bodyMost = 65'536;

/// A control call that cannot be understood; the text says what to send.
class CallMistake : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

void answer(httplib::Response& response, const json& value)
{
    // A request may have come with bytes that are no text.
    response.set_content(value.dump(2, ' ', false, json::error_handler_t::replace) + '\n', "application/json");
}

void refuse(httplib::Response& response, int status, const std::string& reason)
{
    response.status = status;
    answer(response, { { "error", reason } });
}

[[nodiscard]] std::int64_t numberParameter(const httplib::Request& request, const char* name, std::int64_t fallback)
{
    if (!request.has_param(name)) {
        return fallback;
    }
    const std::string text = request.get_param_value(name);
    std::int64_t value = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || rest != text.data() + text.size() || value < 0) {
        throw CallMistake(std::string(name) + " must be a whole number, but is \"" + text + '"');
    }
    return value;
}

[[nodiscard]] RequestFilter filterOf(const httplib::Request& request)
{
    static constexpr std::string_view known[] = { "since", "limit", "operation", "uid", "outcome", "server" };
    for (const auto& [name, value] : request.params) {
        if (std::ranges::find(known, name) == std::end(known)) {
            throw CallMistake("unknown filter \"" + name
                              + "\"; known are since, limit, operation, uid, outcome, server");
        }
    }
    RequestFilter filter;
    filter.since = numberParameter(request, "since", filter.since);
    filter.limit = numberParameter(request, "limit", filter.limit);
    filter.operation = request.get_param_value("operation");
    filter.uid = request.get_param_value("uid");
    filter.outcome = request.get_param_value("outcome");
    filter.server = request.get_param_value("server");
    return filter;
}

[[nodiscard]] json faultJson(const Fault& fault)
{
    return { { "id", fault.id },
             { "kind", formOf(fault.kind).name },
             { "operation", fault.operation.empty() ? json() : json(fault.operation) },
             { "times", fault.times ? json(*fault.times) : json() },
             { "arg", fault.argument } };
}

[[nodiscard]] std::string partText(const json& call, const char* key)
{
    const auto found = call.find(key);
    if (found == call.end() || found->is_null()) {
        return {};
    }
    return found->is_string() ? found->get<std::string>() : found->dump();
}

[[nodiscard]] Fault readFault(const std::string& body)
{
    const json call = json::parse(body, nullptr, false);
    if (!call.is_object()) {
        throw CallMistake(
            R"(the body must be as in {"kind": "delay", "operation": "Accrual", "times": 1, "arg": 500})");
    }
    for (const auto& [key, value] : call.items()) {
        if (key != "kind" && key != "operation" && key != "times" && key != "arg") {
            throw CallMistake("unknown key \"" + key + "\"; known are kind, operation, times, arg");
        }
    }
    return parseFault(partText(call, "kind") + ':' + partText(call, "operation") + ':' + partText(call, "times") + ':'
                      + partText(call, "arg"));
}

/// A handler whose failures become replies.
template <typename Handler>
[[nodiscard]] httplib::Server::Handler guarded(Handler handler)
{
    return [handler](const httplib::Request& request, httplib::Response& response) {
        try {
            handler(request, response);
        } catch (const CallMistake& mistake) {
            refuse(response, 400, mistake.what());
        } catch (const FaultMistake& mistake) {
            refuse(response, 400, mistake.what());
        } catch (const AddressFailure& failure) {
            refuse(response, 409, failure.what());
        } catch (const DatabaseFailure& failure) {
            refuse(response, 500, std::string("the state cannot be read: ") + failure.what());
        }
    };
}

}

ControlAddress::ControlAddress(Service& loyaltyService, FaultPlan& faultPlan, ControlActions programActions)
    : service(loyaltyService)
    , faults(faultPlan)
    , actions(std::move(programActions))
{
}

void ControlAddress::setUp(httplib::Server& server)
{
    server.set_payload_max_length(bodyMost);
    const auto health = [this] {
        return json { { "name", service.name() },
                      { "service", actions.serviceUrl() },
                      { "serving", actions.isServing() } };
    };
    // Faults of the kind "refuse" close the address; nothing else but them and /stop does.
    const auto follow = [this] {
        if (faults.refusesConnections()) {
            actions.stopServing();
        }
    };
    const auto reopen = [this](bool refused) {
        if (refused && !faults.refusesConnections()) {
            actions.startServing();
        }
    };

    server.Get("/health", guarded([health](const auto&, auto& response) { answer(response, health()); }));
    server.Get("/requests", guarded([this](const auto& request, auto& response) {
                   const RequestFilter filter = filterOf(request);
                   answer(response, service.withState([&](auto& state) { return requestsJson(state, filter); }));
               }));
    server.Get("/books", guarded([this](const auto&, auto& response) {
                   answer(response, service.withState([](auto& state) { return booksJson(state); }));
               }));
    server.Get("/faults", guarded([this](const auto&, auto& response) {
                   json list = json::array();
                   for (const Fault& fault : faults.list()) {
                       list.push_back(faultJson(fault));
                   }
                   answer(response, list);
               }));
    server.Post("/faults", guarded([this, follow](const auto& request, auto& response) {
                    Fault fault = readFault(request.body);
                    fault.id = faults.add(fault);
                    follow();
                    answer(response, faultJson(fault));
                }));
    server.Delete("/faults", guarded([this, reopen](const auto&, auto& response) {
                      const bool refused = faults.refusesConnections();
                      faults.clear();
                      reopen(refused);
                      answer(response, json::array());
                  }));
    server.Delete("/faults/([0-9]{1,9})", guarded([this, reopen](const auto& request, auto& response) {
                      const bool refused = faults.refusesConnections();
                      if (!faults.remove(std::stoll(request.matches[1]))) {
                          refuse(response, 404, "no such fault; GET /faults lists them");
                          return;
                      }
                      reopen(refused);
                      answer(response, json::object());
                  }));
    server.Post("/stop", guarded([this, health](const auto&, auto& response) {
                    actions.stopServing();
                    answer(response, health());
                }));
    server.Post("/start", guarded([this, health](const auto&, auto& response) {
                    actions.startServing();
                    answer(response, health());
                }));
    server.Post("/shutdown", guarded([this](const auto&, auto& response) {
                    actions.shutDown();
                    answer(response, json::object());
                }));
    server.set_error_handler([](const httplib::Request&, httplib::Response& response) {
        if (response.body.empty()) {
            answer(response,
                   { { "error",
                       "no such call; there are GET /health, /requests, /books, /faults, POST /faults, /stop, /start, "
                       "/shutdown, DELETE /faults and /faults/ID" } });
        }
    });
}

}
