#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// XML as another parser reads it, one that shares nothing with the parsers of the product.
namespace fuzz {

/// An element with names as they are written; namespaces are attributes like others. A value.
struct XmlElement {
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes; // as they stand
    std::string text; // all that stands within it, also within its children, CDATA sections included
    std::vector<XmlElement> children;

    /// The value; nothing when there is no such attribute.
    [[nodiscard]] std::optional<std::string> attribute(std::string_view wanted) const;
};

/// Where the encoding of a text is told.
enum class XmlEncoding {
    fromTheText, // by its first bytes and its declaration
    utf8, // whatever its declaration says
};

/// The root of a text that is well-formed and declares no document type; nothing for any other one.
[[nodiscard]] std::optional<XmlElement> readStrictly(std::string_view text, XmlEncoding encoding);
/// The same, but names with signs that only the product's parser takes are no fault, and come out as `plainName` writes
/// them.
[[nodiscard]] std::optional<XmlElement> readOtherwise(std::string_view text, XmlEncoding encoding);

/// All elements of that name in the order of their start tags, the element itself among them or not.
[[nodiscard]] std::vector<const XmlElement*> elementsNamed(const XmlElement& root, std::string_view name);
[[nodiscard]] std::vector<const XmlElement*> elementsBelow(const XmlElement& element, std::string_view name);

/// The text without white space, that of Unicode included: parsers keep more or less of what stands between tags.
[[nodiscard]] std::string condensed(std::string_view text);

/// The text without the blanks that it begins and ends with, those of Unicode included.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// The same text with the sign for every byte beyond ASCII, for texts in a charset that nobody has told of.
[[nodiscard]] std::string inAscii(std::string text, char sign = '_');

/// Whether both hold the same elements with the same names, attributes and texts, white space left out and attributes
/// in any order. Empty when they do; else what differs first.
[[nodiscard]] std::string difference(const XmlElement& one, const XmlElement& other);

} // namespace fuzz
