#include "tests/bonus/bonus_client.h"
#include "tests/support/cheque_service.h"
#include "tests/support/sample_cheque.h"
#include "tests/support/log_recorder.h"

#include <gtest/gtest.h>

namespace {

class CancelSubtraction : public testing::Test {
protected:
    ChequeService service;
    BonusClient client;
    QSharedPointer<till::Cheque> document = sample::cheque(EDocumentType::sale);
    const LogRecorder log;
};

}

TEST_F(CancelSubtraction, SendsCardAmountAndCheque)
{
    sample::addCard(*document);
    service.answer(R"(<CancelSubtractBonusResponse xmlns="http://tempuri.org/"/>)");

    client.cancelSubtractBonus(document, 100.5);

    service.expect("CancelSubtractBonus",
                   "   <tem:discountCardNumber>9000000001</tem:discountCardNumber>\n"
                   "   <tem:amount>100.50</tem:amount>\n"
                       + chequeParameter(sample::openChequeWithCard()));
    EXPECT_EQ(readable(log.lines()), "");
}

TEST_F(CancelSubtraction, ByNumberNeedsNoCardOnTheDocument)
{
    service.answer(R"(<CancelSubtractBonusResponse xmlns="http://tempuri.org/"/>)");

    client.cancelSubtractBonus(document, QStringLiteral("7<8"), 10.129);

    service.expect("CancelSubtractBonus",
                   "   <tem:discountCardNumber>7&lt;8</tem:discountCardNumber>\n"
                   "   <tem:amount>10.13</tem:amount>\n"
                       + chequeParameter(sample::openCheque()));
}

TEST_F(CancelSubtraction, WithoutACardSendsNothing)
{
    EXPECT_EQ(failureOf([&] { client.cancelSubtractBonus(document, 1.0); }),
              "VantiroException vantiroCardNotFound: В документе нет карты Vantiro");

    service.expectNothing();
    EXPECT_EQ(readable(log.lines()), "");
}

// The tag ends in "Response", and there may be more than one; what it holds is not read.
TEST_F(CancelSubtraction, ContentOfTheResponseIsNotRead)
{
    for (const char* const content :
         { "<CancelSubtractBonusResponse/>", "<CancelSubtractBonusResponse>false</CancelSubtractBonusResponse>",
           "<a><CancelSubtractBonusResponse><CancelSubtractBonusResult>false</CancelSubtractBonusResult>"
           "</CancelSubtractBonusResponse></a>",
           "<CancelSubtractBonusResponse/><CancelSubtractBonusResponse/>" }) {
        service.answer(content);
        EXPECT_EQ(failureOf([&] { client.cancelSubtractBonus(document, QStringLiteral("1"), 1.0); }), "nothing")
            << content;
        EXPECT_TRUE(service.take().body.contains("tem:CancelSubtractBonus"));
    }
}

TEST_F(CancelSubtraction, MissingResponseIsRefused)
{
    for (const char* const content :
         { "", "<CancelSubtractBonusResult>true</CancelSubtractBonusResult>",
           R"(<x:CancelSubtractBonusResponse xmlns:x="http://tempuri.org/"/>)", "<cancelSubtractBonusResponse/>" }) {
        service.answer(content);
        EXPECT_EQ(failureOf([&] { client.cancelSubtractBonus(document, QStringLiteral("1"), 1.0); }),
                  failure::incorrectAnswer)
            << content;
        EXPECT_TRUE(service.take().body.contains("tem:CancelSubtractBonus"));
    }
    EXPECT_EQ(readable(log.lines()), "");
}

TEST_F(CancelSubtraction, LostReplyIsNotAskedForAgain)
{
    sample::addCard(*document);
    service.refuse();

    EXPECT_EQ(failureOf([&] { client.cancelSubtractBonus(document, 1.0); }), failure::noConnection);

    EXPECT_TRUE(service.take().body.contains("tem:CancelSubtractBonus"));
    service.expectNothing();
}

TEST_F(CancelSubtraction, FaultPassesThrough)
{
    sample::addCard(*document);
    service.fault("Нет такого списания");

    EXPECT_EQ(failureOf([&] { client.cancelSubtractBonus(document, 1.0); }), failure::fault("Нет такого списания"));

    EXPECT_TRUE(service.take().body.contains("tem:CancelSubtractBonus"));
}

namespace {

/// A client whose operation by number would show if it were called through the class.
class ClientWithOwnCancel : public BonusClient {
public:
    using BonusClient::cancelSubtractBonus;

    void cancelSubtractBonus(const QSharedPointer<AbstractDocument>&, const QString&, double) override
    {
        ADD_FAILURE() << "the operation of the base class is called as the base class has it";
    }
};

}

TEST(CancelSubtractionOverload, CallsTheOperationOfTheBaseClassDirectly)
{
    ChequeService service;
    ClientWithOwnCancel client;
    const auto document = sample::cheque(EDocumentType::sale);
    sample::addCard(*document);
    service.answer("<CancelSubtractBonusResponse/>");

    client.cancelSubtractBonus(document, 1.0);

    EXPECT_TRUE(service.take().body.contains("tem:CancelSubtractBonus"));
}
