#include "tests/sandbox/cheque_text.h"
#include "tests/sandbox/raw_client.h"
#include "tests/sandbox/sandbox_under_test.h"

#include <gtest/gtest.h>

#include <atomic>

using namespace std::chrono_literals;

namespace {

[[nodiscard]] int portOf(const std::string& url)
{
    return std::stoi(url.substr(url.rfind(':') + 1));
}

} // namespace

TEST(SandboxControl, HealthNamesTheServiceAndItsAddress)
{
    SandboxUnderTest sandbox;
    EXPECT_EQ(
        sandbox.control.get("/health"),
        (nlohmann::json { { "name", "test" }, { "service", sandbox.program.serviceUrl() }, { "serving", true } }));
}

TEST(SandboxControl, StopRefusesAndStartServesOnTheSameAddress)
{
    SandboxUnderTest sandbox;
    const std::string url = sandbox.program.serviceUrl();
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(sandbox.control.post("/stop")["serving"], false);
        EXPECT_EQ(sandbox.control.post("/stop")["serving"], false);
        EXPECT_EQ(exchangeRaw(url, "", 1s).ending, Ending::refused);
        EXPECT_EQ(sandbox.control.post("/start")["serving"], true);
        EXPECT_EQ(sandbox.control.post("/start")["serving"], true);
        EXPECT_EQ(sandbox.service.result("IsCardValid", card("9000000001")), "true");
    }
}

TEST(SandboxControl, StopEndsConnectionsThatAreKeptOrHeld)
{
    SandboxUnderTest sandbox;
    const std::string url = sandbox.program.serviceUrl();
    sandbox.control.post("/faults", { { "kind", "silence" }, { "operation", "Ping" } });
    std::atomic<int> ended = 0;
    std::vector<std::thread> clients;
    for (const std::string& request : { rawRequest("Ping", envelope("Ping", "")), std::string() }) {
        clients.emplace_back(
            [&ended, &url, request] { ended += exchangeRaw(url, request, 20s).ending == Ending::closed ? 1 : 0; });
    }
    EXPECT_TRUE(sandbox.control.waitForRequest());
    const auto begin = std::chrono::steady_clock::now();
    sandbox.control.post("/stop");
    for (std::thread& client : clients) {
        client.join();
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
    EXPECT_EQ(ended, 2);
}

TEST(SandboxControl, StartOnATakenPortSaysWhatToDo)
{
    SandboxUnderTest sandbox;
    const std::string url = sandbox.program.serviceUrl();
    sandbox.control.post("/stop");
    httplib::Server other;
    other.set_socket_options([](socket_t socket) { // else the port is not to be had
        const int yes = 1;
        ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    const int port = portOf(url);
    ASSERT_TRUE(other.bind_to_port("127.0.0.1", port));
    const nlohmann::json answer = sandbox.control.post("/start");
    EXPECT_EQ(answer["status"], 409);
    EXPECT_EQ(
        answer["error"],
        "port " + std::to_string(port)
            + " of 127.0.0.1 is taken; end the program that has it, or choose another port with --port (0 takes a "
              "free one)");
}

TEST(SandboxControl, PortOfAStoppedServiceIsNobodyElses)
{
    SandboxUnderTest sandbox;
    const std::string url = sandbox.program.serviceUrl();
    sandbox.control.post("/stop");
    EXPECT_EQ(exchangeRaw(url, "", 1s).ending, Ending::refused);
    httplib::Server other;
    EXPECT_FALSE(other.bind_to_port("127.0.0.1", portOf(url)));
    sandbox.control.post("/start");
    EXPECT_EQ(sandbox.service.call("Ping", "").status, 200);
}

TEST(SandboxControl, RequestsAreFiltered)
{
    SandboxUnderTest sandbox;
    static_cast<void>(sandbox.service.call("Ping", ""));
    static_cast<void>(sandbox.service.call("Accrual", closedSale().parameter()));
    static_cast<void>(sandbox.service.call("Accrual", closedReturn().parameter()));
    static_cast<void>(sandbox.service.call("Accrual", ChequeText().parameter()));
    const auto idsOf = [&sandbox](const std::string& filter) {
        std::string ids;
        for (const auto& request : sandbox.control.get("/requests" + filter)) {
            ids += request["id"].dump() + ' ';
        }
        return ids;
    };
    EXPECT_EQ(idsOf(""), "1 2 3 4 ");
    EXPECT_EQ(idsOf("?since=2"), "3 4 ");
    EXPECT_EQ(idsOf("?limit=2"), "1 2 ");
    EXPECT_EQ(idsOf("?operation=Accrual"), "2 3 4 ");
    EXPECT_EQ(idsOf("?uid=" + closedReturn().uid), "3 ");
    EXPECT_EQ(idsOf("?outcome=refused"), "4 ");
    EXPECT_EQ(idsOf("?operation=Accrual&outcome=answered&since=2&server=test"), "3 ");
    EXPECT_EQ(idsOf("?server=other"), "");
}

TEST(SandboxControl, BadCallsSayWhatToSend)
{
    SandboxUnderTest sandbox;
    EXPECT_EQ(sandbox.control.get("/requests?since=x")["error"], "since must be a whole number, but is \"x\"");
    EXPECT_EQ(sandbox.control.get("/requests?from=1")["error"],
              "unknown filter \"from\"; known are since, limit, operation, uid, outcome, server");
    EXPECT_EQ(sandbox.control.get("/nowhere")["error"].get<std::string>().substr(0, 12), "no such call");
    EXPECT_EQ(sandbox.control.post("/faults", "drop")["error"],
              "the body must be as in {\"kind\": \"delay\", \"operation\": \"Accrual\", \"times\": 1, \"arg\": 500}");
    EXPECT_EQ(sandbox.control.post("/faults", { { "king", "drop" } })["error"],
              "unknown key \"king\"; known are kind, operation, times, arg");
    EXPECT_EQ(sandbox.control.post("/faults", { { "kind", "drop" }, { "times", -1 } })["status"], 400);
    EXPECT_EQ(sandbox.control.post("/faults", { { "kind", "drop" }, { "times", "1:2" } })["status"], 400);
    EXPECT_EQ(sandbox.control.remove("/faults/7"), 404);
    EXPECT_EQ(sandbox.control.get("/faults").size(), 0U);
}

TEST(SandboxControl, FaultsAreListedAsTheyStand)
{
    SandboxUnderTest sandbox;
    sandbox.control.post("/faults", { { "kind", "delay" }, { "operation", "Ping" }, { "times", 3 }, { "arg", 1 } });
    sandbox.control.post("/faults", { { "kind", "drop" } });
    static_cast<void>(sandbox.service.call("Ping", ""));
    const nlohmann::json faults = sandbox.control.get("/faults");
    ASSERT_EQ(faults.size(), 2U);
    EXPECT_EQ(
        faults[0],
        (nlohmann::json { { "id", 1 }, { "kind", "delay" }, { "operation", "Ping" }, { "times", 2 }, { "arg", "1" } }));
    EXPECT_EQ(faults[1],
              (nlohmann::json {
                  { "id", 2 }, { "kind", "drop" }, { "operation", nullptr }, { "times", nullptr }, { "arg", "" } }));
    EXPECT_EQ(sandbox.control.remove("/faults"), 200);
    EXPECT_EQ(sandbox.control.get("/faults").size(), 0U);
}
