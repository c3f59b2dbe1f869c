#include "tests/sandbox/cheque_text.h"
#include "tests/sandbox/raw_client.h"
#include "tests/sandbox/sandbox_under_test.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace {

class SandboxFault : public ::testing::Test {
protected:
    void add(const nlohmann::json& fault) const
    {
        ASSERT_EQ(sandbox.control.post("/faults", fault)["status"], 200);
    }

    /// A raw accrual of the closed sale.
    [[nodiscard]] RawReply accrue(std::chrono::milliseconds patience = 10s) const
    {
        return exchangeRaw(url, rawRequest("Accrual", envelope("Accrual", closedSale().parameter())), patience);
    }

    [[nodiscard]] bool isExecuted() const
    {
        return sandbox.service.balance("9000000001") == "505.00";
    }

    [[nodiscard]] static std::string bodyOf(const RawReply& reply)
    {
        const std::size_t end = reply.bytes.find("\r\n\r\n");
        return end == std::string::npos ? std::string() : reply.bytes.substr(end + 4);
    }

    SandboxUnderTest sandbox;
    const std::string url = sandbox.program.serviceUrl();
};

}

TEST_F(SandboxFault, RefuseClosesTheAddressUntilItIsRemoved)
{
    add({ { "kind", "refuse" } });
    EXPECT_EQ(accrue().ending, Ending::refused);
    EXPECT_EQ(sandbox.control.get("/health")["serving"], false);
    const auto faults = sandbox.control.get("/faults");
    EXPECT_EQ(sandbox.control.remove("/faults/" + faults[0]["id"].dump()), 200);
    EXPECT_EQ(sandbox.control.get("/health")["serving"], true);
    EXPECT_EQ(sandbox.program.serviceUrl(), url);
    EXPECT_EQ(bodyOf(accrue()).substr(0, 12), "<s:Envelope ");
}

TEST_F(SandboxFault, SilenceExecutesNothingAndSaysNothing)
{
    add({ { "kind", "silence" }, { "operation", "Accrual" }, { "times", 1 } });
    const RawReply reply = accrue(400ms);
    EXPECT_EQ(reply.ending, Ending::silent);
    EXPECT_EQ(reply.bytes, "");
    EXPECT_FALSE(isExecuted());
    EXPECT_EQ(sandbox.control.get("/requests?operation=Accrual")[0]["outcome"], "not executed");
    EXPECT_EQ(sandbox.control.get("/requests?operation=Accrual")[0]["fault"], "silence");
}

TEST_F(SandboxFault, DelayAnswersLate)
{
    add({ { "kind", "delay" }, { "arg", 300 }, { "times", 1 } });
    const RawReply reply = accrue();
    EXPECT_GE(reply.took, 300ms);
    EXPECT_EQ(reply.bytes.substr(0, 12), "HTTP/1.1 200");
    EXPECT_TRUE(isExecuted());
}

TEST_F(SandboxFault, ResetComesInTheMiddleOfTheReplyOfAnExecutedRequest)
{
    add({ { "kind", "reset" }, { "times", 1 } });
    const RawReply reply = accrue();
    EXPECT_EQ(reply.ending, Ending::reset);
    EXPECT_EQ(reply.bytes.substr(0, 12), "HTTP/1.1 200");
    EXPECT_EQ(reply.bytes.find("</s:Envelope>"), std::string::npos);
    EXPECT_TRUE(isExecuted());
}

TEST_F(SandboxFault, DropExecutesAndEndsWithoutAReply)
{
    add({ { "kind", "drop" }, { "times", 1 } });
    const RawReply reply = accrue();
    EXPECT_EQ(reply.ending, Ending::closed);
    EXPECT_EQ(reply.bytes, "");
    EXPECT_TRUE(isExecuted());
    EXPECT_EQ(sandbox.control.get("/requests?operation=Accrual")[0]["outcome"], "answered");
    EXPECT_EQ(sandbox.control.get("/requests?operation=Accrual")[0]["fault"], "drop");
}

TEST_F(SandboxFault, StatusesExecuteNothing)
{
    for (const char* const status : { "404", "503" }) {
        add({ { "kind", status }, { "operation", "Accrual" }, { "times", 1 } });
        EXPECT_EQ(accrue().bytes.substr(0, 12), std::string("HTTP/1.1 ") + status);
    }
    EXPECT_FALSE(isExecuted());
}

