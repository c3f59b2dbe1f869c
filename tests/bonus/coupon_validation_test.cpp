#include "tests/support/client_under_test.h"
#include "tests/support/log_recorder.h"

#include <gtest/gtest.h>

namespace {

const char* const started = "info vantiro: Валидация купона на сервере";

class CouponValidation : public testing::Test {
protected:
    /// "valid", "not valid", or what is thrown.
    [[nodiscard]] std::string validate(const QByteArray& content)
    {
        service.answer(content);
        return validateNext();
    }

    [[nodiscard]] std::string validateNext()
    {
        bool valid = false;
        std::string failure = failureOf([&] { valid = client.isCouponValid(QStringLiteral("vantiro-10")); });
        service.expect("IsCouponValid", "   <tem:couponNumber>vantiro-10</tem:couponNumber>\n");
        if (failure != "nothing") {
            return failure;
        }
        return valid ? "valid" : "not valid";
    }

    ScriptedService service;
    ClientUnderTest client { { ScriptedService::address } };
    const LogRecorder log;
};

}

TEST_F(CouponValidation, TrueIsValid)
{
    EXPECT_EQ(validate(R"(<IsCouponValidResponse xmlns="http://tempuri.org/"><IsCouponValidResult>true)"
                       R"(</IsCouponValidResult></IsCouponValidResponse>)"),
              "valid");
    EXPECT_EQ(readable(log.lines()), started);
}

TEST_F(CouponValidation, StartIsLoggedBeforeTheRequest)
{
    service.refuse();

    EXPECT_EQ(validateNext(), failure::noConnection);

    EXPECT_EQ(readable(log.lines()),
              std::string(started) + "\nerror vantiro: Произошла ошибка при выполнении запроса соединение отклонено");
}

TEST_F(CouponValidation, AnyOtherTextIsNotValid)
{
    for (const char* const text : { "false", "True", "TRUE", " true", "true ", "1", "" }) {
        EXPECT_EQ(validate(QByteArray("<IsCouponValidResult>") + text + "</IsCouponValidResult>"), "not valid") << text;
    }
}

TEST_F(CouponValidation, ResultMustStandOnce)
{
    EXPECT_EQ(validate(R"(<IsCouponValidResponse xmlns="http://tempuri.org/"/>)"), failure::incorrectAnswer);
    EXPECT_EQ(
        validate("<IsCouponValidResult>true</IsCouponValidResult><IsCouponValidResult>true</IsCouponValidResult>"),
        failure::incorrectAnswer);
    EXPECT_EQ(readable(log.lines()), std::string(started) + '\n' + started);
}

TEST_F(CouponValidation, NumberIsEscapedOnTheWire)
{
    service.answer("<IsCouponValidResult>true</IsCouponValidResult>");

    EXPECT_TRUE(client.isCouponValid(QStringLiteral("<10>&\"'")));

    service.expect("IsCouponValid", "   <tem:couponNumber>&lt;10>&amp;\"'</tem:couponNumber>\n");
}

TEST_F(CouponValidation, FaultPassesThrough)
{
    service.fault("Отказано");

    EXPECT_EQ(validateNext(), failure::fault("Отказано"));
}
