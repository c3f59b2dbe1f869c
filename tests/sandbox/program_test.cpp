#include "tests/sandbox/cheque_text.h"
#include "tests/sandbox/program_under_test.h"
#include "tests/sandbox/raw_client.h"
#include "tests/sandbox/sandbox_under_test.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <atomic>
#include <barrier>
#include <csignal>
#include <regex>

using namespace std::chrono_literals;

namespace {

class SandboxProgram : public ::testing::Test {
protected:
    [[nodiscard]] std::vector<std::string> arguments(const std::string& name = "one") const
    {
        return { "--rules", rules, "--state", state, "--name", name };
    }

    [[nodiscard]] std::vector<std::string> with(std::vector<std::string> more) const
    {
        std::vector<std::string> all = arguments();
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }

    /// One line on the error output, nothing on the other.
    static void expectEnd(ProgramUnderTest& program, int status, const std::string& line)
    {
        EXPECT_EQ(program.wait(), status);
        EXPECT_EQ(program.errors(), "vantiro-sandbox: " + line + '\n');
        EXPECT_EQ(program.output(), "");
    }

    TemporaryFolder folder;
    const std::string rules = folder.write("rules.yaml", testRules()).string();
    const std::string state = folder.file("state").string();
};

}

TEST_F(SandboxProgram, ReadyLineNamesBothAddresses)
{
    ProgramUnderTest program(arguments());
    const std::string line = program.readyLine();
    EXPECT_EQ(line, "vantiro-sandbox one: service " + program.serviceUrl() + " control " + program.controlUrl());
    EXPECT_EQ(program.serviceUrl().substr(0, 17), "http://127.0.0.1:");
    EXPECT_EQ(ServiceClient(program.serviceUrl()).result("IsCardValid", card("9000000001")), "true");
    EXPECT_EQ(ControlClient(program.controlUrl()).get("/health")["name"], "one");
}

TEST_F(SandboxProgram, SignalsAndShutdownEndItCleanly)
{
    for (const int number : { SIGTERM, SIGINT }) {
        ProgramUnderTest program(arguments());
        static_cast<void>(program.readyLine());
        program.signal(number);
        EXPECT_EQ(program.wait(), 0);
    }
    ProgramUnderTest program(arguments());
    EXPECT_EQ(ControlClient(program.controlUrl()).post("/shutdown")["status"], 200);
    EXPECT_EQ(program.wait(), 0);
}

TEST_F(SandboxProgram, SilentConnectionsDoNotKeepItFromEnding)
{
    ProgramUnderTest program(with({ "--fault", "silence" }));
    const std::string url = program.serviceUrl();
    std::thread client(
        [&url] { EXPECT_EQ(exchangeRaw(url, rawRequest("Ping", envelope("Ping", "")), 20s).ending, Ending::closed); });
    EXPECT_TRUE(ControlClient(program.controlUrl()).waitForRequest());
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(5s), 0);
    client.join();
}

TEST_F(SandboxProgram, OneLineIsLoggedForEachRequest)
{
    ProgramUnderTest program(arguments());
    const ServiceClient service(program.serviceUrl());
    static_cast<void>(service.result("Accrual", closedSale().parameter()));
    static_cast<void>(service.refusal("GetCardBalance", card("1")));
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
    const std::string log = program.errors();
    EXPECT_NE(log.find("Z one: Accrual 11116E73-1C03-5DE6-9130-5F9925AE8AB4 200 answered\n"), std::string::npos) << log;
    EXPECT_NE(log.find("Z one: GetCardBalance 500 refused: Карта 1 не найдена\n"), std::string::npos) << log;
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 2);
}

TEST_F(SandboxProgram, QuietLogsNothing)
{
    ProgramUnderTest program(with({ "--quiet" }));
    static_cast<void>(ServiceClient(program.serviceUrl()).result("IsCardValid", card("1")));
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.errors(), "");
}

TEST_F(SandboxProgram, RestartKeepsTheState)
{
    {
        ProgramUnderTest program(arguments());
        static_cast<void>(ServiceClient(program.serviceUrl()).result("Accrual", closedSale().parameter()));
        program.signal(SIGTERM);
        ASSERT_EQ(program.wait(), 0);
    }
    ProgramUnderTest program(arguments());
    const ServiceClient service(program.serviceUrl());
    EXPECT_EQ(service.balance("9000000001"), "505.00"); // and not the opening balance once more
    static_cast<void>(service.result("Accrual", closedSale().parameter()));
    EXPECT_EQ(service.balance("9000000001"), "505.00");
    EXPECT_EQ(ControlClient(program.controlUrl()).cheque(closedSale().uid)["repeats"], 1);
}

