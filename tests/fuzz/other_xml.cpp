#include "tests/fuzz/other_xml.h"

#include "tests/fuzz/plain_names.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <algorithm>
#include <memory>

namespace fuzz {

namespace {

    [[nodiscard]] std::string textOf(const xmlChar* text)
    {
        return text == nullptr ? std::string() : reinterpret_cast<const char*>(text);
    }

    /// What the parser tells, as it tells it.
    struct Builder {
        std::vector<XmlElement> open; // from the root to the innermost
        std::optional<XmlElement> root;
        bool hasDocumentType = false;
    };

    /// The context of a parser is what its calls are made with; ours hangs on it.
    [[nodiscard]] Builder& builderOf(void* context)
    {
        return *static_cast<Builder*>(static_cast<xmlParserCtxtPtr>(context)->_private);
    }

    void start(void* context, const xmlChar* name, const xmlChar** attributes)
    {
        XmlElement element;
        element.name = textOf(name);
        for (; attributes != nullptr && *attributes != nullptr; attributes += 2) {
            element.attributes.emplace_back(textOf(attributes[0]), textOf(attributes[1]));
        }
        builderOf(context).open.push_back(std::move(element));
    }

    void end(void* context, const xmlChar*)
    {
        Builder& builder = builderOf(context);
        if (builder.open.empty()) {
            return;
        }
        XmlElement element = std::move(builder.open.back());
        builder.open.pop_back();
        if (builder.open.empty()) {
            builder.root = std::move(element);
        } else {
            builder.open.back().text += element.text;
            builder.open.back().children.push_back(std::move(element));
        }
    }

    void characters(void* context, const xmlChar* text, int size)
    {
        Builder& builder = builderOf(context);
        if (!builder.open.empty()) {
            builder.open.back().text.append(reinterpret_cast<const char*>(text), static_cast<std::size_t>(size));
        }
    }

    void documentType(void* context, const xmlChar*, const xmlChar*, const xmlChar*)
    {
        builderOf(context).hasDocumentType = true;
    }

    void silence(void*, const char*, ...) { }
    void structuredSilence(void*, xmlErrorPtr) { }

    [[nodiscard]] xmlSAXHandler handler()
    {
        xmlSAXHandler calls {}; // of the first version, which leaves names whole
        calls.startElement = start;
        calls.endElement = end;
        calls.characters = characters;
        calls.ignorableWhitespace = characters;
        calls.cdataBlock = characters;
        calls.internalSubset = documentType;
        calls.warning = silence;
        calls.error = silence;
        calls.fatalError = silence;
        calls.serror = structuredSilence;
        return calls;
    }

    using Context = std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)>;

    [[nodiscard]] std::vector<std::pair<std::string, std::string>> comparable(const XmlElement& element)
    {
        std::vector<std::pair<std::string, std::string>> sorted;
        for (const auto& [name, value] : element.attributes) {
            sorted.emplace_back(plainName(name), condensed(value));
        }
        std::ranges::sort(sorted);
        return sorted;
    }

    /// The bytes of the blank that the text begins with, in UTF-8; 0 when it begins with none.
    [[nodiscard]] std::size_t blankAt(std::string_view text)
    {
        static constexpr std::string_view wide[]
            = { "\xC2\x85", "\xC2\xA0", "\xE1\x9A\x80", "\xE2\x80\xA8", "\xE2\x80\xA9", "\xE2\x80\xAF",
                "\xE2\x81\x9F", "\xE3\x80\x80" };
        const char first = text.front();
        if (first == ' ' || first == '\t' || first == '\n' || first == '\r') {
            return 1;
        }
        const auto third = static_cast<unsigned char>(text.size() > 2 ? text[2] : '\0');
        if (text.starts_with("\xE2\x80") && third >= 0x80 && third <= 0x8A) {
            return 3;
        }
        const auto* const found = std::ranges::find_if(wide, [&](auto blank) { return text.starts_with(blank); });
        return found == std::end(wide) ? 0 : found->size();
    }

