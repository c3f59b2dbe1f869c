#include "sandbox/xml_check.h"

#include "sandbox/characters.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <vector>

namespace sandbox {

namespace {

class Defect : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class Scanner {
public:
    Scanner(std::string_view source, const XmlLimits& bounds)
        : text(source)
        , limits(bounds)
    {
    }

    void run()
    {
        skipDeclaration();
        while (at < text.size()) {
            if (text[at] == '<') {
                scanMarkup();
            } else {
                scanText();
            }
        }
        if (!open.empty()) {
            throw Defect("не закрыт элемент " + std::string(open.back()));
        }
        if (!hasRoot) {
            throw Defect("нет корневого элемента");
        }
    }

private:
    [[nodiscard]] bool startsWith(std::string_view token) const
    {
        return text.substr(at).starts_with(token);
    }

    std::string_view takeTo(std::string_view end, const char* what)
    {
        const std::size_t found = text.find(end, at);
        if (found == std::string_view::npos) {
            throw Defect(std::string("не закончено: ") + what);
        }
        const std::string_view taken = text.substr(at, found - at);
        at = found + end.size();
        return taken;
    }

    /// The parser that runs afterwards passes over whatever stands there.
    void skipDeclaration()
    {
        if (startsWith("\xef\xbb\xbf")) {
            at += 3;
        }
        if (!startsWith("<?xml") || at + 5 >= text.size() || !isBlank(text[at + 5])) {
            return;
        }
        static constexpr std::string_view parts[] = { "version", "encoding", "standalone" };
        const auto* next = std::begin(parts);
        at += 5;
        for (bool apart = skipBlanks(); !startsWith("?>"); apart = skipBlanks()) {
            const std::string_view name = takeName();
            const auto* const found = std::find(next, std::end(parts), name);
            // The version is required, and stands first.
            if (!apart || found == std::end(parts) || (next == std::begin(parts) && found != next)) {
                throw Defect("неверное объявление XML");
            }
            checkDeclared(name, takeValue());
            next = found + 1;
        }
        if (next == std::begin(parts)) {
            throw Defect("неверное объявление XML");
        }
        at += 2;
    }

