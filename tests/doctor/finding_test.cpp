#include "till/program/doctor_finding.h"

#include <gtest/gtest.h>

using namespace till::diagnosis;
using namespace Qt::StringLiterals;

namespace {

TEST(DoctorFinding, LineBeginsWithItsVerdict)
{
    EXPECT_EQ(lineOf(ok(u"All is well."_s)).toStdString(), "ok      All is well.");
    EXPECT_EQ(lineOf(warning(u"Look at this."_s)).toStdString(), "warning Look at this.");
    EXPECT_EQ(lineOf(failed(u"Mend this."_s)).toStdString(), "FAILED  Mend this.");
}

TEST(DoctorFinding, WhatServersSayNeitherEndsTheLineNorSteersTheTerminal)
{
    const Finding finding = failed(u"a\nFAILED b\r\x1B[2J\u2028\u202Ec\u0085."_s);
    EXPECT_EQ(lineOf(finding).toStdString(), "FAILED  a FAILED b  [2J  c .");
}

TEST(DoctorFinding, LettersBeyondAsciiStay)
{
    EXPECT_EQ(lineOf(ok(u"Касса \U0001F600"_s)).toStdString(), "ok      Касса \U0001F600");
}

TEST(DoctorFinding, OneIsCountedInTheSingular)
{
    EXPECT_EQ(counted(0, u"day"_s).toStdString(), "0 days");
    EXPECT_EQ(counted(1, u"day"_s).toStdString(), "1 day");
    EXPECT_EQ(counted(2, u"day"_s).toStdString(), "2 days");
    EXPECT_EQ(counted(-1, u"day"_s).toStdString(), "-1 days");
}

}
