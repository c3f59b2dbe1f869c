#include "tests/sandbox/cheque_text.h"
#include "tests/sandbox/raw_client.h"
#include "tests/sandbox/sandbox_under_test.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace {

class SandboxHttp : public ::testing::Test {
protected:
    SandboxUnderTest sandbox;
    const std::string url = sandbox.program.serviceUrl();
    httplib::Client client { url.substr(0, url.size() - 1) };
    const std::string ping = envelope("Ping", "");

    [[nodiscard]] nlohmann::json lastRequest() const
    {
        return sandbox.control.get("/requests").back();
    }
};

}

TEST_F(SandboxHttp, WithoutTheCredentialsNobodyIsLetIn)
{
    const std::string action = actionOf("Ping");
    for (const char* const value : { "", "Basic", "Basic Og==", "Basic dGlsbDpzZWNyZXQ=", "Bearer dGlsbDpzZTpjcmV0" }) {
        const auto reply = client.Post("/", { { "SOAPAction", action }, { "Authorization", value } }, ping, "text/xml");
        ASSERT_TRUE(reply) << value;
        EXPECT_EQ(reply->status, 401) << value;
        EXPECT_EQ(reply->get_header_value("WWW-Authenticate"), "Basic realm=\"vantiro-sandbox\", charset=\"UTF-8\"");
    }
    EXPECT_EQ(client.Post("/", { { "SOAPAction", action } }, ping, "text/xml")->status, 401);
    EXPECT_EQ(lastRequest()["outcome"], "rejected");
    EXPECT_EQ(lastRequest()["reason"], "wrong or missing credentials");
}

TEST_F(SandboxHttp, RulesWithoutCredentialsLetEverybodyIn)
{
    const SandboxUnderTest open("cards: []");
    EXPECT_EQ(open.service.post(ping, { { "SOAPAction", actionOf("Ping") } }).status, 200);
    EXPECT_EQ(open.service.call("Ping", "").status, 200);
}

TEST_F(SandboxHttp, OtherMethodsAndPathsAreTurnedAway)
{
    EXPECT_EQ(client.Get("/")->status, 405);
    EXPECT_EQ(client.Get("/")->get_header_value("Allow"), "POST");
    EXPECT_EQ(client.Put("/", ping, "text/xml")->status, 405);
    EXPECT_EQ(client.Patch("/", ping, "text/xml")->status, 405);
    EXPECT_EQ(client.Delete("/")->status, 405);
    EXPECT_EQ(client.Options("/")->status, 405);
    EXPECT_EQ(client.Head("/")->status, 405);
    EXPECT_EQ(client.Get("/wsdl")->status, 404);
    EXPECT_EQ(client.Post("/other", ServiceClient::headers("Ping"), ping, "text/xml")->status, 404);
    EXPECT_EQ(sandbox.control.get("/requests?outcome=rejected").size(), 9U);
}

TEST_F(SandboxHttp, OnlyXmlInUtf8IsTaken)
{
    const auto statusOf
        = [this](const char* type) { return client.Post("/", ServiceClient::headers("Ping"), ping, type)->status; };
    EXPECT_EQ(statusOf("text/xml"), 200);
    EXPECT_EQ(statusOf("text/xml;charset=utf-8"), 200);
    EXPECT_EQ(statusOf("Text/XML; Charset=\"UTF-8\""), 200);
    EXPECT_EQ(statusOf("text/xml; charset=windows-1251"), 415);
    EXPECT_EQ(statusOf("application/soap+xml; charset=utf-8"), 415);
    EXPECT_EQ(statusOf("application/json"), 415);
    EXPECT_EQ(statusOf("multipart/form-data; boundary=x"), 415);
    EXPECT_EQ(statusOf("application/x-www-form-urlencoded"), 415);
    EXPECT_EQ(statusOf(""), 415);
}

TEST_F(SandboxHttp, BodiesAboveTheCapAreTurnedAway)
{
    constexpr std::size_t cap = 1 << 20;
    std::string body = envelope("Ping", "<!---->");
    body.insert(body.find("<!--") + 4, std::string(cap - body.size(), 'x'));
    ASSERT_EQ(body.size(), cap);
    EXPECT_EQ(client.Post("/", ServiceClient::headers("Ping"), body, "text/xml")->status, 200);
    body.insert(body.find("<!--") + 4, "x");
    const auto reply = client.Post("/", ServiceClient::headers("Ping"), body, "text/xml");
    ASSERT_TRUE(reply);
    EXPECT_EQ(reply->status, 413);
    EXPECT_EQ(lastRequest()["reason"], "more than 1048576 bytes");
    EXPECT_EQ(lastRequest()["body"], "");
}

