#pragma once

#include "sandbox/money.h"

#include <pugixml.hpp>
#include <string>

/// Required attributes of a cheque. All throw `Refusal` naming the element and the attribute when it is absent or not
/// of its form.
namespace sandbox {

[[nodiscard]] std::string textAttribute(const pugi::xml_node& element, const char* name);
[[nodiscard]] Kopecks moneyAttribute(const pugi::xml_node& element, const char* name);
[[nodiscard]] std::int64_t quantityAttribute(const pugi::xml_node& element, const char* name); // thousandths
[[nodiscard]] int integerAttribute(const pugi::xml_node& element, const char* name);
[[nodiscard]] std::string storedIntegerAttribute(const pugi::xml_node& element, const char* name); // may be empty
[[nodiscard]] bool booleanAttribute(const pugi::xml_node& element, const char* name);
[[nodiscard]] std::string timeAttribute(const pugi::xml_node& element, const char* name);
[[nodiscard]] std::string uidAttribute(const pugi::xml_node& element, const char* name); // may be empty

}
