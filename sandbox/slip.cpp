#include "sandbox/slip.h"

#include "sandbox/characters.h"
#include "sandbox/xml_check.h"
#include "sandbox/xml_tree.h"

#include <algorithm>
#include <set>

namespace sandbox {

namespace {

[[nodiscard]] bool isXml(std::string_view text)
{
    const auto first = std::ranges::find_if_not(text, [](char c) { return isBlank(c); });
    return first != text.end() && *first == '<';
}

[[nodiscard]] std::string checkElement(const pugi::xml_node& element, const std::set<std::string>& allowed)
{
    const std::string name = element.name();
    if (!allowed.contains(name)) {
        return '<' + name + "> is no element that may stand there";
    }
    for (const pugi::xml_attribute& attribute : element.attributes()) {
        const std::string key = attribute.name();
        const bool isKnown
            = (name == "pair" && (key == "left" || key == "right")) || (name == "line" && key == "symbols");
        if (!isKnown) {
            return "<" + name + "> has no attribute " + key;
        }
    }
    return {};
}

[[nodiscard]] std::string checkStructure(const pugi::xml_node& root)
{
    static const std::set<std::string> ofSlip { "left",    "right",  "center", "pair", "line", "br",
                                                "barcode", "qrcode", "f0",     "f1",   "f2",   "noformat" };
    static const std::set<std::string> ofBlock { "f0", "f1", "f2" };
    if (std::string_view(root.name()) != "doc") {
        return "its root must be <doc>";
    }
    for (const pugi::xml_node& element : childElements(root)) {
        std::string mistake = checkElement(element, ofSlip);
        const std::string_view name = element.name();
        const bool isBlock = name == "left" || name == "right" || name == "center";
        for (const pugi::xml_node& inner : childElements(element)) {
            if (mistake.empty()) {
                mistake = checkElement(inner, isBlock ? ofBlock : std::set<std::string>());
            }
        }
        if (!mistake.empty()) {
            return mistake;
        }
    }
    return {};
}

[[nodiscard]] std::string checkPlaceholders(const std::string& text, bool withCard)
{
    for (const std::string& name : placeholdersOf(text)) {
        if (std::ranges::find(slipPlaceholders(), name) == slipPlaceholders().end()) {
            return "{" + name + "} is not known";
        }
        if (!withCard && (name == "card" || name == "earned" || name == "spent" || name == "balance")) {
            return "{" + name + "} needs a card";
        }
    }
    return {};
}

}

std::string findSlipMistake(const std::string& text, bool withCard)
{
    if (isXml(text)) {
        if (text.find("&lt;") != std::string::npos) {
            return "the tills' reader cannot take &lt; in a slip";
        }
        if (!findXmlDefect(text, {}).empty()) {
            return "it is not well-formed XML";
        }
        pugi::xml_document document;
        document.load_buffer(text.data(), text.size());
        const std::string mistake = checkStructure(document.document_element());
        if (!mistake.empty()) {
            return mistake;
        }
    }
    return checkPlaceholders(text, withCard);
}

std::string slipText(const std::string& text, const Placeholders& values)
{
    if (!isXml(text)) {
        return filled(text, values);
    }
    Placeholders marked;
    for (const auto& [name, value] : values) {
        marked[name] = escapedAttribute(value);
    }
    std::string serviceLines;
    for (const char c : filled(text, marked)) {
        serviceLines += c == '\n' ? "\r\n" : std::string(1, c);
    }
    return escaped(serviceLines);
}

std::string chequeBarcode(std::string_view chequeNumber)
{
    std::string digits;
    std::ranges::copy_if(chequeNumber, std::back_inserter(digits), [](char c) { return c >= '0' && c <= '9'; });
    digits = digits.size() > 10 ? digits.substr(digits.size() - 10) : std::string(10 - digits.size(), '0') + digits;
    digits.insert(0, "20");
    int sum = 0;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        sum += (digits[i] - '0') * (i % 2 == 0 ? 1 : 3);
    }
    return digits + static_cast<char>('0' + (10 - sum % 10) % 10);
}

}
