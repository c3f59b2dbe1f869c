#include "till/store/json_text.h"

#include "till/store/stored_map.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace till {

namespace {

    constexpr qsizetype firstRoom = 4096; // bytes: a short cheque

    constexpr std::array<bool, 128> plainAscii = [] {
        std::array<bool, 128> plain {};
        std::fill(plain.begin() + ' ', plain.end(), true);
        plain['"'] = false;
        plain['\\'] = false;
        return plain;
    }();

    /// Of an escape that has a letter; none for the others.
    [[nodiscard]] char shortEscape(char16_t letter)
    {
        switch (letter) {
        case u'"':
        case u'\\':
            return static_cast<char>(letter);
        case u'\b':
            return 'b';
        case u'\f':
            return 'f';
        case u'\n':
            return 'n';
        case u'\r':
            return 'r';
        case u'\t':
            return 't';
        default:
            return '\0';
        }
    }

    [[nodiscard]] char* escape(char16_t letter, char* place)
    {
        *place++ = '\\';
        if (const char name = shortEscape(letter); name != '\0') {
            *place++ = name;
            return place;
        }
        *place++ = 'u';
        for (const unsigned shift : { 12U, 8U, 4U, 0U }) {
            *place++ = "0123456789abcdef"[(static_cast<unsigned>(letter) >> shift) & 0xfU];
        }
        return place;
    }

    /// In UTF-8, where every byte but the first brings six bits.
    [[nodiscard]] char* encode(char32_t letter, char* place)
    {
        const auto following = [letter](unsigned shift) { return static_cast<char>(0x80U | ((letter >> shift) & 0x3fU)); };
        if (letter < 0x800U) {
            *place++ = static_cast<char>(0xc0U | (letter >> 6U));
        } else if (letter < 0x10000U) {
            *place++ = static_cast<char>(0xe0U | (letter >> 12U));
            *place++ = following(6);
        } else {
            *place++ = static_cast<char>(0xf0U | (letter >> 18U));
            *place++ = following(12);
            *place++ = following(6);
        }
        *place++ = following(0);
        return place;
    }

} // namespace

JsonText::JsonText()
{
    grow(firstRoom);
}

void JsonText::beginMap()
{
    separate();
    put('{');
}

void JsonText::endMap()
{
    put('}');
}

void JsonText::beginList()
{
    separate();
    put('[');
    ++lists;
}

void JsonText::endList()
{
    put(']');
    --lists;
}

void JsonText::key(QStringView name)
{
    separate();
    quote(name);
    put(':');
}

void JsonText::plainKey(std::string_view name)
{
    constexpr qsizetype marks = 4; // comma, two quotation marks, colon
    provide(static_cast<qsizetype>(name.size()) + marks);
    separate();
    *next++ = '"';
    next = std::copy(name.begin(), name.end(), next);
    *next++ = '"';
    *next++ = ':';
}

void JsonText::text(QStringView value)
{
    separate();
    quote(value);
}

void JsonText::number(double value)
{
    constexpr double most = 9007199254740992.0; // below it Qt has whole numbers as integers, with all their digits
    if (!std::isfinite(value)) {
        refuseDocument(QStringLiteral("a number is infinite or none"));
    }
    if (std::abs(value) < most && std::trunc(value) == value) {
        whole(static_cast<qint64>(value));
        return;
    }
    separate();
    constexpr double least = 1e-3; // from here on Qt does without an exponent
    if (std::abs(value) < most && std::abs(value) >= least) {
        std::array<char, 32> digits {};
        const std::to_chars_result result
            = std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed);
        put({ digits.data(), result.ptr });
    } else {
        const QByteArray form = QByteArray::number(value, 'g', QLocale::FloatingPointShortest);
        put({ form.data(), static_cast<size_t>(form.size()) });
    }
}

void JsonText::whole(qint64 value)
{
    std::array<char, 20> digits {}; // the longest is the least one
    const std::to_chars_result result = std::to_chars(digits.begin(), digits.end(), value);
    separate();
    put({ digits.data(), result.ptr });
}

void JsonText::flag(bool value)
{
    separate();
    put(value ? std::string_view("true") : std::string_view("false"));
}

void JsonText::nothing()
{
    separate();
    put("null");
}

