#include "sandbox/placeholders.h"

#include <algorithm>

namespace sandbox {

namespace {

[[nodiscard]] bool isName(std::string_view text)
{
    return !text.empty() && std::ranges::all_of(text, [](char c) { return (c >= 'a' && c <= 'z') || c == '-'; });
}

/// Calls `plain` and `name` with the pieces of the text, in order.
template <typename Plain, typename Name>
void walk(std::string_view text, Plain plain, Name name)
{
    std::size_t from = 0;
    for (std::size_t open = text.find('{'); open != std::string_view::npos; open = text.find('{', open + 1)) {
        const std::size_t close = text.find('}', open);
        if (close == std::string_view::npos) {
            break;
        }
        const std::string_view inner = text.substr(open + 1, close - open - 1);
        if (isName(inner)) {
            plain(text.substr(from, open - from));
            name(inner);
            from = close + 1;
        }
    }
    plain(text.substr(from));
}

}

std::vector<std::string> placeholdersOf(std::string_view text)
{
    std::vector<std::string> names;
    walk(
        text, [](std::string_view) {}, [&names](std::string_view name) { names.emplace_back(name); });
    return names;
}

std::string filled(std::string_view text, const Placeholders& values)
{
    std::string result;
    walk(
        text, [&result](std::string_view plain) { result += plain; },
        [&](std::string_view name) {
            const auto value = values.find(name);
            result += value == values.end() ? '{' + std::string(name) + '}' : value->second;
        });
    return result;
}

const std::vector<std::string>& messagePlaceholders()
{
    static const std::vector<std::string> names { "amount", "card", "balance" };
    return names;
}

const std::vector<std::string>& slipPlaceholders()
{
    static const std::vector<std::string> names { "cheque", "shift",  "time",  "uid",     "amount",
                                                  "card",   "earned", "spent", "balance", "barcode" };
    return names;
}

}
