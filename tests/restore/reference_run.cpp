#include "tests/restore/reference_run.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string>

namespace {

/// From shortly before the place on.
[[nodiscard]] std::string from(const QString& line, qsizetype place)
{
    return line.mid(std::max<qsizetype>(0, place - 80), 240).toStdString();
}

}

LoyaltyService& serviceOf(const Road& road)
{
    static std::map<std::string, std::unique_ptr<LoyaltyService>> services;
    std::unique_ptr<LoyaltyService>& service = services[road.name];
    if (!service) {
        service = std::make_unique<LoyaltyService>();
        if (road.discountsLost) {
            service->loseDiscounts();
        }
    }
    return *service;
}

const LifeOfACheque& undisturbed(const Road& road)
{
    static std::map<std::string, LifeOfACheque> runs;
    const auto [run, isNew] = runs.try_emplace(road.name);
    if (isNew) {
        LoyaltyService& service = serviceOf(road);
        const qsizetype first = service.count();
        TillOnDisk till(service, QString::fromLatin1(road.settings));
        run->second.lines = till.toTheEnd(QString::fromLatin1(road.name), 0);
        run->second.requests = service.requestsFrom(first);
    }
    return run->second;
}

QStringList withoutHead(QStringList lines, int step)
{
    EXPECT_EQ(lines.value(0).toStdString(), "resumed after " + std::to_string(step));
    lines.removeFirst();
    return lines;
}

testing::AssertionResult sameLines(const QStringList& actual, const QStringList& expected)
{
    const auto [was, should] = std::ranges::mismatch(actual, expected);
    if (was == actual.cend() && should == expected.cend()) {
        return testing::AssertionSuccess();
    }
    const QString wasLine = was == actual.cend() ? QStringLiteral("(nothing more)") : *was;
    const QString shouldLine = should == expected.cend() ? QStringLiteral("(nothing more)") : *should;
    const qsizetype place = std::ranges::mismatch(wasLine, shouldLine).in1 - wasLine.cbegin();
    return testing::AssertionFailure() << "line " << was - actual.cbegin() << " is\n  " << from(wasLine, place)
                                       << "\nand should be\n  " << from(shouldLine, place);
}
