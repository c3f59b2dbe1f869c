#pragma once

#include "host/export.h"
#include "till/document/kept_maps.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QDateTime>
#include <QStringView>
#include <QVariant>

#include <algorithm>
#include <string_view>

namespace till {

/// Writes a JSON text in UTF-8 without white space, letter by letter the one that Qt's own JSON documents write, but
/// without making such a document first: a till writes the open one after every step of the cashier. Only a text that
/// begins with a byte order mark is written in another way, since Qt cannot read its own. Whoever calls keeps to the
/// form of JSON. One text at a time, by one thread. [any-thread]
class VANTIRO_HOST_API JsonText {
public:
    /// `expected` is how long the text will be, in bytes, as far as one knows.
    explicit JsonText(qsizetype expected = 0);
    JsonText(const JsonText&) = delete;
    JsonText& operator=(const JsonText&) = delete;

    void beginMap();
    void endMap();
    void beginList();
    void endList();

    /// What comes next belongs to the key. Keys of a map come in ascending order, as Qt has them.
    void key(QStringView name);
    /// The same for one without any letter that would have to be escaped.
    inline void plainKey(std::string_view name);

    void text(QStringView value);
    /// Throws `BasicException` for one that is infinite or none: JSON has no form for it.
    void number(double value);
    void whole(qint64 value);
    void flag(bool value);
    void nothing();
    /// With the distance from UTC: the time of the till alone comes twice in the hour in which clocks are set back.
    /// Nothing for an invalid moment.
    void moment(const QDateTime& value);
    /// Whatever Qt has a form for, nothing for all else. Throws as `number` does.
    void any(const QVariant& value);
    void map(const QVariantMap& values);
    /// From here on, until told null: large maps of nothing but plain values that were kept by the last text are taken
    /// from there when they are the same ones still, and all of them are kept for the next text. `maps` outlives that.
    void keepMaps(KeptMaps* maps);

    /// Where the next value is going to stand, and the value that stands there since.
    [[nodiscard]] qsizetype place() const;
    [[nodiscard]] QByteArray valueAt(qsizetype place) const;
    /// A value that was written before.
    void again(QByteArrayView value);

    /// What was written; nothing stands there afterwards.
    [[nodiscard]] QByteArray take();

private:
    inline void provide(qsizetype count);
    void grow(qsizetype count);
    inline void put(std::string_view plain);
    inline void separate();
    inline void putWhole(quint64 value);
    [[nodiscard]] bool putHundredths(double value);
    void quote(QStringView value);
    void asQtHasIt(const QVariant& value);

    static constexpr qsizetype scalar = 40; // bytes of the longest number or word, with the comma before it

    QByteArray written; // longer than what is used of it
    char* begin = nullptr;
    char* next = nullptr; // where the next byte goes
    char* end = nullptr;
    int lists = 0; // that are open
    qsizetype compounds = 0; // that were begun: maps, lists, and what Qt has another form for within a list
    KeptMaps* keptMaps = nullptr;
    qsizetype nextKept = 0;
    QDateTime lastMoment;
    QByteArray lastMomentText;
};

// Inline, with lengths that the compiler knows: a document is some thousand keys and numbers.

/// Room for so many bytes more.
inline void JsonText::provide(qsizetype count)
{
    if (end - next < count) {
        grow(count);
    }
}

/// What was written last tells whether something stands before: texts end in a quotation mark. The room was provided.
inline void JsonText::separate()
{
    if (next != begin && next[-1] != '{' && next[-1] != '[' && next[-1] != ':') {
        *next++ = ',';
    }
}

/// The room was provided.
inline void JsonText::put(std::string_view plain)
{
    next = std::copy(plain.begin(), plain.end(), next);
}

inline void JsonText::plainKey(std::string_view name)
{
    constexpr qsizetype marks = 4; // comma, two quotation marks, colon
    provide(static_cast<qsizetype>(name.size()) + marks);
    separate();
    *next++ = '"';
    put(name);
    *next++ = '"';
    *next++ = ':';
}

} // namespace till
