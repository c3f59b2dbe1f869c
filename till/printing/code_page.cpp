#include "till/printing/code_page.h"

#include <QChar>
#include <QList>
#include <QSet>

#include <optional>
#include <string_view>

namespace till {

namespace {

    // An own table: a general codec looks for substitutes of its own, and here every character that is not printed as
    // it stands must be found.
    constexpr std::u16string_view upperHalf = u"АБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ"
                                              u"абвгдежзийклмноп"
                                              u"░▒▓│┤╡╢╖╕╣║╗╝╜╛┐└┴┬├─┼╞╟╚╔╩╦╠═╬╧╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀"
                                              u"рстуфхцчшщъыьэюя"
                                              u"ЁёЄєЇїЎў°∙·√№¤■\u00A0";
    static_assert(upperHalf.size() == 128);

    [[nodiscard]] std::optional<char> byteOf(char32_t character)
    {
        if (character >= U' ' && character <= U'~') {
            return static_cast<char>(character);
        }
        if (character < 0x80 || character > 0xFFFF) {
            return std::nullopt;
        }
        const std::size_t at = upperHalf.find(static_cast<char16_t>(character));
        return at == std::u16string_view::npos ? std::nullopt : std::optional(static_cast<char>(0x80 + at));
    }

    [[nodiscard]] QList<uint> charactersOf(const QString& text)
    {
        return text.normalized(QString::NormalizationForm_C).toUcs4();
    }

} // namespace

QByteArray toPrinterPage(const QString& text)
{
    QByteArray bytes;
    for (const uint character : charactersOf(text)) {
        bytes.append(character == u'\t' ? ' ' : byteOf(character).value_or('?'));
    }
    return bytes;
}

QStringList outsidePrinterPage(const QString& text)
{
    QSet<uint> seen;
    QStringList names;
    for (const uint character : charactersOf(text)) {
        if (character == u'\n' || character == u'\r' || byteOf(character) || seen.contains(character)) {
            continue;
        }
        seen.insert(character);
        const QString number = QStringLiteral("U+%1").arg(character, 4, 16, QLatin1Char('0')).toUpper();
        const char32_t letter = character;
        names.append(QChar::isPrint(character) ? QStringLiteral("%1 (%2)").arg(QString::fromUcs4(&letter, 1), number)
                                               : number);
    }
    return names;
}

} // namespace till