    static void checkDeclared(std::string_view name, std::string_view value)
    {
        std::string lower(value);
        std::ranges::transform(lower, lower.begin(),
                               [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
        if (name == "encoding") {
            if (lower != "utf-8") {
                throw Defect("кодировка не UTF-8");
            }
        } else if (name == "version" ? value != "1.0" : value != "yes" && value != "no") {
            throw Defect("неверное объявление XML");
        }
    }

    void scanMarkup()
    {
        if (startsWith("<!--")) {
            at += 4;
            const std::string_view comment = takeTo("-->", "комментарий");
            if (comment.find("--") != std::string_view::npos || comment.ends_with('-')) {
                throw Defect("два дефиса в комментарии");
            }
        } else if (startsWith("<![CDATA[") && !open.empty()) {
            static_cast<void>(takeTo("]]>", "раздел CDATA"));
        } else if (startsWith("<!")) {
            throw Defect("объявление типа документа не допускается");
        } else if (startsWith("<?")) {
            throw Defect("инструкция обработки не допускается");
        } else if (startsWith("</")) {
            at += 2;
            scanEnd();
        } else {
            ++at;
            scanStart();
        }
    }

    std::string_view takeName()
    {
        const std::size_t from = at;
        if (at >= text.size() || !isNameStart(text[at])) {
            throw Defect("ожидалось имя");
        }
        while (at < text.size() && isNamePart(text[at])) {
            ++at;
        }
        return text.substr(from, at - from);
    }

    bool skipBlanks()
    {
        const std::size_t from = at;
        while (at < text.size() && isBlank(text[at])) {
            ++at;
        }
        return at != from;
    }

    void expect(char c)
    {
        if (at >= text.size() || text[at] != c) {
            throw Defect(std::string("ожидался знак ") + c);
        }
        ++at;
    }

    void scanEnd()
    {
        const std::string_view name = takeName();
        if (open.empty() || open.back() != name) {
            throw Defect("лишний конец элемента " + std::string(name));
        }
        open.pop_back();
        skipBlanks();
        expect('>');
    }

    void scanStart()
    {
        if (open.empty() && hasRoot) {
            throw Defect("второй корневой элемент");
        }
        hasRoot = true;
        const std::string_view name = takeName();
        scanAttributes();
        const bool empty = at < text.size() && text[at] == '/';
        if (empty) {
            ++at;
        } else {
            open.push_back(name);
        }
        expect('>');
        if (open.size() > limits.depth) {
            throw Defect("слишком глубокая вложенность");
        }
    }

    void scanAttributes()
    {
        std::vector<std::string_view> names;
        for (bool apart = skipBlanks(); at < text.size() && text[at] != '>' && text[at] != '/'; apart = skipBlanks()) {
            if (!apart) {
                throw Defect("нет пробела перед атрибутом");
            }
            const std::string_view name = takeName();
            if (std::ranges::find(names, name) != names.end()) {
                throw Defect("повторный атрибут " + std::string(name));
            }
            names.push_back(name);
            if (names.size() > limits.attributes) {
                throw Defect("слишком много атрибутов");
            }
            scanValue();
        }
    }

    /// What stands behind a name: an equals sign and a text in quotation marks.
    std::string_view takeValue()
    {
        skipBlanks();
        expect('=');
        skipBlanks();
        if (at >= text.size() || (text[at] != '"' && text[at] != '\'')) {
            throw Defect("значение атрибута без кавычек");
        }
        const std::string_view quote = text.substr(at, 1);
        ++at;
        return takeTo(quote, "значение атрибута");
    }

    void scanValue()
    {
        const std::string_view value = takeValue();
        if (value.find('<') != std::string_view::npos) {
            throw Defect("знак < в значении атрибута");
        }
        checkReferences(value);
    }

    void scanText()
    {
        const std::size_t end = std::min(text.find('<', at), text.size());
        const std::string_view part = text.substr(at, end - at);
        if (open.empty() && !isBlank(part)) {
            throw Defect("текст вне корневого элемента");
        }
        if (part.find("]]>") != std::string_view::npos) {
            throw Defect("знаки ]]> в тексте");
        }
        checkReferences(part);
        at = end;
    }

    static void checkReferences(std::string_view part)
    {
        for (std::size_t i = part.find('&'); i != std::string_view::npos; i = part.find('&', i + 1)) {
            const std::size_t end = part.find(';', i);
            if (end == std::string_view::npos || !isReference(part.substr(i + 1, end - i - 1))) {
                throw Defect("неизвестная ссылка после знака &");
            }
        }
    }

    static bool isReference(std::string_view name)
    {
        static constexpr std::string_view known[] = { "amp", "lt", "gt", "apos", "quot" };
        if (!name.starts_with('#')) {
            return std::ranges::find(known, name) != std::end(known);
        }
        const bool hexadecimal = name.starts_with("#x");
        const std::string_view digits = name.substr(hexadecimal ? 2 : 1);
        std::uint32_t character = 0;
        const auto [rest, error]
            = std::from_chars(digits.data(), digits.data() + digits.size(), character, hexadecimal ? 16 : 10);
        return error == std::errc() && rest == digits.data() + digits.size() && isXmlCharacter(character);
    }

    std::string_view text;
    const XmlLimits& limits;
    std::size_t at = 0;
    bool hasRoot = false;
    std::vector<std::string_view> open;
};

}

std::string findXmlDefect(std::string_view text, const XmlLimits& limits)
{
    if (text.size() > limits.bytes) {
        return "больше " + std::to_string(limits.bytes) + " байт";
    }
    if (!isXmlText(text)) {
        return "недопустимый символ или не UTF-8";
    }
    try {
        Scanner(text, limits).run();
    } catch (const Defect& defect) {
        return defect.what();
    }
    return {};
}

}
