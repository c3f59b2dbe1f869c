#pragma once

#include "tests/restore/child_run.h"

#include <gtest/gtest.h>

/// A road through the life of a cheque, and the till that takes it.
struct Road {
    const char* name;
    const char* testName;
    const char* settings; // of the plug-in
    int steps;
    bool discountsLost; // requests for discounts are answered by something in between
};

/// The whole life of a sale, set aside and brought back on its way.
inline constexpr Road saleRoad { "sale", "Sale", "restoreLoyaltyState=true", 23, false };

/// What a till does that nobody kills.
struct LifeOfACheque {
    QStringList lines;
    QStringList requests;
};

/// The service of all runs on the road, and the run that nothing has disturbed, made at first use.
[[nodiscard]] LoyaltyService& serviceOf(const Road& road);
[[nodiscard]] const LifeOfACheque& undisturbed(const Road& road);

/// The lines of a process that goes on behind that step, but for the first, which says so.
[[nodiscard]] QStringList withoutHead(QStringList lines, int step);

/// Success when both lists are the same; else tells the first line that differs, from shortly before the difference.
[[nodiscard]] testing::AssertionResult sameLines(const QStringList& actual, const QStringList& expected);
