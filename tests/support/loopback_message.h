#pragma once

#include <QByteArray>
#include <QList>

#include <chrono>

namespace vantiro_test {

struct HttpHeader {
    QByteArray name; // as it came
    QByteArray value;

    bool operator==(const HttpHeader&) const = default;
};
using HttpHeaders = QList<HttpHeader>;

/// One request as it came over the wire.
struct HttpRequest {
    QByteArray raw; // every byte of it
    QByteArray method;
    QByteArray target;
    QByteArray version;
    HttpHeaders headers; // in their order
    QByteArray body;
    int connection = 0; // the first connection of the server is 1

    /// The value of the first header of that name, whatever its case; null when there is none.
    [[nodiscard]] QByteArray header(const QByteArray& name) const;
};

/// What the server does about one request, step by step:
///
///     Answer::raw("HTTP/1.1 100 Continue\r\n\r\n").pause(50ms).send(rest).hangUp()
///
/// After the last step the connection stays open for a further request, unless that step ends it.
class Answer {
public:
    /// A whole reply. The length of the body is added to the headers.
    [[nodiscard]] static Answer reply(int status, const QByteArray& body = {}, const HttpHeaders& headers = {});
    /// These bytes.
    [[nodiscard]] static Answer raw(const QByteArray& bytes);
    /// No step yet. Alone it closes nothing and says nothing.
    [[nodiscard]] static Answer nothing();
    /// Says nothing until the client has hung up.
    [[nodiscard]] static Answer silence();

    Answer& send(const QByteArray& bytes);
    /// Repeats the bytes until the client has hung up.
    Answer& sendForEver(const QByteArray& bytes);
    /// Sends the bytes in portions, with a pause after each.
    Answer& drip(const QByteArray& bytes, qsizetype portion, std::chrono::milliseconds after);
    Answer& pause(std::chrono::milliseconds time);
    /// Keeps the connection open and says nothing more until the client has hung up.
    Answer& keepSilent();
    /// Ends the connection properly.
    Answer& hangUp();
    /// Ends the connection with a reset.
    Answer& reset();
    /// Forgets all that would be sent after the first so many bytes, and every later step.
    Answer& cutAfter(qsizetype bytes);

private:
    friend class LoopbackServer;

    struct Step {
        enum class Kind {
            send,
            sendForEver,
            pause,
            silence,
            hangUp,
            reset,
        };
        Kind kind = Kind::send;
        QByteArray bytes;
        std::chrono::milliseconds time { 0 };
    };

    QList<Step> steps;
};

}