void JsonText::moment(const QDateTime& value)
{
    if (!value.isValid()) {
        nothing();
        return;
    }
    // Details of one discount were made in one instant, and there is one for each line.
    const bool isLast = value.timeSpec() == Qt::LocalTime && lastMoment.timeSpec() == Qt::LocalTime && value == lastMoment;
    if (!isLast) {
        lastMoment = value;
        lastMomentText = value.toOffsetFromUtc(value.offsetFromUtc()).toString(Qt::ISODateWithMs).toLatin1();
    }
    separate();
    put('"');
    put({ lastMomentText.data(), static_cast<size_t>(lastMomentText.size()) });
    put('"');
}

void JsonText::any(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        nothing();
        break;
    case QMetaType::QString:
        text(*static_cast<const QString*>(value.constData()));
        break;
    case QMetaType::Bool:
        flag(value.toBool());
        break;
    case QMetaType::Int:
    case QMetaType::LongLong:
        whole(value.toLongLong());
        break;
    case QMetaType::Double:
        number(value.toDouble());
        break;
    case QMetaType::QVariantMap:
        map(*static_cast<const QVariantMap*>(value.constData()));
        break;
    case QMetaType::QVariantList:
        beginList();
        for (const QVariant& entry : *static_cast<const QVariantList*>(value.constData())) {
            any(entry);
        }
        endList();
        break;
    case QMetaType::QStringList:
        beginList();
        for (const QString& entry : *static_cast<const QStringList*>(value.constData())) {
            text(entry);
        }
        endList();
        break;
    default:
        asQtHasIt(value);
    }
}

void JsonText::map(const QVariantMap& values)
{
    beginMap();
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry) {
        key(entry.key());
        any(entry.value());
    }
    endMap();
}

QByteArray JsonText::take()
{
    written.truncate(next - written.constData());
    next = nullptr;
    end = nullptr;
    return std::exchange(written, QByteArray());
}

/// Room for so many bytes more.
void JsonText::provide(qsizetype count)
{
    if (end - next < count) {
        grow(count);
    }
}

void JsonText::grow(qsizetype count)
{
    const qsizetype used = next == nullptr ? 0 : next - written.constData();
    written.resize(std::max(written.size() * 2, used + count));
    next = written.data() + used;
    end = written.data() + written.size();
}

void JsonText::put(std::string_view plain)
{
    provide(static_cast<qsizetype>(plain.size()));
    next = std::copy(plain.begin(), plain.end(), next);
}

void JsonText::put(char letter)
{
    provide(1);
    *next++ = letter;
}

/// What was written last tells whether something stands before: texts end in a quotation mark.
void JsonText::separate()
{
    if (next == nullptr || next == written.constData()) {
        return;
    }
    const char last = next[-1];
    if (last != '{' && last != '[' && last != ':') {
        put(',');
    }
}

void JsonText::quote(QStringView value)
{
    constexpr qsizetype longest = 6; // bytes of an escape
    provide(value.size() * longest + 2);
    const char16_t* from = value.utf16();
    const char16_t* const valueEnd = from + value.size();
    char* place = next;
    *place++ = '"';
    while (from != valueEnd) {
        const char16_t letter = *from++;
        if (letter < plainAscii.size() && plainAscii[letter]) {
            *place++ = static_cast<char>(letter);
        } else if (letter >= plainAscii.size() && !QChar::isSurrogate(letter)) {
            place = encode(letter, place);
        } else if (QChar::isHighSurrogate(letter) && from != valueEnd && QChar::isLowSurrogate(*from)) {
            place = encode(QChar::surrogateToUcs4(letter, *from++), place);
        } else {
            place = escape(letter, place);
        }
    }
    *place++ = '"';
    next = place;
}

/// Rare types. Qt goes a way of its own within lists.
void JsonText::asQtHasIt(const QVariant& value)
{
    if (value.metaType() == QMetaType::fromType<float>() && !std::isfinite(value.toFloat())) {
        number(value.toDouble()); // refuses it
    }
    const std::string_view before = lists > 0 ? "[" : R"({"":)";
    const QJsonDocument whole = lists > 0 ? QJsonDocument(QJsonArray::fromVariantList({ value }))
                                          : QJsonDocument(QJsonObject::fromVariantMap({ { QString(), value } }));
    const QByteArray form = whole.toJson(QJsonDocument::Compact);
    separate();
    put(std::string_view(form.data(), static_cast<size_t>(form.size())).substr(0, static_cast<size_t>(form.size()) - 1)
            .substr(before.size()));
}

} // namespace till
