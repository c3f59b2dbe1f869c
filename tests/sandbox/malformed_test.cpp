#include "tests/sandbox/cheque_text.h"
#include "tests/sandbox/sandbox_under_test.h"

#include <gtest/gtest.h>

namespace {

struct BadRequest {
    const char* name;
    std::string body;
    const char* action;
    const char* fault;
};

[[nodiscard]] std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

[[nodiscard]] std::string cardCall()
{
    return envelope("IsCardValid", card("9000000001"));
}

class SandboxMalformed : public ::testing::TestWithParam<BadRequest> { };

std::vector<BadRequest> badRequests()
{
    const std::string good = cardCall();
    const std::string soap11 = "http://schemas.xmlsoap.org/soap/envelope/";
    const std::string parameter = card("9000000001");
    return {
        { "Empty", "", "IsCardValid", "Неверный запрос: нет корневого элемента" },
        { "NotXml", "card=9000000001", "IsCardValid", "Неверный запрос: текст вне корневого элемента" },
        { "CutOff", good.substr(0, good.size() - 10), "IsCardValid",
          "Неверный запрос: лишний конец элемента soapenv:" },
        { "NotUtf8", replaced(good, "9000000001", "\xe9\xf0"), "IsCardValid",
          "Неверный запрос: недопустимый символ или не UTF-8" },
        { "DocumentType", "<!DOCTYPE a [<!ENTITY b \"c\">]>" + good, "IsCardValid",
          "Неверный запрос: объявление типа документа не допускается" },
        { "Entity", replaced(good, "9000000001", "&b;"), "IsCardValid",
          "Неверный запрос: неизвестная ссылка после знака &amp;" },
        { "Soap12", replaced(good, soap11, "http://www.w3.org/2003/05/soap-envelope"), "IsCardValid",
          "Неверный запрос: корневой элемент не Envelope версии SOAP 1.1" },
        { "NoNamespace", replaced(good, "xmlns:soapenv", "xmlns:other"), "IsCardValid",
          "Неверный запрос: корневой элемент не Envelope версии SOAP 1.1" },
        { "NoBody", "<e:Envelope xmlns:e=\"" + soap11 + "\"/>", "IsCardValid",
          "Неверный запрос: в Envelope нет единственного Body" },
        { "TwoBodies", "<e:Envelope xmlns:e=\"" + soap11 + "\"><e:Body/><e:Body/></e:Envelope>", "IsCardValid",
          "Неверный запрос: в Envelope нет единственного Body" },
        { "EmptyBody", "<e:Envelope xmlns:e=\"" + soap11 + "\"><e:Body/></e:Envelope>", "IsCardValid",
          "Неверный запрос: в Body нет единственной операции" },
        { "TwoOperations", replaced(good, "</soapenv:Body>", "<tem:Ping/></soapenv:Body>"), "IsCardValid",
          "Неверный запрос: в Body нет единственной операции" },
        { "UnknownOperation", envelope("SubtractBonus", ""), "SubtractBonus",
          "Неверный запрос: неизвестная операция tem:SubtractBonus" },
        { "OtherNamespace", replaced(good, "http://tempuri.org/", "http://tempuri.org"), "IsCardValid",
          "Неверный запрос: неизвестная операция tem:IsCardValid" },
        { "OtherAction", good, "GetCardBalance", "Неверный запрос: SOAPAction не соответствует операции IsCardValid" },
        { "NoParameter", envelope("IsCardValid", ""), "IsCardValid",
          "Неверный запрос: нет параметра discountCardNumber" },
        { "RepeatedParameter", envelope("IsCardValid", parameter + parameter), "IsCardValid",
          "Неверный запрос: повторный параметр discountCardNumber" },
        { "UnknownParameter", envelope("IsCardValid", "<tem:cardNumber/>" + parameter), "IsCardValid",
          "Неверный запрос: неизвестный параметр tem:cardNumber" },
        { "ParameterWithoutNamespace", envelope("IsCardValid", "<discountCardNumber>9</discountCardNumber>"),
          "IsCardValid", "Неверный запрос: неизвестный параметр discountCardNumber" },
        { "ParameterOfPing", envelope("Ping", parameter), "Ping",
          "Неверный запрос: неизвестный параметр tem:discountCardNumber" },
        { "ElementInParameter", envelope("IsCardValid", card("<b/>")), "IsCardValid",
          "Неверный запрос: вложенный элемент в параметре discountCardNumber" },
        { "OtherOrder", envelope("GetCardDiscountAmount", ChequeText().parameter() + parameter),
          "GetCardDiscountAmount", "Неверный запрос: ожидался параметр discountCardNumber" },
        { "NoAmount", envelope("SubtractBonus45", parameter + ChequeText().parameter()), "SubtractBonus45",
          "Неверный запрос: ожидался параметр amount" },
        { "NoCheque", envelope("Accrual", ""), "Accrual", "Неверный запрос: нет параметра cheque" },
    };
}

}