TEST_F(SandboxProgram, KillKeepsWhatWasAnswered)
{
    std::atomic<int> answered = 0;
    std::atomic<int> ended = 0; // rounds
    for (int round = 1; round <= 3; ++round) {
        ProgramUnderTest program(arguments());
        const ServiceClient service(program.serviceUrl());
        std::thread killer([&] {
            // In the middle of whatever the client does then.
            while (answered < round * 10 && ended < round) {
                std::this_thread::sleep_for(100us);
            }
            program.signal(SIGKILL);
        });
        for (;; ++answered) {
            ChequeText cheque = closedSale();
            cheque.uid.replace(0, 4, std::to_string(1000 + answered));
            if (service.call("Accrual", cheque.parameter()).status != 200) {
                break;
            }
        }
        ++ended;
        killer.join();
        EXPECT_EQ(program.wait(), -SIGKILL);
    }
    ASSERT_GE(answered, 30);
    ProgramUnderTest program(arguments());
    const nlohmann::json totals = ControlClient(program.controlUrl()).get("/books")["totals"];
    // The one that was under way at each kill may be in the books without an answer.
    EXPECT_GE(totals["sales"].get<int>(), answered);
    EXPECT_LE(totals["sales"].get<int>(), answered + 3);
    const ServiceClient service(program.serviceUrl());
    for (int i = 0; i < answered; ++i) {
        ChequeText cheque = closedSale();
        cheque.uid.replace(0, 4, std::to_string(1000 + i));
        ASSERT_EQ(service.call("Accrual", cheque.parameter()).status, 200);
    }
    const nlohmann::json after = ControlClient(program.controlUrl()).get("/books")["totals"];
    EXPECT_EQ(after["sales"], totals["sales"]);
    EXPECT_EQ(after["repeats"].get<int>(), totals["repeats"].get<int>() + answered);
}

TEST_F(SandboxProgram, ProcessesShareOneState)
{
    constexpr int cheques = 20;
    ProgramUnderTest one(arguments("one"));
    ProgramUnderTest two(arguments("two"));
    const std::string first = one.serviceUrl();
    const std::string second = two.serviceUrl();
    std::barrier start(2);
    const auto send = [&start](const std::string& url) {
        const ServiceClient service(url);
        for (int i = 0; i < cheques; ++i) {
            ChequeText cheque = closedSale();
            cheque.uid.replace(0, 2, std::to_string(10 + i));
            start.arrive_and_wait();
            EXPECT_EQ(service.call("OfflineAccrual", cheque.parameter()).status, 200);
        }
    };
    std::thread other([&] { send(second); });
    send(first);
    other.join();
    EXPECT_EQ(ServiceClient(first).balance("9000000001"), "600.00"); // 20 times 5 points
    const nlohmann::json totals = ControlClient(two.controlUrl()).get("/books")["totals"];
    EXPECT_EQ(totals["sales"], cheques);
    EXPECT_EQ(totals["repeats"], cheques);
}

TEST_F(SandboxProgram, FaultsComeFromTheCommandLine)
{
    ProgramUnderTest program(with({ "--fault", "503:Ping:1", "--fault", "drop:Ping:1" }));
    const ServiceClient service(program.serviceUrl());
    EXPECT_EQ(service.call("Ping", "").status, 503);
    EXPECT_EQ(service.call("Ping", "").status, 0);
    EXPECT_EQ(service.call("Ping", "").status, 200);
}

TEST_F(SandboxProgram, RefusingStartsWithTheAddressClosed)
{
    ProgramUnderTest program(with({ "--fault", "refuse" }));
    const std::string url = program.serviceUrl();
    EXPECT_EQ(exchangeRaw(url, "", 1s).ending, Ending::refused);
    EXPECT_EQ(ControlClient(program.controlUrl()).remove("/faults"), 200);
    EXPECT_EQ(ServiceClient(url).call("Ping", "").status, 200);
}

TEST_F(SandboxProgram, TakenPortsAreToldAndNothingElseHappens)
{
    ProgramUnderTest first(arguments());
    const std::string url = first.serviceUrl();
    const std::string port = url.substr(url.rfind(':') + 1, url.size() - url.rfind(':') - 2);
    ProgramUnderTest service(with({ "--port", port }));
    expectEnd(
        service, 1,
        "port " + port
            + " of 127.0.0.1 is taken; end the program that has it, or choose another port with --port (0 takes a "
              "free one)");
    ProgramUnderTest control(with({ "--control", port }));
    expectEnd(
        control, 1,
        "port " + port
            + " of 127.0.0.1 is taken; end the program that has it, or choose another port with --control (0 takes "
              "a free one)");
    EXPECT_EQ(ServiceClient(url).call("Ping", "").status, 200);
}

