#include "tests/doctor/doctor_support.h"
#include "till/program/doctor_config.h"

#include <QFile>

#include <gmock/gmock.h>

using namespace vantiro_test;
using testing::HasSubstr;
using testing::Not;

namespace {

struct Row {
    const char* name;
    QByteArray content;
    std::string lines;
};

class DoctorConfigFile : public testing::TestWithParam<Row> { };

TEST_P(DoctorConfigFile, Tells)
{
    const ConfigFile config(GetParam().content);
    EXPECT_EQ(config.fileLines(), "ok      The configuration is PATH.\n" + GetParam().lines);
}

INSTANTIATE_TEST_SUITE_P(
    Files, DoctorConfigFile,
    testing::Values(
        Row { "SoundFile", "[Vantiro]\nhosts=https://a/\ntimeout=3\n",
              "ok      [Vantiro] sets hosts, timeout; everything else has its default.\n" },
        Row { "EveryKnownNameIsKnown",
              "[Vantiro]\nhosts=a\ntimeout=1\nuser=u\npassword=p\nnoBonusForMinprice=1\n"
              "forbidDiscountForDiscountedPosition=no\ncheckCouponPrefix=a\ncheckCouponMask=b\npositionCouponPrefix=c\n"
              "positionCouponMask=d\nrestoreLoyaltyState=no\n",
              "ok      [Vantiro] sets hosts, timeout, user, password, noBonusForMinprice, "
              "forbidDiscountForDiscountedPosition, checkCouponPrefix, checkCouponMask, positionCouponPrefix, "
              "positionCouponMask, restoreLoyaltyState; everything else has its default.\n" },
        Row { "EmptyFile", "", "warning Nothing is set in [Vantiro], so all defaults hold; set at least hosts.\n" },
        Row { "RemarksAndOtherSectionsAreNoFindings", "# a\n; b\n\n[Scale]\nport=2\n[Vantiro]\nhosts=a\n",
              "ok      [Vantiro] sets hosts; everything else has its default.\n" },
        Row {
            "ServersNotSet", "[Vantiro]\ntimeout=3\n",
            "ok      [Vantiro] sets timeout; everything else has its default.\n"
            "warning hosts is not set, so the service is looked for at http://127.0.0.1/; set hosts in [Vantiro].\n" },
        Row { "MissingLetter", "[Vantiro]\nhosts=a\nhost=b\n",
              "ok      [Vantiro] sets hosts; everything else has its default.\n"
              "warning Line 3 sets an unknown name \"host\" in [Vantiro], which has no effect; \"hosts\" was probably "
              "meant.\n" },
        Row { "CaseOfLettersCounts", "[Vantiro]\nhosts=a\nTimeOut=2\n",
              "ok      [Vantiro] sets hosts; everything else has its default.\n"
              "warning Line 3 sets an unknown name \"TimeOut\" in [Vantiro], which has no effect; \"timeout\" was "
              "probably "
              "meant.\n" },
        Row { "ExchangedLetters", "[Vantiro]\nhosts=a\npasswrod=secret\n",
              "ok      [Vantiro] sets hosts; everything else has its default.\n"
              "warning Line 3 sets an unknown name \"passwrod\" in [Vantiro], which has no effect; \"password\" was "
              "probably meant.\n" },
        Row { "NameLikeNoOther", "[Vantiro]\nhosts=a\nretries=3\n",
              "ok      [Vantiro] sets hosts; everything else has its default.\n"
              "warning Line 3 sets an unknown name \"retries\" in [Vantiro], which has no effect; remove it or correct "
              "it.\n" },
        Row { "NameThatMayBeASecretIsNotShown", "[Vantiro]\nhosts=a\npassword: hun=ter2\nc2VjcmV0=\n",
              "ok      [Vantiro] sets hosts; everything else has its default.\n"
              "warning Line 3 sets an unknown name in [Vantiro], which has no effect; remove it or correct it.\n"
              "warning Line 4 sets an unknown name in [Vantiro], which has no effect; remove it or correct it.\n" },
        Row { "NameTwice", "[Vantiro]\nhosts=a\nhosts=b\n",
              "ok      [Vantiro] sets hosts; everything else has its default.\n"
              "warning Line 3 sets \"hosts\" once more, and only the last one counts; remove the others.\n" },
        Row { "SectionInOtherLetters", "[vantiro]\nhosts=a\n",
              "warning Line 1 begins the section [vantiro], which nobody reads; write [Vantiro].\n"
              "warning Nothing is set in [Vantiro], so all defaults hold; set at least hosts.\n" },
        Row { "SectionMistyped", "[Vantrio]\nhosts=a\n",
              "warning Line 1 begins the section [Vantrio], which nobody reads; write [Vantiro].\n"
              "warning Nothing is set in [Vantiro], so all defaults hold; set at least hosts.\n" },
        Row { "EveryNameOfTheTillIsKnown", "[Vantiro]\nhosts=a\n[Till]\nshift=2\nslips=/s\ndeliveryTimeout=9\n",
              "ok      [Vantiro] sets hosts; everything else has its default.\n" },
        Row { "UnknownNameOfTheTill", "[Vantiro]\nhosts=a\n[Till]\nslip=/s\n",
              "ok      [Vantiro] sets hosts; everything else has its default.\n"
              "warning Line 4 sets an unknown name \"slip\" in [Till], which has no effect; \"slips\" was probably "
              "meant.\n" },
        Row { "NameOfTheTillTwice", "[Vantiro]\nhosts=a\n[Till]\nshift=1\nshift=2\n",
              "ok      [Vantiro] sets hosts; everything else has its default.\n"
              "warning Line 5 sets \"shift\" once more, and only the last one counts; remove the others.\n" },
        Row { "SectionOfTheTillMistyped", "[Vantiro]\nhosts=a\n[till]\nshift=2\n",
              "warning Line 3 begins the section [till], which nobody reads; write [Till].\n"
              "ok      [Vantiro] sets hosts; everything else has its default.\n" },
        Row { "NameAboveTheSections", "hosts=a\n[Vantiro]\nhosts=b\n",
              "warning Line 1 stands above the first section and has no effect; put it below [Vantiro].\n"
              "ok      [Vantiro] sets hosts; everything else has its default.\n" },
        Row { "LineWithoutEqualsSign", "[Vantiro]\nhosts=a\nhunter2\n",
              "warning Line 3 is not understood and has no effect; write NAME=VALUE below [Vantiro], in UTF-8.\n"
              "ok      [Vantiro] sets hosts; everything else has its default.\n" },
        Row { "ValueInAnotherEncoding", "[Vantiro]\nhosts=a\nuser=\xCA\xE0\xF1\xF1\xE0\n",
              "warning Line 3 is not understood and has no effect; write NAME=VALUE below [Vantiro], in UTF-8.\n"
              "ok      [Vantiro] sets hosts; everything else has its default.\n" },
        Row { "AllBelowADamagedHead", "[Vantiro\nhosts=a\n",
              "warning Line 1 is not understood and has no effect; write NAME=VALUE below [Vantiro], in UTF-8.\n"
              "warning Line 2 is not understood and has no effect; write NAME=VALUE below [Vantiro], in UTF-8.\n"
              "warning Nothing is set in [Vantiro], so all defaults hold; set at least hosts.\n" },
        Row { "MarkOfUtf8IsNoPartOfTheHead", "\xEF\xBB\xBF[Vantiro]\r\nhosts=a\r\n",
              "ok      [Vantiro] sets hosts; everything else has its default.\n" }),
    [](const testing::TestParamInfo<Row>& row) { return row.param.name; });

TEST(DoctorConfigPlace, MissingFileThatWasNamedFails)
{
    EXPECT_EQ(linesOf(till::diagnosis::checkConfigFile(QStringLiteral("/nowhere/till.ini"), true)),
              "FAILED  There is no configuration /nowhere/till.ini; make it, or name another with --config FILE.\n");
}

TEST(DoctorConfigPlace, MissingFileThatNobodyNamedLeavesTheDefaults)
{
    EXPECT_EQ(
        linesOf(till::diagnosis::checkConfigFile(QStringLiteral("/nowhere/till.ini"), false)),
        "warning There is no configuration /nowhere/till.ini, so all defaults hold; make it, with [Vantiro] and hosts "
        "in it.\n");
}

TEST(DoctorConfigPlace, FolderIsNoConfiguration)
{
    EXPECT_EQ(
        linesOf(till::diagnosis::checkConfigFile(QStringLiteral("/"), true)),
        "FAILED  The configuration / cannot be read (it is no file); give this user the right to read it, or name "
        "another with --config FILE.\n");
}

TEST(DoctorConfigPlace, PasswordThatOthersCanReadIsAWarning)
{
    const ConfigFile config("[Vantiro]\nhosts=a\nuser=till\npassword=hunter2\n");
    EXPECT_THAT(config.fileLines(), Not(HasSubstr("warning")));
    ASSERT_TRUE(QFile::setPermissions(config.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
    EXPECT_THAT(
        config.fileLines(),
        HasSubstr("warning Every user of this machine can read the password in PATH; close it with chmod 600.\n"));
}

TEST(DoctorConfigPlace, WithoutAPasswordAllMayRead)
{
    const ConfigFile config("[Vantiro]\nhosts=a\npassword=\n");
    ASSERT_TRUE(QFile::setPermissions(config.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
    EXPECT_THAT(config.fileLines(), Not(HasSubstr("warning")));
}

}