    void collect(const XmlElement& element, std::string_view name, std::vector<const XmlElement*>& found)
    {
        for (const XmlElement& child : element.children) {
            if (child.name == name) {
                found.push_back(&child);
            }
            collect(child, name, found);
        }
    }

} // namespace

std::optional<std::string> XmlElement::attribute(std::string_view wanted) const
{
    for (const auto& [attributeName, value] : attributes) {
        if (attributeName == wanted) {
            return value;
        }
    }
    return std::nullopt;
}

std::optional<XmlElement> readStrictly(std::string_view text, XmlEncoding encoding)
{
    static xmlSAXHandler calls = handler();
    const Context context(xmlCreateMemoryParserCtxt(text.data(), static_cast<int>(text.size())), xmlFreeParserCtxt);
    if (!context) {
        return std::nullopt; // of no text at all there is none
    }
    Builder builder;
    xmlSAXHandler* const own = context->sax;
    context->sax = &calls;
    context->sax2 = 0;
    context->_private = &builder;
    const int ignoringDeclared = encoding == XmlEncoding::utf8 ? XML_PARSE_IGNORE_ENC : 0;
    // References come decoded, in attributes too; there is no other entity, as there is no document type.
    xmlCtxtUseOptions(context.get(), XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_NOENT | ignoringDeclared);
    xmlParseDocument(context.get());
    context->sax = own; // freed with the context
    if (context->wellFormed == 0 || builder.hasDocumentType) {
        return std::nullopt;
    }
    return std::move(builder.root);
}

std::optional<XmlElement> readOtherwise(std::string_view text, XmlEncoding encoding)
{
    if (std::optional<XmlElement> root = readStrictly(text, encoding)) {
        return root;
    }
    if (encoding == XmlEncoding::fromTheText) {
        if (const std::optional<std::string> converted = fromOtherEncoding(text)) {
            return readStrictly(withPlainNames(*converted), XmlEncoding::utf8); // what it declares no longer holds
        }
    }
    return readStrictly(withPlainNames(text), encoding);
}

std::vector<const XmlElement*> elementsNamed(const XmlElement& root, std::string_view name)
{
    std::vector<const XmlElement*> found;
    if (root.name == name) {
        found.push_back(&root);
    }
    collect(root, name, found);
    return found;
}

std::vector<const XmlElement*> elementsBelow(const XmlElement& element, std::string_view name)
{
    std::vector<const XmlElement*> found;
    collect(element, name, found);
    return found;
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && blankAt(text) > 0) {
        text.remove_prefix(blankAt(text));
    }
    for (std::size_t bytes = 1; bytes <= std::min<std::size_t>(text.size(), 3); ++bytes) {
        if (blankAt(text.substr(text.size() - bytes)) == bytes) {
            text.remove_suffix(bytes);
            bytes = 0; // and once more
        }
    }
    return text;
}

std::string condensed(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        if (const std::size_t blank = blankAt(text); blank > 0) {
            text.remove_prefix(blank);
        } else {
            result += text.front();
            text.remove_prefix(1);
        }
    }
    return result;
}

std::string inAscii(std::string text, char sign)
{
    std::ranges::replace_if(
        text, [](char c) { return static_cast<unsigned char>(c) > 0x7F; }, sign);
    return text;
}

std::string difference(const XmlElement& one, const XmlElement& other)
{
    if (plainName(one.name) != plainName(other.name)) {
        return "the element " + one.name + " against " + other.name;
    }
    if (comparable(one) != comparable(other)) {
        return "the attributes of " + one.name;
    }
    if (condensed(one.text) != condensed(other.text)) {
        return "the text of " + one.name;
    }
    if (one.children.size() != other.children.size()) {
        return "the children of " + one.name;
    }
    for (std::size_t i = 0; i < one.children.size(); ++i) {
        if (std::string found = difference(one.children[i], other.children[i]); !found.empty()) {
            return found;
        }
    }
    return {};
}

} // namespace fuzz
