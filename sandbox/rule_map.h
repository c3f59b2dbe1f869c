#pragma once

#include "sandbox/money.h"

#include <yaml-cpp/yaml.h>

#include <string>
#include <vector>

namespace sandbox {

/// A mapping of the rule file whose keys are all known and stand once. Everything that is read from it is checked, and
/// a mistake is thrown as `RulesMistake` with the file and the line. [any-thread]
class RuleMap {
public:
    /// `what` names the mapping for people. An absent or empty node is an empty mapping.
    RuleMap(std::string fileName, const YAML::Node& source, std::string what, const std::vector<std::string>& keys);

    [[nodiscard]] bool has(const std::string& key) const;

    /// Required, and not empty.
    [[nodiscard]] std::string text(const std::string& key) const;
    [[nodiscard]] std::string text(const std::string& key, const std::string& fallback) const;
    [[nodiscard]] int integer(const std::string& key, int least, int most) const;
    /// A number with up to that many decimals, from 0 to `most`, both in units of the last decimal.
    [[nodiscard]] std::int64_t number(const std::string& key, int decimals, std::int64_t most) const;
    [[nodiscard]] std::int64_t number(const std::string& key, int decimals, std::int64_t most,
                                      std::int64_t fallback) const;
    [[nodiscard]] bool yes(const std::string& key) const; // no when absent
    /// The index of the value among the words; the first when absent.
    [[nodiscard]] std::size_t choice(const std::string& key, const std::vector<std::string>& words) const;
    [[nodiscard]] std::vector<std::string> texts(const std::string& key) const;
    [[nodiscard]] RuleMap map(const std::string& key, const std::vector<std::string>& keys) const;
    [[nodiscard]] std::vector<RuleMap> maps(const std::string& key, const std::string& each,
                                            const std::vector<std::string>& keys) const;

    /// Points at the line of the key, or of the mapping when the key is absent.
    [[noreturn]] void fail(const std::string& key, const std::string& mistake) const;

private:
    [[nodiscard]] YAML::Node value(const std::string& key) const;
    [[noreturn]] void failAt(const YAML::Node& place, const std::string& mistake) const;

    std::string file;
    YAML::Node node;
    std::string name;
};

}
