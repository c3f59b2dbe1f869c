#include "client/exceptions.h"
#include "tests/support/client_under_test.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

// A fault is no lost connection, nor the reverse.
static_assert(std::is_base_of_v<BasicException, VantiroException>);
static_assert(std::is_base_of_v<VantiroException, VantiroNoConnectionException>);
static_assert(std::is_base_of_v<VantiroException, VantiroFaultException>);
static_assert(!std::is_base_of_v<VantiroNoConnectionException, VantiroFaultException>);
static_assert(!std::is_base_of_v<VantiroFaultException, VantiroNoConnectionException>);
static_assert(!std::is_base_of_v<DocumentException, VantiroException>);

// They carry the text and nothing else.
static_assert(sizeof(VantiroException) == sizeof(BasicException));
static_assert(sizeof(VantiroNoConnectionException) == sizeof(BasicException));
static_assert(sizeof(VantiroFaultException) == sizeof(BasicException));

static_assert(std::is_constructible_v<VantiroException, const tr::Tr&>);
static_assert(!std::is_convertible_v<tr::Tr, VantiroException>);
static_assert(!std::is_default_constructible_v<VantiroException>);

/// The branch that a hook takes which tells lost connections from all other failures.
template <class Exception>
std::string branchOf()
{
    try {
        throw Exception(tr::Tr(QStringLiteral("key"), QStringLiteral("текст")));
    } catch (const VantiroNoConnectionException&) {
        return "offline";
    } catch (const VantiroException&) {
        return "refused";
    }
}

}

TEST(Exceptions, OnlyNoConnectionLeadsOffline)
{
    EXPECT_EQ(branchOf<VantiroNoConnectionException>(), "offline");
    EXPECT_EQ(branchOf<VantiroFaultException>(), "refused");
    EXPECT_EQ(branchOf<VantiroException>(), "refused");
}

TEST(Exceptions, KeepKeyAndText)
{
    const VantiroFaultException exception(tr::Tr(QStringLiteral("key"), QStringLiteral("текст %1")));

    EXPECT_EQ(readable(exception.tr().getKey()), "key");
    EXPECT_EQ(readable(exception.tr().ru()), "текст %1");
    EXPECT_STREQ(exception.what(), "текст %1");
}
