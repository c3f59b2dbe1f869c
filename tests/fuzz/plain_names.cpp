#include "tests/fuzz/plain_names.h"

#include <iconv.h>
#include <strings.h>

#include <algorithm>
#include <array>

namespace fuzz {

namespace {

    [[nodiscard]] bool isBlank(char c)
    {
        return c == ' ' || c == '\t' || c == '\n' || c == '\r';
    }

    [[nodiscard]] bool isLetter(char c)
    {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':';
    }

    [[nodiscard]] bool isNamePart(char c)
    {
        return isLetter(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
    }

    /// Signs that end a name, or stand beside one.
    [[nodiscard]] bool isBorder(char c)
    {
        return isBlank(c) || std::string_view("<>=/\"'&#%;()|+*,").find(c) != std::string_view::npos;
    }

    void appendPlain(std::string& text, char c, bool first)
    {
        constexpr std::string_view digits = "0123456789abcdef";
        if (first ? isLetter(c) : isNamePart(c)) {
            text += c;
            return;
        }
        const auto code = static_cast<unsigned char>(c);
        text += { '_', digits[code >> 4U], digits[code & 15U], '_' };
    }

    class Copy {
    public:
        explicit Copy(std::string_view source)
            : rest(source)
        {
        }

        [[nodiscard]] std::string run()
        {
            while (!rest.empty()) {
                if (rest.starts_with("<!--")) {
                    passTo("-->");
                } else if (rest.starts_with("<![CDATA[")) {
                    passTo("]]>");
                } else if (rest.starts_with("<?")) {
                    pass(2);
                    passNames([this] { return isBlank(rest.front()) || rest.starts_with("?>"); });
                    passTo("?>");
                } else if (rest.starts_with("<")) {
                    pass(1);
                    passNames([this] { return rest.front() == '>'; });
                } else {
                    pass(std::min(rest.find('<'), rest.size()));
                }
            }
            return std::move(copy);
        }

    private:
        void pass(std::size_t size)
        {
            copy += rest.substr(0, size);
            rest.remove_prefix(std::min(size, rest.size()));
        }

        void passTo(std::string_view end)
        {
            const std::size_t at = rest.find(end);
            pass(at == std::string_view::npos ? rest.size() : at + end.size());
        }

        /// Names and whatever stands between them, but for quoted values.
        template <class IsEnd>
        void passNames(IsEnd isEnd)
        {
            bool first = true;
            while (!rest.empty() && !isEnd()) {
                const char c = rest.front();
                if (c == '"' || c == '\'') {
                    pass(1);
                    passTo(std::string_view(&c, 1));
                    first = true;
                } else if (isBorder(c)) {
                    pass(1);
                    first = true;
                } else {
                    appendPlain(copy, c, first);
                    rest.remove_prefix(1);
                    first = false;
                }
            }
        }

        std::string_view rest;
        std::string copy;
    };

    /// The wide encoding that the first bytes tell; null when they tell none.
    [[nodiscard]] const char* wideEncoding(std::string_view text)
    {
        using namespace std::string_view_literals;
        constexpr std::array<std::pair<std::string_view, const char*>, 8> marks { {
            { "\xFF\xFE\0\0"sv, "UTF-32" },
            { "\0\0\xFE\xFF"sv, "UTF-32" },
            { "<\0\0\0"sv, "UTF-32LE" },
            { "\0\0\0<"sv, "UTF-32BE" },
            { "\xFF\xFE"sv, "UTF-16" },
            { "\xFE\xFF"sv, "UTF-16" },
            { "<\0"sv, "UTF-16LE" },
            { "\0<"sv, "UTF-16BE" },
        } };
        const auto* const found
            = std::ranges::find_if(marks, [&](const auto& mark) { return text.starts_with(mark.first); });
        return found == marks.end() ? nullptr : found->second;
    }

    /// The encoding that the declaration names; empty when it names none.
    [[nodiscard]] std::string declaredEncoding(std::string_view text)
    {
        constexpr std::string_view key = "encoding=";
        const std::string_view declaration
            = text.starts_with("<?xml") ? text.substr(0, text.find("?>")) : std::string_view();
        const std::size_t at = declaration.find(key);
        if (at == std::string_view::npos || at + key.size() == declaration.size()) {
            return {};
        }
        const std::string_view value = declaration.substr(at + key.size() + 1);
        return std::string(value.substr(0, value.find(declaration[at + key.size()])));
    }

    /// Empty for UTF-8.
    [[nodiscard]] std::string otherEncoding(std::string_view text)
    {
        if (const char* const wide = wideEncoding(text)) {
            return wide;
        }
        const std::string declared = declaredEncoding(text);
        const bool isUtf8 = declared.empty() || strcasecmp(declared.c_str(), "utf-8") == 0;
        return isUtf8 ? std::string() : declared;
    }

    /// Empty when the bytes do not fit the encoding, or nobody knows it.
    [[nodiscard]] std::string asUtf8(std::string text, const std::string& encoding)
    {
        const iconv_t converter = iconv_open("UTF-8", encoding.c_str());
        if (converter == reinterpret_cast<iconv_t>(-1)) {
            return {};
        }
        std::string result(text.size() * 4 + 4, '\0'); // no sign has more bytes
        char* in = text.data();
        char* out = result.data();
        std::size_t inLeft = text.size();
        std::size_t outLeft = result.size();
        const bool good = iconv(converter, &in, &inLeft, &out, &outLeft) != static_cast<std::size_t>(-1);
        iconv_close(converter);
        result.resize(good ? result.size() - outLeft : 0);
        return result;
    }

} // namespace

std::string plainName(std::string_view name)
{
    std::string plain;
    for (const char c : name) {
        appendPlain(plain, c, plain.empty());
    }
    return plain;
}

std::optional<std::string> fromOtherEncoding(std::string_view text)
{
    const std::string encoding = otherEncoding(text);
    return encoding.empty() ? std::nullopt : std::optional(asUtf8(std::string(text), encoding));
}

std::string withPlainNames(std::string_view text)
{
    return Copy(text).run();
}

} // namespace fuzz