TEST_F(SandboxProgram, AddressesOfOthersAreTold)
{
    ProgramUnderTest program(with({ "--bind", "192.0.2.1" }));
    EXPECT_EQ(program.wait(), 1);
    EXPECT_NE(program.errors().find("choose an address of this machine"), std::string::npos) << program.errors();
}

TEST_F(SandboxProgram, MistakesInTheRulesEndItWithTwo)
{
    const std::string bad = folder.write("bad.yaml", "cards:\n  - number: \"1\"\n    balanse: 5\n").string();
    ProgramUnderTest program({ "--rules", bad, "--state", state });
    expectEnd(program, 2, bad + ":3: a card has no key \"balanse\"; known are number, phone, code, balance, blocked");
    EXPECT_FALSE(std::filesystem::exists(state));
    ProgramUnderTest missing({ "--rules", "/nowhere/rules.yaml" });
    expectEnd(missing, 2, "/nowhere/rules.yaml: cannot be read; name an existing rule file with --rules");
}

TEST_F(SandboxProgram, StateThatCannotBeUsedIsToldAndLeftAlone)
{
    ProgramUnderTest nowhere({ "--rules", rules, "--state", "/nowhere/state" });
    expectEnd(nowhere, 1, "the state cannot be used: unable to open database file; name another file with --state");
    const std::string text
        = folder.write("text", "not a database, but something of value, and long enough to be read\n");
    ProgramUnderTest other({ "--rules", rules, "--state", text });
    expectEnd(other, 1, "the state cannot be used: file is not a database; name another file with --state");
    std::ifstream stream(text);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}),
              "not a database, but something of value, and long enough to be read\n");
}

TEST_F(SandboxProgram, DatabaseOfAnotherProgramIsLeftAlone)
{
    const std::string file = folder.file("other").string();
    {
        sqlite3* other = nullptr;
        ASSERT_EQ(sqlite3_open(file.c_str(), &other), SQLITE_OK);
        ASSERT_EQ(sqlite3_exec(other, "CREATE TABLE card (x)", nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(other);
    }
    ProgramUnderTest program({ "--rules", rules, "--state", file });
    expectEnd(program, 1,
              "the state cannot be used: the file is a database of another program; name another file with --state");
}

TEST_F(SandboxProgram, MistakesInTheCommandLineEndItWithTwo)
{
    ProgramUnderTest nothing({});
    expectEnd(nothing, 2, "--rules is required; see vantiro-sandbox --help");
    ProgramUnderTest port(with({ "--port", "70000" }));
    EXPECT_EQ(port.wait(), 2);
    EXPECT_NE(port.errors().find("--port"), std::string::npos) << port.errors();
    ProgramUnderTest unknown(with({ "--stat", "x" }));
    EXPECT_EQ(unknown.wait(), 2);
    EXPECT_NE(unknown.errors().find("; see vantiro-sandbox --help\n"), std::string::npos) << unknown.errors();
    ProgramUnderTest fault(with({ "--fault", "explode" }));
    EXPECT_EQ(fault.wait(), 2);
    EXPECT_NE(fault.errors().find("unknown fault \"explode\"; known are "), std::string::npos) << fault.errors();
    ProgramUnderTest space(with({ "--namespace", "urn:other" }));
    expectEnd(space, 2, "--namespace must end in a slash, but is \"urn:other\"");
}

TEST_F(SandboxProgram, HelpTellsEveryOptionFaultAndControlCall)
{
    ProgramUnderTest program({ "--help" });
    EXPECT_EQ(program.wait(), 0);
    const std::string help = program.output();
    for (const char* const word :
         { "--rules",   "--state",   "--name",  "--bind",    "--port",  "--control", "--fault",    "--namespace",
           "--quiet",   "--version", "refuse",  "silence",   "delay",   "reset",     "drop",       "404",
           "503",       "500",       "prefix",  "truncated", "not-xml", "giant",     "nested",     "/health",
           "/requests", "/books",    "/faults", "/stop",     "/start",  "/shutdown", "Exit status" }) {
        EXPECT_NE(help.find(word), std::string::npos) << word;
    }
}

TEST_F(SandboxProgram, VersionNeedsNoRules)
{
    ProgramUnderTest program({ "--version" });
    EXPECT_EQ(program.wait(), 0);
    EXPECT_TRUE(std::regex_match(program.output(), std::regex("\\d+\\.\\d+\\.\\d+\n"))) << program.output();
    EXPECT_EQ(program.errors(), "");
}

TEST_F(SandboxProgram, ExampleRulesStartIt)
{
    ProgramUnderTest program({ "--rules", VANTIRO_SANDBOX_RULES });
    EXPECT_EQ(ControlClient(program.controlUrl()).get("/health")["name"], "sandbox");
}
