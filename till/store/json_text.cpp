#include "till/store/json_text.h"

#include "till/facilities/moment_text.h"
#include "till/store/json_letters.h"
#include "till/store/stored_map.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

namespace till {

namespace {

    constexpr qsizetype firstRoom = 4096; // bytes: a short cheque

} // namespace

JsonText::JsonText(qsizetype expected)
{
    grow(std::max(firstRoom, expected));
}

void JsonText::beginMap()
{
    provide(scalar);
    separate();
    *next++ = '{';
    ++compounds;
}

void JsonText::endMap()
{
    provide(scalar);
    *next++ = '}';
}

void JsonText::beginList()
{
    provide(scalar);
    separate();
    *next++ = '[';
    ++lists;
    ++compounds;
}

void JsonText::endList()
{
    provide(scalar);
    *next++ = ']';
    --lists;
}

void JsonText::key(QStringView name)
{
    quote(name);
    *next++ = ':';
}

void JsonText::text(QStringView value)
{
    quote(value);
}

void JsonText::number(double value)
{
    constexpr double most = 9007199254740992.0; // below it Qt has whole numbers as integers, with all their digits
    if (!std::isfinite(value)) {
        refuseDocument(QStringLiteral("a number is infinite or none"));
    }
    const double size = std::abs(value);
    if (size < most && std::trunc(value) == value) {
        whole(static_cast<qint64>(value));
        return;
    }
    provide(scalar);
    separate();
    if (putHundredths(value)) {
        return;
    }
    constexpr double least = 1e-3; // from here on Qt does without an exponent
    if (size < most && size >= least) {
        next = std::to_chars(next, end, value, std::chars_format::fixed).ptr;
    } else {
        const QByteArray form = QByteArray::number(value, 'g', QLocale::FloatingPointShortest);
        put({ form.data(), static_cast<size_t>(form.size()) });
    }
}

/// Writes a number that is a whole number of hundredths, as sums are, and tells whether it was one. Below the limit two
/// numbers of so many digits are never the same double, so no shorter form would stand for this one.
bool JsonText::putHundredths(double value)
{
    constexpr double hundred = 100.0;
    constexpr double most = 1e12;
    const double size = std::abs(value);
    if (size >= most) {
        return false;
    }
    const auto hundredths = static_cast<quint64>(size * hundred + 0.5);
    if (static_cast<double>(hundredths) / hundred != size) {
        return false;
    }
    if (value < 0) {
        *next++ = '-';
    }
    constexpr quint64 base = 10;
    putWhole(hundredths / (base * base));
    *next++ = '.';
    *next++ = static_cast<char>('0' + hundredths / base % base);
    if (hundredths % base != 0) {
        *next++ = static_cast<char>('0' + hundredths % base);
    }
    return true;
}

void JsonText::whole(qint64 value)
{
    provide(scalar);
    separate();
    if (value < 0) {
        *next++ = '-';
    }
    putWhole(value < 0 ? -static_cast<quint64>(value) : static_cast<quint64>(value));
}

/// The room was provided.
inline void JsonText::putWhole(quint64 value)
{
    constexpr quint64 base = 10;
    if (value < base) {
        *next++ = static_cast<char>('0' + value);
    } else {
        next = std::to_chars(next, end, value).ptr;
    }
}

void JsonText::flag(bool value)
{
    provide(scalar);
    separate();
    put(value ? std::string_view("true") : std::string_view("false"));
}

void JsonText::nothing()
{
    provide(scalar);
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
    if (!hasSameBits(value, lastMoment)) {
        lastMoment = value;
        lastMomentText = momentText(value).toLatin1();
    }
    provide(lastMomentText.size() + scalar);
    separate();
    *next++ = '"';
    put({ lastMomentText.data(), static_cast<size_t>(lastMomentText.size()) });
    *next++ = '"';
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
        whole(*static_cast<const int*>(value.constData()));
        break;
    case QMetaType::LongLong:
        whole(*static_cast<const qlonglong*>(value.constData()));
        break;
    case QMetaType::Double:
        number(*static_cast<const double*>(value.constData()));
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
    constexpr qsizetype fewestKept = 8; // entries
    const bool isLarge = keptMaps != nullptr && values.size() >= fewestKept;
    if (isLarge && nextKept < keptMaps->size() && keptMaps->at(nextKept).map.isSharedWith(values)) {
        again(keptMaps->at(nextKept++).text);
        return;
    }
    const qsizetype start = place();
    const qsizetype compoundsBefore = compounds;
    beginMap();
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry) {
        key(entry.key());
        any(entry.value());
    }
    endMap();
    if (isLarge && compounds == compoundsBefore + 1) {
        keptMaps->resize(std::max(keptMaps->size(), nextKept + 1));
        (*keptMaps)[nextKept++] = { values, valueAt(start) };
    }
}

void JsonText::keepMaps(KeptMaps* maps)
{
    if (keptMaps != nullptr) {
        keptMaps->resize(nextKept);
    }
    keptMaps = maps;
    nextKept = 0;
}

qsizetype JsonText::place() const
{
    return next - begin;
}

QByteArray JsonText::valueAt(qsizetype place) const
{
    const char* const from = begin + place;
    const QByteArrayView value(*from == ',' ? from + 1 : from, next);
    return value.toByteArray();
}

void JsonText::again(QByteArrayView value)
{
    provide(value.size() + scalar);
    separate();
    put({ value.data(), static_cast<size_t>(value.size()) });
}

QByteArray JsonText::take()
{
    written.truncate(next - begin);
    begin = nullptr;
    next = nullptr;
    end = nullptr;
    return std::exchange(written, QByteArray());
}

void JsonText::grow(qsizetype count)
{
    const qsizetype used = next - begin;
    written.resize(std::max(written.size() * 2, used + count));
    begin = written.data();
    next = begin + used;
    end = begin + written.size();
}

/// Leaves room for a colon.
void JsonText::quote(QStringView value)
{
    provide(value.size() * longestLetter + scalar);
    separate();
    *next++ = '"';
    if (value.startsWith(QChar::ByteOrderMark)) { // as it is Qt's reader would take it for no part of the text
        put("\\ufeff");
        value = value.sliced(1);
    }
    next = writeLetters(value, next);
    *next++ = '"';
}

/// Rare types. Qt goes a way of its own within lists.
void JsonText::asQtHasIt(const QVariant& value)
{
    ++compounds;
    if (value.metaType() == QMetaType::fromType<float>() && !std::isfinite(value.toFloat())) {
        number(value.toDouble()); // refuses it
    }
    const std::string_view before = lists > 0 ? "[" : R"({"":)";
    const QJsonDocument whole = lists > 0 ? QJsonDocument(QJsonArray::fromVariantList({ value }))
                                          : QJsonDocument(QJsonObject::fromVariantMap({ { QString(), value } }));
    const QByteArray form = whole.toJson(QJsonDocument::Compact);
    provide(form.size() + scalar);
    separate();
    put(std::string_view(form.data(), static_cast<size_t>(form.size())).substr(0, static_cast<size_t>(form.size()) - 1)
            .substr(before.size()));
}

} // namespace till
