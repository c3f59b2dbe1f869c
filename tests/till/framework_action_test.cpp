#include "host/framework/action.h"

#include <gtest/gtest.h>

namespace {

const QString number = QStringLiteral("couponNumber");

TEST(Action, IsEmptyAtFirst)
{
    EXPECT_EQ(control::Action().value(number, QVariant(1)), QVariant(1));
}

TEST(Action, ArgumentIsAddedOrReplaced)
{
    control::Action action;
    control::Action& returned = action.appendArgument(QVariant(5), number).appendArgument(QVariant(6), number);

    EXPECT_EQ(&returned, &action);
    EXPECT_EQ(action.value(number, QVariant()), QVariant(6));
}

TEST(Action, CopiesShareTheirArguments)
{
    control::Action sender;
    sender.appendArgument(QVariant(5), number);
    const control::Action handled = sender;
    handled.insert(QStringLiteral("pingTask"), QVariant(7));
    handled.insert(number, QVariant(6));

    EXPECT_EQ(sender.value(QStringLiteral("pingTask"), QVariant()), QVariant(7));
    EXPECT_EQ(sender.value(number, QVariant()), QVariant(6));
}

TEST(Action, ActionsAreApart)
{
    const control::Action first;
    const control::Action second;
    first.insert(number, QVariant(5));

    EXPECT_FALSE(second.value(number, QVariant()).isValid());
}

}