TEST_F(SandboxHttp, BodiesThatUnpackAboveTheCapAreTurnedAway)
{
    client.set_compress(true);
    const std::string body = envelope("Ping", "<!--" + std::string(32 << 20, 'x') + "-->");
    const auto reply = client.Post("/", ServiceClient::headers("Ping"), body, "text/xml");
    ASSERT_TRUE(reply);
    EXPECT_EQ(reply->status, 413);
}

TEST_F(SandboxHttp, LengthIsRequired)
{
    const RawReply reply
        = exchangeRaw(url, "POST / HTTP/1.1\r\nHost: x\r\nContent-Type: text/xml\r\nConnection: close\r\n\r\n", 5s);
    EXPECT_EQ(reply.bytes.substr(0, 12), "HTTP/1.1 411");
}

TEST_F(SandboxHttp, ChunksAreRead)
{
    const auto reply = client.Post(
        "/", ServiceClient::headers("Ping"),
        [this](std::size_t, httplib::DataSink& sink) {
            sink.write(ping.data(), 20);
            sink.write(ping.data() + 20, ping.size() - 20);
            sink.done();
            return true;
        },
        "text/xml");
    ASSERT_TRUE(reply);
    EXPECT_EQ(reply->status, 200);
}

TEST_F(SandboxHttp, HalfARequestIsDropped)
{
    const std::string whole = rawRequest("IsCardValid", envelope("IsCardValid", card("9000000001")));
    EXPECT_EQ(exchangeRaw(url, whole.substr(0, whole.size() - 30), 200ms).bytes, "");
    EXPECT_EQ(sandbox.service.result("IsCardValid", card("9000000001")), "true");
}

TEST_F(SandboxHttp, NoHttpAtAllIsAnsweredAndEnds)
{
    const RawReply reply = exchangeRaw(url, "\x16\x03\x01 hello\r\n\r\n", 5s);
    EXPECT_EQ(reply.ending, Ending::closed);
    EXPECT_EQ(reply.bytes.substr(0, 12), "HTTP/1.1 400");
}

TEST_F(SandboxHttp, ConnectionServesManyRequests)
{
    const std::string request = rawRequest("Ping", ping);
    std::string kept = request;
    kept.replace(kept.find("Connection: close"), 17, "Connection: keep-alive");
    std::string burst;
    for (int i = 0; i < 50; ++i) {
        burst += kept;
    }
    const RawReply reply = exchangeRaw(url, burst + request, 10s);
    EXPECT_EQ(reply.ending, Ending::closed);
    int answers = 0;
    for (std::size_t at = reply.bytes.find("HTTP/1.1 200"); at != std::string::npos;
         at = reply.bytes.find("HTTP/1.1 200", at + 1)) {
        ++answers;
    }
    EXPECT_EQ(answers, 51);
}

TEST_F(SandboxHttp, ManyClientsAreServedBesideSilentOnes)
{
    sandbox.control.post("/faults", { { "kind", "silence" }, { "operation", "Ping" }, { "times", 8 } });
    std::vector<std::thread> silent;
    for (int i = 0; i < 8; ++i) {
        silent.emplace_back(
            [this] { EXPECT_EQ(exchangeRaw(url, rawRequest("Ping", ping), 700ms).ending, Ending::silent); });
    }
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(sandbox.service.result("IsCardValid", card("9000000001")), "true");
    }
    for (std::thread& thread : silent) {
        thread.join();
    }
}

TEST_F(SandboxHttp, EveryRequestIsKeptWithoutItsCredentials)
{
    static_cast<void>(sandbox.service.result("Accrual", closedSale().parameter()));
    const nlohmann::json kept = lastRequest();
    EXPECT_EQ(kept["operation"], "Accrual");
    EXPECT_EQ(kept["uid"], closedSale().uid);
    EXPECT_EQ(kept["outcome"], "answered");
    EXPECT_EQ(kept["status"], 200);
    EXPECT_EQ(kept["server"], "test");
    EXPECT_EQ(kept["body"], envelope("Accrual", closedSale().parameter()));
    EXPECT_EQ(kept["headers"]["SOAPAction"], actionOf("Accrual"));
    EXPECT_EQ(kept["headers"]["Content-Type"], "text/xml; charset=UTF-8");
    EXPECT_FALSE(kept["headers"].contains("Authorization"));
    EXPECT_EQ(kept.dump().find("dGlsbDpzZTpjcmV0"), std::string::npos);
}
