#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace sandbox {

/// Parses a text that comes from outside into the document. Throws `Refusal`, whose text begins with `what`, when it is
/// not well-formed or goes beyond the caps of `XmlLimits`. [any-thread]
void parseXml(pugi::xml_document& document, std::string_view text, const std::string& what);

/// The name without its prefix, and the namespace that the prefix stands for; empty when there is none. [any-thread]
[[nodiscard]] std::string_view localName(const pugi::xml_node& element);
[[nodiscard]] std::string_view namespaceOf(const pugi::xml_node& element);

/// The child elements, in order. [any-thread]
[[nodiscard]] std::vector<pugi::xml_node> childElements(const pugi::xml_node& element);

/// The text of an element, CDATA sections included, child elements left out. [any-thread]
[[nodiscard]] std::string textOf(const pugi::xml_node& element);

/// One form for all texts of the same document: attributes sorted, blank text and comments left out. A till writes
/// attributes in another order after a restart, and sends the same cheque by it. [any-thread]
[[nodiscard]] std::string canonicalText(const pugi::xml_node& element);

/// The text as it is written between tags: markup characters become references, and so does a carriage return, which a
/// reader would drop otherwise. Quotation marks stay, as the service writes them. [any-thread]
[[nodiscard]] std::string escaped(std::string_view text);

/// The same for the value of an attribute in double quotation marks. [any-thread]
[[nodiscard]] std::string escapedAttribute(std::string_view value);

}
