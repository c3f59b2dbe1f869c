#include "till/facilities/http_reply.h"

#include <QtGlobal>

#include <algorithm>
#include <new>
#include <utility>

namespace till {

namespace {

constexpr int firstFinalStatus = 200;

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool hasName(QByteArrayView line, QByteArrayView name)
{
    return line.size() > name.size() && line[name.size()] == ':'
        && qstrnicmp(line.data(), name.data(), static_cast<size_t>(name.size())) == 0;
}

QByteArrayView valueOf(QByteArrayView line, QByteArrayView name)
{
    return line.sliced(name.size() + 1).trimmed();
}

}

bool HttpReply::addLine(QByteArrayView line) noexcept
{
    try {
        lineBytes += line.size();
        if (lineBytes > headLimit) {
            return getStatus() != 0 ? stopTooLarge() : stopDamaged();
        }
        if (place == Place::beforeHead) {
            return addStatusLine(line.trimmed()) || stopDamaged();
        }
        if (place == Place::afterHead) {
            return true; // a trailer, which nobody reads
        }
        if (line.trimmed().isEmpty()) {
            place = status < firstFinalStatus ? Place::beforeHead : Place::afterHead;
            return true;
        }
        return isSoundField(line) || stopDamaged();
    } catch (const std::bad_alloc&) {
        return stopTooLarge();
    }
}

bool HttpReply::addBody(QByteArrayView part) noexcept
{
    if (place != Place::afterHead) {
        return stopDamaged();
    }
    received += part.size();
    if (received > bodyLimit) {
        return stopTooLarge();
    }
    try {
        body.append(part);
        return true;
    } catch (const std::bad_alloc&) {
        // The same as a reply beyond the limit: the request was executed, and the till cannot take what came of it.
        return stopTooLarge();
    }
}

int HttpReply::getStatus() const
{
    return status < firstFinalStatus ? 0 : status;
}

bool HttpReply::hasWholeHead() const
{
    return place == Place::afterHead;
}

bool HttpReply::isTooLarge() const
{
    return tooLarge;
}

bool HttpReply::isDamaged() const
{
    return damaged;
}

qint64 HttpReply::getReceived() const
{
    return received;
}

QByteArray HttpReply::takeBody() noexcept
{
    return std::exchange(body, {});
}

bool HttpReply::addStatusLine(QByteArrayView line)
{
    constexpr qsizetype versionLength = 9; // "HTTP/1.1 "
    constexpr qsizetype statusLength = 3;
    constexpr qsizetype shortest = versionLength + statusLength;
    const bool isSound = line.size() >= shortest && (line.startsWith("HTTP/1.1 ") || line.startsWith("HTTP/1.0 "))
        && line[versionLength] != '0' && std::ranges::all_of(line.sliced(versionLength, statusLength), isDigit)
        && (line.size() == shortest || line[shortest] == ' ');
    if (!isSound) {
        return false;
    }
    status = line.sliced(versionLength, statusLength).toInt();
    declaredLength.clear();
    place = Place::inHead;
    return true;
}

bool HttpReply::isSoundField(QByteArrayView line)
{
    constexpr QByteArrayView length = "Content-Length";
    constexpr QByteArrayView coding = "Transfer-Encoding";
    if (hasName(line, length)) {
        // libcurl takes the last of several lengths and the digits that a value begins with: a guess about where the
        // reply ends.
        const QByteArrayView value = valueOf(line, length);
        const bool isRepeated = declaredLength.isNull() || declaredLength == value;
        declaredLength = value.toByteArray();
        return isRepeated && !value.isEmpty() && std::ranges::all_of(value, isDigit);
    }
    if (hasName(line, coding)) {
        // libcurl would unpack others, although none was asked for.
        return valueOf(line, coding).compare("chunked", Qt::CaseInsensitive) == 0;
    }
    return true;
}

bool HttpReply::stopTooLarge() noexcept
{
    tooLarge = true;
    body.clear();
    return false;
}

bool HttpReply::stopDamaged() noexcept
{
    damaged = true;
    body.clear();
    return false;
}

}
