#include "sandbox/rule_map.h"

#include "sandbox/rules.h"

#include <algorithm>

namespace sandbox {

namespace {

[[nodiscard]] std::string listed(const std::vector<std::string>& words)
{
    std::string list;
    for (const std::string& word : words) {
        list += (list.empty() ? "" : ", ") + word;
    }
    return list;
}

[[nodiscard]] std::string numberText(std::int64_t value, int decimals)
{
    std::string text = std::to_string(value);
    const auto places = static_cast<std::size_t>(decimals);
    if (text.size() <= places) {
        text.insert(0, places + 1 - text.size(), '0');
    }
    if (places > 0) {
        text.insert(text.size() - places, ".");
        text.erase(text.find_last_not_of('0') + 1);
        text.erase(text.find_last_not_of('.') + 1);
    }
    return text;
}

}

RuleMap::RuleMap(std::string fileName, const YAML::Node& source, std::string what, const std::vector<std::string>& keys)
    : file(std::move(fileName))
    , node(source.IsDefined() && !source.IsNull() ? source : YAML::Node(YAML::NodeType::Map))
    , name(std::move(what))
{
    if (!node.IsMap()) {
        failAt(node, name + " must hold \"key: value\" lines: " + listed(keys));
    }
    std::vector<std::string> seen;
    for (const auto& entry : node) {
        const std::string key = entry.first.IsScalar() ? entry.first.Scalar() : std::string();
        if (std::ranges::find(keys, key) == keys.end()) {
            failAt(entry.first, name + " has no key \"" + key + "\"; known are " + listed(keys));
        }
        if (std::ranges::find(seen, key) != seen.end()) {
            failAt(entry.first, "\"" + key + "\" stands twice in " + name + "; keep one of them");
        }
        seen.push_back(key);
    }
}

bool RuleMap::has(const std::string& key) const
{
    const YAML::Node found = value(key);
    return found.IsDefined() && !found.IsNull();
}

std::string RuleMap::text(const std::string& key) const
{
    if (!has(key)) {
        fail(key, name + " needs \"" + key + "\"");
    }
    if (!value(key).IsScalar() || value(key).Scalar().empty()) {
        fail(key, "\"" + key + "\" must be a text that is not empty");
    }
    return value(key).Scalar();
}

std::string RuleMap::text(const std::string& key, const std::string& fallback) const
{
    return has(key) ? text(key) : fallback;
}

int RuleMap::integer(const std::string& key, int least, int most) const
{
    const auto number = parseDecimal(text(key), 0);
    if (!number || *number < least || *number > most) {
        fail(key,
             "\"" + key + "\" must be a whole number from " + std::to_string(least) + " to " + std::to_string(most)
                 + ", but is \"" + text(key) + "\"");
    }
    return static_cast<int>(*number);
}

std::int64_t RuleMap::number(const std::string& key, int decimals, std::int64_t most) const
{
    const auto number = parseDecimal(text(key), decimals);
    if (!number || *number < 0 || *number > most) {
        fail(key,
             "\"" + key + "\" must be a number from 0 to " + numberText(most, decimals) + " with at most "
                 + std::to_string(decimals) + " decimals, but is \"" + text(key) + "\"");
    }
    return *number;
}

std::int64_t RuleMap::number(const std::string& key, int decimals, std::int64_t most, std::int64_t fallback) const
{
    return has(key) ? number(key, decimals, most) : fallback;
}

bool RuleMap::yes(const std::string& key) const
{
    return choice(key, { "no", "yes" }) == 1;
}

std::size_t RuleMap::choice(const std::string& key, const std::vector<std::string>& words) const
{
    const std::string chosen = text(key, words.front());
    const auto found = std::ranges::find(words, chosen);
    if (found == words.end()) {
        fail(key, "\"" + key + "\" must be one of " + listed(words) + ", but is \"" + chosen + "\"");
    }
    return static_cast<std::size_t>(found - words.begin());
}

std::vector<std::string> RuleMap::texts(const std::string& key) const
{
    std::vector<std::string> list;
    if (!has(key)) {
        return list;
    }
    const YAML::Node found = value(key);
    if (!found.IsSequence()) {
        fail(key, "\"" + key + "\" must be a list, as in [\"1001\", \"1002\"]");
    }
    for (const auto& item : found) {
        if (!item.IsScalar() || item.Scalar().empty()) {
            fail(key, "\"" + key + "\" must hold texts that are not empty");
        }
        list.push_back(item.Scalar());
    }
    return list;
}

RuleMap RuleMap::map(const std::string& key, const std::vector<std::string>& keys) const
{
    return { file, value(key), "\"" + key + "\"", keys };
}

std::vector<RuleMap> RuleMap::maps(const std::string& key, const std::string& each,
                                   const std::vector<std::string>& keys) const
{
    std::vector<RuleMap> list;
    if (!has(key)) {
        return list;
    }
    const YAML::Node found = value(key);
    if (!found.IsSequence()) {
        fail(key, "\"" + key + "\" must be a list, each entry beginning with \"-\"");
    }
    for (const auto& item : found) {
        list.emplace_back(file, item, each, keys);
    }
    return list;
}

void RuleMap::fail(const std::string& key, const std::string& mistake) const
{
    failAt(has(key) ? value(key) : node, mistake);
}

YAML::Node RuleMap::value(const std::string& key) const
{
    const YAML::Node& constant = node; // the other operator[] would insert the key
    return constant[key];
}

void RuleMap::failAt(const YAML::Node& place, const std::string& mistake) const
{
    const int line = place.IsDefined() ? place.Mark().line : -1;
    throw RulesMistake(file + (line >= 0 ? ':' + std::to_string(line + 1) : std::string()) + ": " + mistake);
}

}
