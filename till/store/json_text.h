#pragma once

#include "host/export.h"

#include <QByteArray>
#include <QDateTime>
#include <QStringView>
#include <QVariant>

#include <string_view>

namespace till {

/// Writes a JSON text in UTF-8 without white space, letter by letter the one that Qt's own JSON documents write, but without
/// making such a document first: a till writes the open one after every step of the cashier. Whoever calls keeps to the
/// form of JSON. One text at a time, by one thread. [any-thread]
class VANTIRO_HOST_API JsonText {
public:
    JsonText();
    JsonText(const JsonText&) = delete;
    JsonText& operator=(const JsonText&) = delete;

    void beginMap();
    void endMap();
    void beginList();
    void endList();

    /// What comes next belongs to the key. Keys of a map come in ascending order, as Qt has them.
    void key(QStringView name);
    /// The same for one without any letter that would have to be escaped.
    void plainKey(std::string_view name);

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

    /// What was written; nothing stands there afterwards.
    [[nodiscard]] QByteArray take();

private:
    void provide(qsizetype count);
    void grow(qsizetype count);
    void put(std::string_view plain);
    void put(char letter);
    void separate();
    void quote(QStringView value);
    void asQtHasIt(const QVariant& value);

    QByteArray written; // longer than what is used of it
    char* next = nullptr; // where the next byte goes
    char* end = nullptr;
    int lists = 0; // that are open
    QDateTime lastMoment;
    QByteArray lastMomentText;
};

} // namespace till
