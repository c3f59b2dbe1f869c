#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace sandbox {

struct XmlLimits {
    std::size_t bytes = 1 << 20;
    std::size_t depth = 64;
    std::size_t attributes = 64; // of one element
};

/// Looks through a text before it is parsed, in one pass: the size, and that it is one well-formed element, in UTF-8,
/// without a document type declaration and without processing instructions, which SOAP forbids in a message. The parser
/// that runs afterwards builds its tree also from much that is not XML. Returns what is wrong, in Russian, or an empty
/// text. [any-thread]
[[nodiscard]] std::string findXmlDefect(std::string_view text, const XmlLimits& limits);

}
