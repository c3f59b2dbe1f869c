#include "tests/support/client_under_test.h"
#include "tests/support/scripted_config.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

struct Credentials {
    const char* rule;
    QString user;
    QString password;
    const char* header;
};

void PrintTo(const Credentials& row, std::ostream* out)
{
    *out << readable(row.user) << " and " << readable(row.password);
}

class Authorization : public testing::TestWithParam<Credentials> { };

}

// The password goes into the place that is marked lowest once the user stands in the text: markers in a user's name are
// taken for places, and those in a password are not.
INSTANTIATE_TEST_SUITE_P(
    Credentials, Authorization,
    testing::Values(
        Credentials { "NoneIsALoneColon", QString(), QString(), "Basic Og==" },
        Credentials { "UserAndPassword", QStringLiteral("till"), QStringLiteral("secret"), "Basic dGlsbDpzZWNyZXQ=" },
        Credentials { "UserAlone", QStringLiteral("till"), QString(), "Basic dGlsbDo=" },
        Credentials { "PasswordAlone", QString(), QStringLiteral("secret"), "Basic OnNlY3JldA==" },
        Credentials { "Cyrillic", QStringLiteral("кассир"), QStringLiteral("пароль"),
                      "Basic 0LrQsNGB0YHQuNGAOtC/0LDRgNC+0LvRjA==" },
        Credentials { "ColonsStay", QStringLiteral("a:b"), QStringLiteral("c:d"), "Basic YTpiOmM6ZA==" },
        Credentials { "BlanksStay", QStringLiteral("till"), QStringLiteral("p w"), "Basic dGlsbDpwIHc=" },
        // a%1b:%2, then apwb:%2
        Credentials { "FirstMarkerInUserTakesPassword", QStringLiteral("a%1b"), QStringLiteral("pw"),
                      "Basic YXB3YjolMg==" },
        // a%2b:%2, then apwb:pw
        Credentials { "SecondMarkerInUserTakesPasswordToo", QStringLiteral("a%2b"), QStringLiteral("pw"),
                      "Basic YXB3Yjpwdw==" },
        Credentials { "HigherMarkerInUserStays", QStringLiteral("%3"), QStringLiteral("pw"), "Basic JTM6cHc=" },
        Credentials { "PerCentInUserStays", QStringLiteral("100%"), QStringLiteral("pw"), "Basic MTAwJTpwdw==" },
        Credentials { "MarkersInPasswordStay", QStringLiteral("till"), QStringLiteral("%1%2"), "Basic dGlsbDolMSUy" },
        Credentials { "LongOnesStayOnOneLine", QString(60, QLatin1Char('u')), QString(60, QLatin1Char('p')),
                      "Basic dXV1dXV1dXV1dXV1dXV1dXV1dXV1dXV1dXV1dXV1dXV1dXV1dXV1dXV1dXV1dXV1dXV1dXV1dXV1dX"
                      "V1OnBwcHBwcHBwcHBwcHBwcHBwcHBwcHBwcHBwcHBwcHBwcHBwcHBwcHBwcHBwcHBwcHBwcHBwcHBwcHBwcA==" }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(Authorization, IsEncoded)
{
    ScriptedConfig config;
    config.set(QStringLiteral("Vantiro:user"), GetParam().user);
    config.set(QStringLiteral("Vantiro:password"), GetParam().password);
    ClientUnderTest client({});

    client.initialize();

    EXPECT_EQ(readable(client.authorizationHeader), GetParam().header);
}
