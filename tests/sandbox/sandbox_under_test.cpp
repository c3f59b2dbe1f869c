#include "tests/sandbox/sandbox_under_test.h"

#include <gtest/gtest.h>

std::string testRules()
{
    return R"(
credentials:
  user: till
  password: "se:cret"
cards:
  - number: "9000000001"
    phone: "+7 (999) 000-00-01"
    code: "1234"
    balance: 500.00
  - number: "9000000002"
    balance: 10
  - number: "9000000666"
    phone: "+79990000666"
    code: "6666"
    balance: 100.00
    blocked: yes
discounts:
  - id: 11
    place: line
    percent: 10
    card: required
    items: ["1001"]
  - id: 12
    place: cheque
    percent: 3
    card: required
    from: 1000.00
coupons:
  - number: vantiro-10
    id: 21
    place: cheque
    percent: 10
  - number: line-15
    id: 22
    place: line
    percent: 15
  - number: vantiro-old
    refused: yes
points:
  payable: 50
  per-rouble: 0.05
  step: 0.01
  rounding: down
messages:
  - device: 2
    card: required
    text: 'Карта {card}: {balance} "баллов" & <скидки>'
  - device: 1
    card: absent
    from: 300.00
    text: "Сумма {amount}"
slip:
  with-card: "<doc><pair left=\"{cheque}/{shift}\" right=\"{amount}\"/><f0>{earned} {spent} {balance} &amp; {card}</f0></doc>"
  without-card: "Чек {cheque} на {amount} & <без карты>"
)";
}

std::string envelope(const std::string& operation, const std::string& parameters)
{
    return "<soapenv:Envelope xmlns:soapenv=\"http://schemas.xmlsoap.org/soap/envelope/\" "
           "xmlns:tem=\"http://tempuri.org/\">\n <soapenv:Body>\n  <tem:"
        + operation + ">\n   " + parameters + "\n  </tem:" + operation + ">\n </soapenv:Body>\n</soapenv:Envelope>\n";
}

std::string actionOf(const std::string& operation)
{
    return "http://tempuri.org/IVantiroService/" + operation;
}

std::string card(const std::string& number)
{
    return "<tem:discountCardNumber>" + number + "</tem:discountCardNumber>";
}

std::string amount(const std::string& sum)
{
    return "<tem:amount>" + sum + "</tem:amount>";
}

ServiceClient::ServiceClient(std::string serviceUrl)
    : url(std::move(serviceUrl))
{
    url.pop_back(); // the client adds the path
}

httplib::Headers ServiceClient::headers(const std::string& operation)
{
    // till:se:cret
    return { { "SOAPAction", actionOf(operation) }, { "Authorization", "Basic dGlsbDpzZTpjcmV0" } };
}

Reply ServiceClient::post(const std::string& body, const httplib::Headers& headers) const
{
    httplib::Client client(url);
    client.set_read_timeout(30);
    const httplib::Result result = client.Post("/", headers, body, "text/xml; charset=UTF-8");
    return result ? Reply { result->status, result->body } : Reply {};
}

Reply ServiceClient::call(const std::string& operation, const std::string& parameters) const
{
    return post(envelope(operation, parameters), headers(operation));
}

std::string ServiceClient::result(const std::string& operation, const std::string& parameters) const
{
    const Reply reply = call(operation, parameters);
    const std::string head = "<s:Envelope xmlns:s=\"http://schemas.xmlsoap.org/soap/envelope/\"><s:Body><" + operation
        + "Response xmlns=\"http://tempuri.org/\"><" + operation + "Result>";
    const std::string tail = "</" + operation + "Result></" + operation + "Response></s:Body></s:Envelope>";
    if (reply.status != 200 || !reply.body.starts_with(head) || !reply.body.ends_with(tail)) {
        ADD_FAILURE() << operation << " gave " << reply.status << ": " << reply.body;
        return {};
    }
    return reply.body.substr(head.size(), reply.body.size() - head.size() - tail.size());
}

std::string ServiceClient::refusal(const std::string& operation, const std::string& parameters) const
{
    const Reply reply = call(operation, parameters);
    const std::string head = "<s:Envelope xmlns:s=\"http://schemas.xmlsoap.org/soap/envelope/\"><s:Body><s:Fault>"
                             "<faultcode>s:Client</faultcode><faultstring xml:lang=\"ru-RU\">";
    const std::string tail = "</faultstring></s:Fault></s:Body></s:Envelope>";
    if (reply.status != 500 || !reply.body.starts_with(head) || !reply.body.ends_with(tail)) {
        ADD_FAILURE() << operation << " gave " << reply.status << ": " << reply.body;
        return {};
    }
    return reply.body.substr(head.size(), reply.body.size() - head.size() - tail.size());
}

std::string ServiceClient::balance(const std::string& number) const
{
    const std::string text = result("GetCardBalance", card(number));
    const std::string head = "&lt;Card&gt;&lt;Balance Value=\"";
    const std::string tail = "\"/&gt;&lt;/Card&gt;";
    EXPECT_TRUE(text.starts_with(head) && text.ends_with(tail)) << text;
    return text.size() < head.size() + tail.size() ? text
                                                   : text.substr(head.size(), text.size() - head.size() - tail.size());
}

ControlClient::ControlClient(std::string controlUrl)
    : url(std::move(controlUrl))
{
    url.pop_back();
}

nlohmann::json ControlClient::get(const std::string& path) const
{
    httplib::Client client(url);
    const httplib::Result result = client.Get(path);
    return result ? nlohmann::json::parse(result->body) : nlohmann::json();
}

nlohmann::json ControlClient::post(const std::string& path, const nlohmann::json& body) const
{
    httplib::Client client(url);
    const httplib::Result result = client.Post(path, body.dump(), "application/json");
    nlohmann::json answer = result ? nlohmann::json::parse(result->body) : nlohmann::json::object();
    answer["status"] = result ? result->status : 0;
    return answer;
}

nlohmann::json ControlClient::remove(const std::string& path) const
{
    httplib::Client client(url);
    const httplib::Result result = client.Delete(path);
    return result ? result->status : 0;
}

nlohmann::json ControlClient::cheque(const std::string& uid) const
{
    const nlohmann::json books = get("/books");
    for (const nlohmann::json& cheque : books["cheques"]) {
        if (cheque["uid"] == uid) {
            return cheque;
        }
    }
    return {};
}

bool ControlClient::waitForRequest() const
{
    for (int attempt = 0; attempt < 500; ++attempt) {
        if (!get("/requests").empty()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

SandboxUnderTest::SandboxUnderTest(const std::string& rules, const std::filesystem::path& state,
                                   const std::string& name)
    : program(options(rules, state, name), nullptr, [] {})
    , service(program.serviceUrl())
    , control(program.controlUrl())
{
}

sandbox::Options SandboxUnderTest::options(const std::string& rules, const std::filesystem::path& state,
                                           const std::string& name)
{
    static const TemporaryFolder folder;
    sandbox::Options options;
    options.rules = folder.write("rules.yaml", rules);
    options.state = state;
    options.name = name;
    return options;
}
