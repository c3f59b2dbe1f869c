#include "host/facilities/exceptions.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

using tr::Tr;

static_assert(std::is_base_of_v<std::runtime_error, BasicException>);
static_assert(std::is_base_of_v<BasicException, DocumentException>);
static_assert(std::is_base_of_v<DocumentException, CouponException>);
static_assert(std::is_base_of_v<CouponException, CouponAddException>);

TEST(ExceptionsTest, ExceptionKeepsItsOwnCopyOfTheText)
{
    Tr text(QStringLiteral("key"), QStringLiteral("Нет %1"));
    const BasicException exception(text);
    text.arg(Tr(QStringLiteral("связи")));
    EXPECT_EQ(exception.tr().ru(), QStringLiteral("Нет %1"));
    EXPECT_EQ(exception.tr().getKey(), QStringLiteral("key"));
}

TEST(ExceptionsTest, WhatIsTheFilledTextInUtf8)
{
    const BasicException exception(
        Tr(QStringLiteral("key"), QStringLiteral("Нет %1")).arg(Tr(QStringLiteral("связи"))));
    EXPECT_EQ(std::string(exception.what()), "Нет связи");
}

TEST(ExceptionsTest, EmptyTextGivesEmptyWhat)
{
    EXPECT_EQ(std::string(BasicException(Tr()).what()), "");
}

TEST(ExceptionsTest, AssignmentReplacesTextAndWhat)
{
    BasicException exception(Tr(QStringLiteral("первый")));
    exception = BasicException(Tr(QStringLiteral("второй")));
    EXPECT_EQ(exception.tr().ru(), QStringLiteral("второй"));
    EXPECT_EQ(std::string(exception.what()), "второй");
}

TEST(ExceptionsTest, RecoverableIsWhatTheThrowerSaid)
{
    EXPECT_TRUE(DocumentException(Tr(), true).isRecoverable());
    EXPECT_FALSE(CouponAddException(Tr(), false).isRecoverable());
}

TEST(ExceptionsTest, CouponRefusalIsCaughtAsAnyOfItsBases)
{
    const auto refuse = [] { throw CouponAddException(Tr(QStringLiteral("Купон уже добавлен")), false); };
    EXPECT_THROW(refuse(), CouponException);
    EXPECT_THROW(refuse(), DocumentException);
    EXPECT_THROW(refuse(), std::runtime_error);
    try {
        refuse();
    } catch (const BasicException& exception) {
        EXPECT_EQ(exception.tr().ru(), QStringLiteral("Купон уже добавлен"));
        EXPECT_NE(dynamic_cast<const CouponAddException*>(&exception), nullptr);
        return;
    }
    FAIL() << "not caught by its root";
}
