#include "sandbox/xml_tree.h"

#include "sandbox/refusal.h"
#include "sandbox/xml_check.h"

#include <algorithm>

namespace sandbox {

void parseXml(pugi::xml_document& document, std::string_view text, const std::string& what)
{
    const std::string defect = findXmlDefect(text, {});
    if (!defect.empty()) {
        throw Refusal(what + ": " + defect);
    }
    const pugi::xml_parse_result parsed
        = document.load_buffer(text.data(), text.size(), pugi::parse_default, pugi::encoding_utf8);
    if (!parsed) {
        throw Refusal(what + ": не XML");
    }
}

std::string_view localName(const pugi::xml_node& element)
{
    const std::string_view name = element.name();
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

std::string_view namespaceOf(const pugi::xml_node& element)
{
    const std::string_view name = element.name();
    const std::size_t colon = name.find(':');
    const std::string declaration
        = colon == std::string_view::npos ? "xmlns" : "xmlns:" + std::string(name.substr(0, colon));
    for (pugi::xml_node node = element; node; node = node.parent()) {
        if (const pugi::xml_attribute found = node.attribute(declaration.c_str())) {
            return found.value();
        }
    }
    return {};
}

std::vector<pugi::xml_node> childElements(const pugi::xml_node& element)
{
    std::vector<pugi::xml_node> children;
    for (const pugi::xml_node& child : element.children()) {
        if (child.type() == pugi::node_element) {
            children.push_back(child);
        }
    }
    return children;
}

std::string textOf(const pugi::xml_node& element)
{
    std::string text;
    for (const pugi::xml_node& child : element.children()) {
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) {
            text += child.value();
        }
    }
    return text;
}

std::string canonicalText(const pugi::xml_node& element)
{
    std::vector<std::string> attributes;
    for (const pugi::xml_attribute& attribute : element.attributes()) {
        attributes.push_back(std::string(" ") + attribute.name() + "=\"" + escapedAttribute(attribute.value()) + '"');
    }
    std::ranges::sort(attributes);
    std::string text = std::string("<") + element.name();
    for (const std::string& attribute : attributes) {
        text += attribute;
    }
    text += '>';
    for (const pugi::xml_node& child : element.children()) {
        if (child.type() == pugi::node_element) {
            text += canonicalText(child);
        } else if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) {
            text += escaped(child.value());
        }
    }
    return text + "</" + element.name() + '>';
}

std::string escaped(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    for (const char c : text) {
        switch (c) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '\r':
            result += "&#xD;";
            break;
        default:
            result += c;
        }
    }
    return result;
}

std::string escapedAttribute(std::string_view value)
{
    std::string result;
    for (const char c : escaped(value)) {
        switch (c) {
        case '"':
            result += "&quot;";
            break;
        case '\n':
            result += "&#xA;";
            break;
        case '\t':
            result += "&#x9;";
            break;
        default:
            result += c;
        }
    }
    return result;
}

}
