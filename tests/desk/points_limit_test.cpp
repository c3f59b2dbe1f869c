#include "till/desk/points_limit.h"

#include <gtest/gtest.h>

using till::PointsLimit;

namespace {

[[nodiscard]] std::string told(const PointsLimit& limit)
{
    return till::explained(limit).join(u'\n').toStdString();
}

} // namespace

TEST(PointsLimit, OfTheServiceIsNamed)
{
    EXPECT_EQ(told({ 50.0, 629.8, 500.0, 0.0, 50.0 }),
              "Баллами можно оплатить 50.00, не больше: сервис предлагает 50.00\n"
              "Можно и меньше: 49.00, 48.00, 47.00");
}

TEST(PointsLimit, OfTheChequeIsNamedWithTheStep)
{
    EXPECT_EQ(told({ 100.0, 29.8, 500.0, 0.0, 29.0 }),
              "Баллами можно оплатить 29.00, не больше: баллами можно оплатить в чеке 29.80, шаг списания 1.00\n"
              "Можно и меньше: 28.00, 27.00, 26.00");
}

TEST(PointsLimit, OfTheCardIsNamed)
{
    EXPECT_EQ(told({ 100.0, 629.8, 12.0, 0.0, 12.0 }),
              "Баллами можно оплатить 12.00, не больше: на карте 12.00\n"
              "Можно и меньше: 11.00, 10.00, 9.00");
}

TEST(PointsLimit, OfSeveralAtOnceAreAllNamed)
{
    EXPECT_EQ(told({ 30.0, 30.0, 30.0, 0.0, 30.0 }),
              "Баллами можно оплатить 30.00, не больше: сервис предлагает 30.00, баллами можно оплатить в чеке 30.00, на "
              "карте 30.00\n"
              "Можно и меньше: 29.00, 28.00, 27.00");
}

TEST(PointsLimit, OfATillWithAStepCountsInIt)
{
    EXPECT_EQ(told({ 52.3, 100.0, 500.0, 0.5, 52.0 }),
              "Баллами можно оплатить 52.00, не больше: сервис предлагает 52.30, шаг списания 0.50\n"
              "Можно и меньше: 51.50, 51.00, 50.50");
}

// An amount so near to a multiple of the step that it is taken as it stands.
TEST(PointsLimit, ThatIsNoMultipleOfTheStepHasMultiplesBelow)
{
    EXPECT_EQ(told({ 50.0, 33.01, 500.0, 10.0, 33.01 }),
              "Баллами можно оплатить 33.01, не больше: баллами можно оплатить в чеке 33.01\n"
              "Можно и меньше: 30.00, 20.00, 10.00");
}

TEST(PointsLimit, OfOneStepHasNothingBelow)
{
    EXPECT_EQ(told({ 1.0, 100.0, 500.0, 0.0, 1.0 }),
              "Баллами можно оплатить 1.00, не больше: сервис предлагает 1.00");
}

TEST(PointsLimit, BelowOneStepSaysSo)
{
    EXPECT_EQ(told({ 50.0, 629.8, 0.7, 0.0, 0.0 }), "Баллами не оплатить: на карте 0.70, шаг списания 1.00");
}

TEST(PointsLimit, OfACardInDebtNamesTheDebt)
{
    EXPECT_EQ(told({ 50.0, 629.8, -15.0, 0.0, -15.0 }), "Баллами не оплатить: на карте -15.00");
}
