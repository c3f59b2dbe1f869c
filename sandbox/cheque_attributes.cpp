#include "sandbox/cheque_attributes.h"

#include "sandbox/refusal.h"

#include <charconv>

namespace sandbox {

namespace {

[[noreturn]] void refuse(const pugi::xml_node& element, const char* name, const std::string& what)
{
    throw Refusal(std::string("Неверный чек: ") + what + ' ' + name + " элемента " + element.name());
}

[[nodiscard]] std::int64_t fixedAttribute(const pugi::xml_node& element, const char* name, int decimals)
{
    const auto value = parseFixed(textAttribute(element, name), decimals);
    if (!value) {
        refuse(element, name, "не число в атрибуте");
    }
    return *value;
}

/// A pattern of 0 for a digit, X for an upper-case hexadecimal digit, and every other character for itself.
[[nodiscard]] bool matches(const std::string& text, std::string_view pattern)
{
    if (text.size() != pattern.size()) {
        return false;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isDigit = text[i] >= '0' && text[i] <= '9';
        const bool isHexadecimal = isDigit || (text[i] >= 'A' && text[i] <= 'F');
        const char wanted = pattern[i];
        if (wanted == '0' ? !isDigit : wanted == 'X' ? !isHexadecimal : text[i] != wanted) {
            return false;
        }
    }
    return true;
}

}

std::string textAttribute(const pugi::xml_node& element, const char* name)
{
    const pugi::xml_attribute attribute = element.attribute(name);
    if (!attribute) {
        refuse(element, name, "нет атрибута");
    }
    return attribute.value();
}

Kopecks moneyAttribute(const pugi::xml_node& element, const char* name)
{
    return fixedAttribute(element, name, 2);
}

std::int64_t quantityAttribute(const pugi::xml_node& element, const char* name)
{
    return fixedAttribute(element, name, 3);
}

int integerAttribute(const pugi::xml_node& element, const char* name)
{
    const std::string text = textAttribute(element, name);
    int value = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || rest != text.data() + text.size()) {
        refuse(element, name, "не целое число в атрибуте");
    }
    return value;
}

std::string storedIntegerAttribute(const pugi::xml_node& element, const char* name)
{
    std::string text = textAttribute(element, name);
    if (!text.empty()) {
        static_cast<void>(integerAttribute(element, name));
    }
    return text;
}

bool booleanAttribute(const pugi::xml_node& element, const char* name)
{
    const std::string text = textAttribute(element, name);
    if (text != "true" && text != "false") {
        refuse(element, name, "не true и не false в атрибуте");
    }
    return text == "true";
}

std::string timeAttribute(const pugi::xml_node& element, const char* name)
{
    std::string text = textAttribute(element, name);
    if (!matches(text, "0000-00-00T00:00:00")) {
        refuse(element, name, "не дата и время в атрибуте");
    }
    return text;
}

std::string uidAttribute(const pugi::xml_node& element, const char* name)
{
    std::string text = textAttribute(element, name);
    if (!text.empty() && !matches(text, "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX")) {
        refuse(element, name, "не UUID в атрибуте");
    }
    return text;
}

}
