#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace till {

/// One HTTP reply while it comes in, interim replies before it included. Holds no more than the till takes, and refuses
/// what cannot be told apart from a damaged reply. Used by one thread.
class HttpReply {
public:
    static constexpr qint64 bodyLimit = 16 * 1024 * 1024; // bytes
    static constexpr qint64 headLimit = 64 * 1024; // bytes, of all heads and trailers together

    /// Takes the next line of a head or a trailer, with its line end. False when the transfer is to be stopped: see
    /// `isTooLarge` and `isDamaged`.
    [[nodiscard]] bool addLine(QByteArrayView line) noexcept;

    /// Takes the next part of the body. False when the transfer is to be stopped; the body is empty then.
    [[nodiscard]] bool addBody(QByteArrayView part) noexcept;

    /// The status of the final reply, 0 as long as its first line has not come.
    [[nodiscard]] int getStatus() const;

    /// True when the head of the final reply has come to its end. libcurl takes a connection that was closed in the
    /// middle of a head for a reply without a body.
    [[nodiscard]] bool hasWholeHead() const;

    [[nodiscard]] bool isTooLarge() const;
    [[nodiscard]] bool isDamaged() const;

    /// Bytes of the body that have come, kept or not.
    [[nodiscard]] qint64 getReceived() const;

    /// Hands the body over; this object is left without one.
    [[nodiscard]] QByteArray takeBody() noexcept;

private:
    [[nodiscard]] bool addStatusLine(QByteArrayView line);
    [[nodiscard]] bool isSoundField(QByteArrayView line);
    [[nodiscard]] bool stopTooLarge() noexcept;
    [[nodiscard]] bool stopDamaged() noexcept;

    enum class Place {
        beforeHead,
        inHead,
        afterHead,
    };

    Place place = Place::beforeHead;
    int status = 0; // also of an interim reply
    qint64 lineBytes = 0;
    qint64 received = 0;
    QByteArray declaredLength;
    QByteArray body;
    bool tooLarge = false;
    bool damaged = false;
};

}
