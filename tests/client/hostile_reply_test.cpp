#include "tests/support/client_under_test.h"
#include "tests/support/log_recorder.h"

#include <gtest/gtest.h>

#include <ctime>
#include <functional>
#include <ostream>

// Replies made to stop a till. Each must end like any other unreadable reply, and soon: the cashier is waiting.

namespace {

QByteArray wide()
{
    return soap::reply("<Answer>" + QByteArray(50'000'000, 'x') + "</Answer>");
}

QByteArray manyElements()
{
    return soap::reply(QByteArray("<a/>").repeated(12'500'000));
}

/// As large as a reply may be.
QByteArray allElements()
{
    return soap::reply(QByteArray("<a/>").repeated(2'090'000));
}

QByteArray allAttributes()
{
    QByteArray element = "<a";
    for (char first = 'a'; first <= 'h'; ++first) {
        for (char second = 'a'; second <= 'h'; ++second) {
            element += QByteArray(" ") + first + second + "=''";
        }
    }
    return soap::reply((element + "/>").repeated(17'000));
}

QByteArray deep()
{
    return soap::reply(QByteArray("<a>").repeated(100'000) + QByteArray("</a>").repeated(100'000));
}

QByteArray deepAndUnclosed()
{
    return QByteArray("<a>").repeated(100'000);
}

QByteArray manyAttributes()
{
    QByteArray element = "<Answer";
    for (int number = 0; number < 50'000; ++number) {
        element += " a" + QByteArray::number(number) + "=\"\"";
    }
    return soap::reply(element + "/>");
}

QByteArray documentType()
{
    return R"(<!DOCTYPE Answer><Answer/>)";
}

QByteArray entityFromAFile()
{
    return R"(<?xml version="1.0"?><!DOCTYPE a [<!ENTITY f SYSTEM "file:///etc/hostname">]><a>&f;</a>)";
}

QByteArray growingEntity()
{
    return "<!DOCTYPE a [<!ENTITY e \"" + QByteArray(4000, 'x') + "\">]><a>" + QByteArray("&e;").repeated(40'000)
        + "</a>";
}

struct Hostile {
    const char* rule;
    QByteArray (*reply)();
};

void PrintTo(const Hostile& row, std::ostream* out)
{
    *out << row.rule;
}

class HostileReply : public testing::TestWithParam<Hostile> { };
class HostileResult : public testing::TestWithParam<Hostile> { };

/// As a text within another XML document.
QByteArray escaped(const QByteArray& xml)
{
    QByteArray text;
    text.reserve(xml.size() * 5);
    for (const char c : xml) {
        if (c == '&') {
            text += "&amp;";
        } else if (c == '<') {
            text += "&lt;";
        } else {
            text += c;
        }
    }
    return text;
}

constexpr double patience = 1.0; // seconds

/// The seconds that the call keeps the processor busy: those on the wall depend on what else the machine does.
double secondsOf(const std::function<void()>& call)
{
    const std::clock_t start = std::clock();
    call();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

const QString beginOfLine = QStringLiteral("error vantiro: Не удалось интерпретировать ответ от сервера([");

}

INSTANTIATE_TEST_SUITE_P(
    Replies, HostileReply,
    testing::Values(Hostile { "FiftyMegabytesOfText", wide }, Hostile { "FiftyMegabytesOfElements", manyElements },
                    Hostile { "EightMegabytesOfElements", allElements },
                    Hostile { "EightMegabytesOfAttributes", allAttributes }, Hostile { "HundredThousandLevels", deep },
                    Hostile { "HundredThousandUnclosedLevels", deepAndUnclosed },
                    Hostile { "FiftyThousandAttributes", manyAttributes }, Hostile { "DocumentType", documentType },
                    Hostile { "EntityFromAFile", entityFromAFile }, Hostile { "GrowingEntity", growingEntity }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(HostileReply, IsRefusedSoon)
{
    const QByteArray reply = GetParam().reply();
    ScriptedRestClient server;
    server.next(RestOutcome::http(200, reply));
    ClientUnderTest client({ QStringLiteral("http://server/") });
    const LogRecorder log;

    std::string failure;
    const double duration = secondsOf([&] { failure = failureOf([&] { (void)client.exchange(); }); });

    EXPECT_EQ(failure, failure::incorrectAnswer);
    EXPECT_LT(duration, patience);
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(log.lines().constFirst().startsWith(beginOfLine)) << readable(log.lines().constFirst().left(300));
    EXPECT_LT(log.lines().constFirst().size(), 1000) << "a hostile reply must not fill the log";
}

// A result is no larger than the reply that it comes in, so its size alone is no further case.
INSTANTIATE_TEST_SUITE_P(Texts, HostileResult,
                         testing::Values(Hostile { "HundredThousandLevels", deep },
                                         Hostile { "HundredThousandUnclosedLevels", deepAndUnclosed },
                                         Hostile { "FiftyThousandAttributes", manyAttributes },
                                         Hostile { "DocumentType", documentType },
                                         Hostile { "EntityFromAFile", entityFromAFile },
                                         Hostile { "GrowingEntity", growingEntity }),
                         [](const auto& row) { return std::string(row.param.rule); });

TEST_P(HostileResult, IsRefusedSoon)
{
    const QByteArray inner = GetParam().reply();
    ScriptedRestClient server;
    server.next(RestOutcome::http(
        200, soap::reply("<GetCardBalanceResult>" + escaped(escaped(inner)) + "</GetCardBalanceResult>")));
    ClientUnderTest client({ QStringLiteral("http://server/") });
    const LogRecorder log;

    std::string failure;
    const double duration
        = secondsOf([&] { failure = failureOf([&] { (void)client.getCardBalance(QStringLiteral("1234567")); }); });

    EXPECT_EQ(failure, failure::incorrectAnswer);
    EXPECT_LT(duration, patience);
    ASSERT_EQ(log.lines().size(), 2);
    EXPECT_TRUE(log.lines().constLast().startsWith(u"error vantiro: Не удалось интерпретировать ответ от сервера("))
        << readable(log.lines().constLast().left(300));
    EXPECT_LT(log.lines().constLast().size(), 1000) << "a hostile reply must not fill the log";
}
