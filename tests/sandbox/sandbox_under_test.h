#pragma once

#include "sandbox/sandbox.h"
#include "tests/sandbox/temporary_folder.h"

#include <httplib.h>
#include <nlohmann/json.hpp>

#include <string>

/// The rules of most tests. Expectations are worked out by hand from them.
[[nodiscard]] std::string testRules();

struct Reply {
    int status = 0; // 0 when there was no reply
    std::string body;
};

/// The envelope that a client sends; `parameters` is XML.
[[nodiscard]] std::string envelope(const std::string& operation, const std::string& parameters);
[[nodiscard]] std::string actionOf(const std::string& operation);

/// What a client of the service does, over real HTTP with a connection for each call.
class ServiceClient {
public:
    explicit ServiceClient(std::string serviceUrl);

    [[nodiscard]] Reply post(const std::string& body, const httplib::Headers& headers) const;
    [[nodiscard]] Reply call(const std::string& operation, const std::string& parameters) const;

    /// What stands in the result element of a reply with status 200, as it is written there.
    [[nodiscard]] std::string result(const std::string& operation, const std::string& parameters) const;
    /// The text of a fault, whose form and status are checked.
    [[nodiscard]] std::string refusal(const std::string& operation, const std::string& parameters) const;

    [[nodiscard]] std::string balance(const std::string& card) const;

    [[nodiscard]] static httplib::Headers headers(const std::string& operation);

private:
    std::string url;
};

class ControlClient {
public:
    explicit ControlClient(std::string controlUrl);

    [[nodiscard]] nlohmann::json get(const std::string& path) const;
    /// The status is the value under "status" of what is returned.
    nlohmann::json post(const std::string& path, const nlohmann::json& body = nlohmann::json::object()) const;
    nlohmann::json remove(const std::string& path) const;

    /// The cheque of the books.
    [[nodiscard]] nlohmann::json cheque(const std::string& uid) const;

    /// Waits until a request has been kept. Whether that came about in time.
    [[nodiscard]] bool waitForRequest() const;

private:
    std::string url;
};

/// A sandbox inside the test's process.
class SandboxUnderTest {
public:
    explicit SandboxUnderTest(const std::string& rules = testRules(), const std::filesystem::path& state = {},
                              const std::string& name = "test");

    sandbox::Sandbox program;
    ServiceClient service;
    ControlClient control;

private:
    [[nodiscard]] static sandbox::Options options(const std::string& rules, const std::filesystem::path& state,
                                                  const std::string& name);
};

/// The parameter of operations that take a card's number.
[[nodiscard]] std::string card(const std::string& number);
[[nodiscard]] std::string amount(const std::string& sum);
