#include "tests/doctor/doctor_support.h"
#include "till/program/doctor_soap.h"

#include <gtest/gtest.h>

using namespace till::diagnosis;
using namespace vantiro_test;

namespace {

struct Row {
    const char* name;
    QByteArray body;
    SoapReply reply;
};

class DoctorSoap : public testing::TestWithParam<Row> { };

TEST_P(DoctorSoap, IsTold)
{
    EXPECT_EQ(soapReplyOf(GetParam().body), GetParam().reply);
}

INSTANTIATE_TEST_SUITE_P(
    Replies, DoctorSoap,
    testing::Values(
        Row { "Answer", soapMessage("<PingResponse/>"), SoapReply::answer },
        Row { "AnswerWithoutContent", soapMessage(""), SoapReply::answer },
        Row { "AnswerWithAnotherPrefix",
              "<?xml version=\"1.0\"?><e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Header/>"
              "<e:Body><a/></e:Body></e:Envelope>",
              SoapReply::answer },
        Row { "Fault", soapMessage("<s:Fault><faultstring>no</faultstring></s:Fault>"), SoapReply::fault },
        Row { "FaultWithAnotherPrefix",
              "<soap:Envelope xmlns:soap=\"http://schemas.xmlsoap.org/soap/envelope/\"><soap:Body><soap:Fault/>"
              "</soap:Body></soap:Envelope>",
              SoapReply::foreignFault },
        Row { "FaultThatIsOnlyAName", soapMessage("<Fault/>"), SoapReply::answer },
        Row { "Nothing", "", SoapReply::none }, Row { "Page", "<html><body>s:Envelope</body></html>", SoapReply::none },
        Row { "NoXml", "404 page not found", SoapReply::none },
        Row { "CutOff", soapMessage("<PingResponse/>").chopped(5), SoapReply::none },
        Row { "EnvelopeWithoutBody", "<s:Envelope xmlns:s=\"http://schemas.xmlsoap.org/soap/envelope/\"/>",
              SoapReply::none },
        Row { "EnvelopeOfAnotherVersion",
              "<s:Envelope xmlns:s=\"http://www.w3.org/2003/05/soap-envelope\"><s:Body/></s:Envelope>",
              SoapReply::none },
        Row { "DocumentType", "<!DOCTYPE a>" + soapMessage("<PingResponse/>"), SoapReply::none }),
    [](const testing::TestParamInfo<Row>& row) { return row.param.name; });

}