TEST_F(SandboxFault, FaultOnDemandHasItsText)
{
    add({ { "kind", "500" }, { "times", 1 }, { "arg", "Касса <1>: обед" } });
    const RawReply reply = accrue();
    EXPECT_EQ(reply.bytes.substr(0, 12), "HTTP/1.1 500");
    EXPECT_EQ(bodyOf(reply),
              "<s:Envelope xmlns:s=\"http://schemas.xmlsoap.org/soap/envelope/\"><s:Body><s:Fault>"
              "<faultcode>s:Server</faultcode><faultstring xml:lang=\"ru-RU\">Касса &lt;1&gt;: обед</faultstring>"
              "</s:Fault></s:Body></s:Envelope>");
    EXPECT_FALSE(isExecuted());
}

TEST_F(SandboxFault, FaultMayHaveAnotherPrefix)
{
    add({ { "kind", "prefix" }, { "times", 1 } });
    EXPECT_EQ(
        bodyOf(accrue()),
        "<soap:Envelope xmlns:soap=\"http://schemas.xmlsoap.org/soap/envelope/\"><soap:Body><soap:Fault>"
        "<faultcode>soap:Server</faultcode><faultstring xml:lang=\"ru-RU\">Сервис временно недоступен</faultstring>"
        "</soap:Fault></soap:Body></soap:Envelope>");
    add({ { "kind", "prefix" }, { "times", 1 }, { "arg", "SOAP-ENV" } });
    EXPECT_NE(bodyOf(accrue()).find("<SOAP-ENV:Fault>"), std::string::npos);
    EXPECT_FALSE(isExecuted());
}

TEST_F(SandboxFault, TruncatedReplyIsWholeHttpAndHalfXml)
{
    const std::string whole
        = "<s:Envelope xmlns:s=\"http://schemas.xmlsoap.org/soap/envelope/\"><s:Body><PingResponse "
          "xmlns=\"http://tempuri.org/\"><PingResult>true</PingResult></PingResponse></s:Body></s:Envelope>";
    add({ { "kind", "truncated" }, { "times", 1 } });
    const RawReply reply = exchangeRaw(url, rawRequest("Ping", envelope("Ping", "")), 5s);
    EXPECT_EQ(reply.ending, Ending::closed);
    EXPECT_EQ(bodyOf(reply), whole.substr(0, whole.size() / 2));
    EXPECT_NE(reply.bytes.find("Content-Length: " + std::to_string(whole.size() / 2) + "\r\n"), std::string::npos);
}

TEST_F(SandboxFault, NotXmlIsAPage)
{
    add({ { "kind", "not-xml" }, { "times", 1 } });
    const RawReply reply = accrue();
    EXPECT_EQ(reply.bytes.substr(0, 12), "HTTP/1.1 200");
    EXPECT_EQ(bodyOf(reply), "<!DOCTYPE html><html><body><h1>It works!<p>Welcome & enjoy</body></html>");
    EXPECT_TRUE(isExecuted());
}

TEST_F(SandboxFault, GiantReplyHasItsSize)
{
    add({ { "kind", "giant" }, { "times", 1 }, { "arg", 5'000'000 } });
    const std::string body = bodyOf(accrue());
    EXPECT_EQ(body.size(), 5'000'000U);
    EXPECT_TRUE(body.starts_with("<s:Envelope "));
    EXPECT_TRUE(body.ends_with("xxx</Filler></s:Body></s:Envelope>"));
    EXPECT_TRUE(isExecuted());
}

TEST_F(SandboxFault, NestedReplyHasItsDepth)
{
    add({ { "kind", "nested" }, { "times", 1 }, { "arg", 3 } });
    EXPECT_EQ(bodyOf(accrue()),
              "<s:Envelope xmlns:s=\"http://schemas.xmlsoap.org/soap/envelope/\"><s:Body><Filler><n><n><n></n></n></n>"
              "</Filler></s:Body></s:Envelope>");
    EXPECT_TRUE(isExecuted());
    add({ { "kind", "nested" }, { "times", 1 } });
    EXPECT_EQ(bodyOf(accrue()).size(), 700'111U); // 100,000 levels of 7 bytes, and the frame
}

TEST_F(SandboxFault, OtherOperationsAreNotTouched)
{
    add({ { "kind", "503" }, { "operation", "Accrual" } });
    EXPECT_EQ(sandbox.service.result("IsCardValid", card("9000000001")), "true");
    EXPECT_EQ(accrue().bytes.substr(0, 12), "HTTP/1.1 503");
    EXPECT_EQ(accrue().bytes.substr(0, 12), "HTTP/1.1 503");
}

TEST_F(SandboxFault, FaultsAreUsedUpInTheirOrder)
{
    add({ { "kind", "404" }, { "times", 2 } });
    add({ { "kind", "503" }, { "times", 1 } });
    for (const char* const status : { "404", "404", "503", "200" }) {
        EXPECT_EQ(accrue().bytes.substr(0, 12), std::string("HTTP/1.1 ") + status);
    }
    EXPECT_EQ(sandbox.control.get("/faults").size(), 0U);
}
