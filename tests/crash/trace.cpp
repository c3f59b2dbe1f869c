#include "tests/crash/kill_points.h"

#include <algorithm>
#include <cstdio>

namespace crash {

namespace {

[[nodiscard]] std::size_t indexOf(Lane lane)
{
    return static_cast<std::size_t>(lane);
}

const std::string sending = "send ";
const std::string commit = "ftruncate till.sqlite-journal"; // without its journal, what was written stands

} // namespace

void Trace::clear()
{
    for (std::atomic<int>& count : counts) {
        count = 0;
    }
}

int Trace::add(Lane lane, const char* name)
{
    const int number = ++counts[indexOf(lane)];
    if (number <= most) {
        Name& text = texts[indexOf(lane)][static_cast<std::size_t>(number - 1)];
        std::snprintf(text.data(), text.size(), "%s", name);
    }
    return number;
}

int Trace::count(Lane lane) const
{
    return counts[indexOf(lane)];
}

std::string Trace::name(Lane lane, int number) const
{
    if (number < 1 || number > std::min(count(lane), most)) {
        return {};
    }
    return texts[indexOf(lane)][static_cast<std::size_t>(number - 1)].data();
}

std::string Trace::unsavedOperationAt(const KillPoint& point) const
{
    for (int number = point.number; number > 0; --number) {
        const std::string text = name(point.lane, number);
        const bool isDone = number < point.number || point.side == Side::after;
        if (isDone && text == commit) {
            return {};
        }
        if (text.starts_with(sending)) {
            const std::size_t blank = text.find(' ', sending.size());
            return text.substr(sending.size(), blank - sending.size());
        }
    }
    return {};
}

std::string Trace::names(int upTo) const
{
    std::string all;
    for (int number = 1; number <= upTo; ++number) {
        all += name(Lane::cheque, number) + '\n';
    }
    return all;
}

} // namespace crash
