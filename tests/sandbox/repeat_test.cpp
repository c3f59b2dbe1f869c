#include "tests/sandbox/cheque_text.h"
#include "tests/sandbox/sandbox_under_test.h"

#include <gtest/gtest.h>

#include <barrier>
#include <thread>

namespace {

[[nodiscard]] std::string slip()
{
    return "&amp;lt;doc&amp;gt;&amp;lt;pair left=\"1042/17\" right=\"100.00\"/&amp;gt;&amp;lt;f0&amp;gt;"
           "5.00 0.00 505.00 &amp;amp;amp; 9000000001&amp;lt;/f0&amp;gt;&amp;lt;/doc&amp;gt;";
}

[[nodiscard]] std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    return text.replace(text.find(from), from.size(), to);
}

}

TEST(SandboxRepeat, RepeatIsAnsweredAsTheFirstAndCountsOnce)
{
    const SandboxUnderTest sandbox;
    EXPECT_EQ(sandbox.service.result("Accrual", closedSale().parameter()), slip());
    EXPECT_EQ(sandbox.service.result("Accrual", closedSale().parameter()), slip());
    EXPECT_EQ(sandbox.service.result("OfflineAccrual", closedSale().parameter()), slip());
    EXPECT_EQ(sandbox.service.balance("9000000001"), "505.00");
    EXPECT_EQ(sandbox.control.cheque(closedSale().uid)["repeats"], 2);
    EXPECT_EQ(sandbox.control.get("/requests?outcome=repeat").size(), 2U);
    EXPECT_EQ(sandbox.control.get("/books")["totals"]["sales"], 1);
}

TEST(SandboxRepeat, OrderOfAttributesAndBlanksMakeNoOtherCheque)
{
    const SandboxUnderTest sandbox;
    const std::string first = closedSale().xml();
    static_cast<void>(sandbox.service.result("Accrual", chequeParameter(first)));
    std::string second = replaced(first, "ShiftNo=\"17\"", "");
    second = replaced(second, "Status=\"Closed\"", "Status=\"Closed\" ShiftNo=\"17\"");
    second = replaced(second, "<ChequeLines>", "\n  <ChequeLines>\n");
    second = replaced(second, "<Messages/>", "<Messages></Messages>");
    EXPECT_EQ(sandbox.service.result("Accrual", chequeParameter(second)), slip());
    EXPECT_EQ(sandbox.control.cheque(closedSale().uid)["repeats"], 1);
    EXPECT_EQ(sandbox.control.cheque(closedSale().uid)["conflicts"], 0);
}

TEST(SandboxRepeat, OtherContentsAreAConflictAndChangeNothing)
{
    const SandboxUnderTest sandbox;
    static_cast<void>(sandbox.service.result("Accrual", closedSale().parameter()));
    ChequeText other = closedSale();
    other.amount = "200.00";
    other.lines = LineText { .amount = "200.00" }.xml();
    EXPECT_EQ(sandbox.service.result("Accrual", other.parameter()), slip());
    other = closedSale();
    other.status = "Canceled";
    EXPECT_EQ(sandbox.service.result("OfflineAccrual", other.parameter()), slip());
    EXPECT_EQ(sandbox.service.balance("9000000001"), "505.00");
    const nlohmann::json cheque = sandbox.control.cheque(closedSale().uid);
    EXPECT_EQ(cheque["amount"], "100.00");
    EXPECT_EQ(cheque["status"], "Closed");
    EXPECT_EQ(cheque["conflicts"], 2);
    EXPECT_EQ(sandbox.control.get("/requests?outcome=conflict").size(), 2U);
}

TEST(SandboxRepeat, RefusedChequeMayComeAgain)
{
    const SandboxUnderTest sandbox;
    ChequeText cheque = closedSale();
    cheque.card = "9000000009";
    static_cast<void>(sandbox.service.refusal("Accrual", cheque.parameter()));
    EXPECT_EQ(sandbox.service.result("Accrual", closedSale().parameter()), slip());
}

TEST(SandboxRepeat, ThreadsAtOnceCountOnce)
{
    constexpr int threads = 8;
    const SandboxUnderTest sandbox;
    std::barrier start(threads);
    std::vector<std::string> results(threads);
    std::vector<std::thread> clients;
    for (int i = 0; i < threads; ++i) {
        clients.emplace_back([&, i] {
            start.arrive_and_wait();
            results[static_cast<std::size_t>(i)] = sandbox.service.result("Accrual", closedSale().parameter());
        });
    }
    for (std::thread& client : clients) {
        client.join();
    }
    for (const std::string& result : results) {
        EXPECT_EQ(result, slip());
    }
    EXPECT_EQ(sandbox.service.balance("9000000001"), "505.00");
    EXPECT_EQ(sandbox.control.cheque(closedSale().uid)["repeats"], threads - 1);
}

TEST(SandboxRepeat, FrontEndsOfOneStateCountOnce)
{
    const TemporaryFolder folder;
    const SandboxUnderTest first(testRules(), folder.file("state"), "first");
    const SandboxUnderTest second(testRules(), folder.file("state"), "second");
    constexpr int cheques = 20;
    std::barrier start(2);
    const auto send = [&start](const SandboxUnderTest& sandbox) {
        for (int i = 0; i < cheques; ++i) {
            ChequeText cheque = closedSale();
            const std::string number = std::to_string(10 + i);
            cheque.uid.replace(0, 2, number);
            start.arrive_and_wait();
            EXPECT_EQ(sandbox.service.call("OfflineAccrual", cheque.parameter()).status, 200);
        }
    };
    std::thread other([&] { send(second); });
    send(first);
    other.join();
    EXPECT_EQ(first.service.balance("9000000001"), "600.00"); // 20 times 5 points
    EXPECT_EQ(second.service.balance("9000000001"), "600.00");
    EXPECT_EQ(second.control.get("/books")["totals"]["sales"], cheques);
    EXPECT_EQ(second.control.get("/books")["totals"]["repeats"], cheques);
    EXPECT_EQ(first.control.get("/requests?server=second&operation=OfflineAccrual").size(), 20U);
}