TEST_P(SandboxMalformed, IsRefusedAndKept)
{
    const SandboxUnderTest sandbox;
    const Reply reply = sandbox.service.post(GetParam().body, ServiceClient::headers(GetParam().action));
    EXPECT_EQ(reply.status, 500);
    EXPECT_EQ(reply.body,
              "<s:Envelope xmlns:s=\"http://schemas.xmlsoap.org/soap/envelope/\"><s:Body><s:Fault>"
              "<faultcode>s:Client</faultcode><faultstring xml:lang=\"ru-RU\">"
                  + std::string(GetParam().fault) + "</faultstring></s:Fault></s:Body></s:Envelope>");
    const nlohmann::json requests = sandbox.control.get("/requests");
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests[0]["outcome"], "refused");
    EXPECT_EQ(requests[0]["status"], 500);
}

INSTANTIATE_TEST_SUITE_P(Requests, SandboxMalformed, ::testing::ValuesIn(badRequests()),
                         [](const auto& row) { return row.param.name; });

TEST(SandboxRequest, ActionMayBeQuotedButNotAbsent)
{
    const SandboxUnderTest sandbox;
    httplib::Headers headers = ServiceClient::headers("IsCardValid");
    headers.erase("SOAPAction");
    EXPECT_EQ(sandbox.service.post(cardCall(), headers).status, 500);
    headers.emplace("SOAPAction", "\"http://tempuri.org/IVantiroService/IsCardValid\"");
    EXPECT_EQ(sandbox.service.post(cardCall(), headers).status, 200);
}

TEST(SandboxRequest, PrefixesHeaderAndBlanksDoNotMatter)
{
    const SandboxUnderTest sandbox;
    const Reply reply = sandbox.service.post(
        "<?xml version=\"1.0\" encoding=\"utf-8\"?><x:Envelope "
        "xmlns:x=\"http://schemas.xmlsoap.org/soap/envelope/\"><x:Header><any/></x:Header> <x:Body>"
        "<IsCardValid xmlns=\"http://tempuri.org/\"><discountCardNumber>9000<![CDATA[000001]]></discountCardNumber>"
        "</IsCardValid></x:Body></x:Envelope>",
        ServiceClient::headers("IsCardValid"));
    EXPECT_EQ(reply.status, 200);
    EXPECT_NE(reply.body.find("<IsCardValidResult>true</IsCardValidResult>"), std::string::npos);
}

