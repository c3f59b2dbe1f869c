#include "tests/walk/model.h"
#include "tests/walk/walked_till.h"
#include "till/facilities/log_setup.h"

#include <QMap>

#include <gtest/gtest.h>

#include <iostream>

using namespace Qt::StringLiterals;

// Hooks, events and moods of the servers in orders that nobody would think of, against the model.
//
// A failure prints the seed, the number of the walk and all its steps up to the one that went wrong. The environment
// says which walks are taken:
//
//     VANTIRO_WALK=number      that walk alone, each step told before it is taken
//     VANTIRO_WALK_SEED=seed   other walks
//     VANTIRO_WALKS=count      fewer, or more
//     VANTIRO_WALK_TOLD=1      each step told before it is taken, and how often each thing has happened

namespace {

constexpr int defaultSeed = 20240305;
constexpr int defaultCount = 2000;
constexpr int longestWalk = 40;

int numberIn(const char* variable, int otherwise)
{
    bool isNumber = false;
    const int number = qEnvironmentVariableIntValue(variable, &isNumber);
    return isNumber ? number : otherwise;
}

/// What a step has done and what it has left.
struct Sight {
    walk::Account account;
    walk::View view;

    bool operator==(const Sight&) const = default;
};

/// The lines that differ, as expected and as seen; empty when all agree.
QString difference(const Sight& expected, const Sight& seen)
{
    if (expected == seen) {
        return {};
    }
    const QStringList left = lines(expected.account) + lines(expected.view);
    const QStringList right = lines(seen.account) + lines(seen.view);
    QStringList differing;
    for (qsizetype i = 0; i < left.size(); ++i) {
        if (left.at(i) != right.at(i)) {
            differing.append(u"  expected "_s + left.at(i) + u"\n  but saw  "_s + right.at(i));
        }
    }
    return differing.join(u'\n');
}

/// Keeps the log off the screen: the walks fail on purpose, time and again.
class QuietLog {
public:
    QuietLog()
    {
        till::setUpLogging({ .console = false });
    }

    ~QuietLog()
    {
        till::setUpLogging({ .threshold = till::LogLevel::warn });
    }

private:
    Q_DISABLE_COPY_MOVE(QuietLog)
};

using Tally = QMap<QString, int>;

/// Takes the walk to its end or to the first step that goes wrong; then the test has failed.
void take(std::uint64_t seed, int number, bool isTold, Tally& tally)
{
    walk::Dice dice(seed, static_cast<std::uint64_t>(number));
    const walk::Setting setting = walk::drawSetting(dice);
    walk::Document first;
    first.identity = u"document-0"_s;
    first.number = 100;
    first.card = walk::Card { u"9000000001"_s, {}, 0.0, 0.0 };
    first.live = { { 1, 179.80 }, { 2, 10.0 } };
    first.currentPosition = 2;

    walk::Model model(setting, first);
    walk::WalkedTill till(setting, first);
    QStringList taken {
        u"seed %1, walk %2 (VANTIRO_WALK_SEED=%1 VANTIRO_WALK=%2 takes it again)"_s.arg(seed).arg(number), told(setting)
    };
    const int length = 10 + dice.below(longestWalk - 10 + 1);
    for (int i = 1; i <= length; ++i) {
        const walk::Step step = walk::drawStep(dice, model.situation());
        Sight expected;
        expected.account = model.run(step);
        expected.view = model.view();
        const QStringList moods = model.moodsTold();
        taken.append(u"%1. %2%3"_s.arg(QString::number(i), told(step),
                                       moods.isEmpty() ? QString() : u"   servers: "_s + moods.join(u' ')));
        if (isTold) {
            std::cout << number << '/' << taken.constLast().toStdString() << std::endl;
        }
        Sight seen;
        seen.account = till.run(step, model.script());
        seen.view = till.view();
        const QString wrong = difference(expected, seen);
        if (!wrong.isEmpty() || testing::Test::HasFailure()) {
            ADD_FAILURE() << taken.join(u'\n').toStdString() << '\n' << wrong.toStdString();
            return;
        }
        ++tally[told(step.act)];
        ++tally[told(step.act) + u": "_s + expected.account.result.section(u',', 0, 0)];
        for (const QString& line : expected.account.told) {
            ++tally[line.section(u':', 0, 0).section(u'=', 0, 0)];
        }
        if (expected.view.stored.offline.value_or(false)) {
            ++tally[u"offline"_s];
        }
    }
}

} // namespace

TEST(Walk, PluginAndModelAgreeAtEachStep)
{
    const auto seed = static_cast<std::uint64_t>(numberIn("VANTIRO_WALK_SEED", defaultSeed));
    const int count = numberIn("VANTIRO_WALKS", defaultCount);
    const int only = numberIn("VANTIRO_WALK", -1);
    const bool isTold = only >= 0 || qEnvironmentVariableIsSet("VANTIRO_WALK_TOLD");
    const QuietLog quiet;
    std::cout << "seed " << seed << ", walks 0 to " << count - 1 << '\n';

    Tally tally;
    for (int number = 0; number < count && !HasFailure(); ++number) {
        if (only < 0 || only == number) {
            take(seed, number, isTold, tally);
        }
    }
    if (only >= 0 || count < defaultCount || HasFailure()) {
        return;
    }

    if (isTold) {
        for (auto it = tally.cbegin(); it != tally.cend(); ++it) {
            std::cout << it.key().toStdString() << ": " << *it << '\n';
        }
    }

    // Walks that never get anywhere would agree as well.
    for (const QString& seen : { u"request: true"_s,
                                 u"request: false"_s,
                                 u"has points: true"_s,
                                 u"has points: false"_s,
                                 u"spend: true"_s,
                                 u"spend: false"_s,
                                 u"roll back: true"_s,
                                 u"roll back: false"_s,
                                 u"commit: true"_s,
                                 u"commit: false"_s,
                                 u"identify card: true"_s,
                                 u"identify card: false"_s,
                                 u"card number: yes"_s,
                                 u"card number: no"_s,
                                 u"add coupon: true"_s,
                                 u"add coupon: false"_s,
                                 u"delete coupon: true"_s,
                                 u"delete coupon: false"_s,
                                 u"bring back"_s,
                                 u"reveal"_s,
                                 u"restart"_s,
                                 u"run the ping: сервер доступен - true"_s,
                                 u"run the ping: сервер доступен - false"_s,
                                 u"coupon off P7"_s,
                                 u"offline"_s,
                                 u"save"_s,
                                 u"event 127 text"_s,
                                 u"event 245"_s,
                                 u"enqueue vantiro OfflineAccrual"_s,
                                 u"print -1"_s,
                                 u"error 0 0 cardExceptionLoyaltyIdentify"_s,
                                 u"message 1 0 0 vantiroNoCoupon"_s,
                                 u"post CancelSubtractBonus"_s,
                                 u"post Ping"_s,
                                 u"spend: throws диск полон"_s }) {
        EXPECT_GE(tally.value(seen), 10) << seen.toStdString();
    }
}