namespace {

struct BadCheque {
    const char* name;
    std::string xml;
    const char* fault;
};

[[nodiscard]] std::vector<BadCheque> badCheques()
{
    const std::string good = closedSale().xml();
    const auto with = [&good](const std::string& from, const std::string& to) { return replaced(good, from, to); };
    return {
        { "Empty", "", "Неверный чек: нет корневого элемента" },
        { "NotClosed", with("</Cheque>", ""), "Неверный чек: не закрыт элемент Cheque" },
        { "DocumentType", with("<Cheque ", "<!DOCTYPE Cheque><Cheque "),
          "Неверный чек: объявление типа документа не допускается" },
        { "OtherRoot", "<Check/>", "Неверный чек: корневой элемент не Cheque" },
        { "NoUid", with(" ChequeUID=\"11116E73-1C03-5DE6-9130-5F9925AE8AB4\"", ""),
          "Неверный чек: нет атрибута ChequeUID элемента Cheque" },
        { "LowerCaseUid", with("11116E73", "11116e73"), "Неверный чек: не UUID в атрибуте ChequeUID элемента Cheque" },
        { "BracedUid", with("\"11116E73-1C03-5DE6-9130-5F9925AE8AB4\"", "\"{11116E73-1C03-5DE6-9130-5F9925AE8AB4}\""),
          "Неверный чек: не UUID в атрибуте ChequeUID элемента Cheque" },
        { "NoNumber", with(" ChequeNo=\"1042\"", ""), "Неверный чек: нет атрибута ChequeNo элемента Cheque" },
        { "NumberNoNumber", with("ChequeNo=\"1042\"", "ChequeNo=\"A\""),
          "Неверный чек: не целое число в атрибуте ChequeNo элемента Cheque" },
        { "NoAmount", with(" Amount=\"100.00\"", ""), "Неверный чек: нет атрибута Amount элемента Cheque" },
        { "AmountWithComma", with(" Amount=\"100.00\"", " Amount=\"100,00\""),
          "Неверный чек: не число в атрибуте Amount элемента Cheque" },
        { "AmountWithoutKopecks", with(" Amount=\"100.00\"", " Amount=\"100\""),
          "Неверный чек: не число в атрибуте Amount элемента Cheque" },
        { "AmountBeyondAll", with(" Amount=\"100.00\"", " Amount=\"100000000000000000000.00\""),
          "Неверный чек: не число в атрибуте Amount элемента Cheque" },
        { "NoOpenTime", with("OpenTime=\"2024-03-05T14:07:09\"", ""),
          "Неверный чек: нет атрибута OpenTime элемента Cheque" },
        { "TimeWithZone", with("2024-03-05T14:07:09\"", "2024-03-05T14:07:09Z\""),
          "Неверный чек: не дата и время в атрибуте OpenTime элемента Cheque" },
        { "UnknownType", with("ChequeType=\"Sale\"", "ChequeType=\"sale\""), "Неверный чек: неизвестный ChequeType" },
        { "UnknownStatus", with("Status=\"Closed\"", "Status=\"Cancelled\""), "Неверный чек: неизвестный Status" },
        { "CardWithoutNumber", with(" DiscountCardNo=\"9000000001\"", ""),
          "Неверный чек: нет атрибута DiscountCardNo элемента DiscountCard" },
        { "TwoCards",
          with("<ChequeLines>",
               "<DiscountCard SubtractAmount=\"0.00\" DiscountCardNo=\"9\" BonusCard=\"true\"/><ChequeLines>"),
          "Неверный чек: две карты" },
        { "NoLines", replaced(replaced(good, "<ChequeLines>", "<Lines>"), "</ChequeLines>", "</Lines>"),
          "Неверный чек: в элементе Cheque нет единственного ChequeLines" },
        { "TwoDiscounts", with("<Discounts/>", "<Discounts/><Discounts/>"),
          "Неверный чек: в элементе Cheque нет единственного Discounts" },
        { "LineWithoutItem", with("<Item ItemID=\"2001\" Barcode=\"\"/>", ""),
          "Неверный чек: в элементе ChequeLine нет единственного Item" },
        { "FlagNoFlag", with("NoPayBonus=\"false\"", "NoPayBonus=\"0\""),
          "Неверный чек: не true и не false в атрибуте NoPayBonus элемента ChequeLine" },
        { "QuantityTwoDecimals", with("Quantity=\"1.000\"", "Quantity=\"1.00\""),
          "Неверный чек: не число в атрибуте Quantity элемента ChequeLine" },
        { "RepeatedLine", with("<ChequeLines>", "<ChequeLines>" + LineText().xml()),
          "Неверный чек: повторный ChequeLineNo" },
        { "CouponWithoutNumber", with("</Cheque>", "<Coupon/></Cheque>"),
          "Неверный чек: нет атрибута CouponNo элемента Coupon" },
        { "ControlCharacter",
          with("2001",
               "20\x02"
               "01"),
          "Неверный запрос: недопустимый символ или не UTF-8" },
    };
}

class SandboxBadCheque : public ::testing::TestWithParam<BadCheque> { };

}

TEST_P(SandboxBadCheque, IsRefusedAndNotApplied)
{
    const SandboxUnderTest sandbox;
    EXPECT_EQ(sandbox.service.refusal("Accrual", chequeParameter(GetParam().xml)), GetParam().fault);
    EXPECT_EQ(sandbox.control.get("/books")["cheques"].size(), 0U);
    EXPECT_EQ(sandbox.control.get("/books")["entries"].size(), 0U);
    EXPECT_EQ(sandbox.service.balance("9000000001"), "500.00");
}

INSTANTIATE_TEST_SUITE_P(Cheques, SandboxBadCheque, ::testing::ValuesIn(badCheques()),
                         [](const auto& row) { return row.param.name; });
