#include "tests/support/loopback_message.h"

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace vantiro_test {

QByteArray HttpRequest::header(const QByteArray& name) const
{
    const auto found = std::ranges::find_if(
        headers, [&](const HttpHeader& header) { return header.name.compare(name, Qt::CaseInsensitive) == 0; });
    return found == headers.cend() ? QByteArray() : found->value;
}

Answer Answer::reply(int status, const QByteArray& body, const HttpHeaders& headers)
{
    QByteArray bytes = "HTTP/1.1 " + QByteArray::number(status) + " Status\r\n";
    for (const HttpHeader& header : headers) {
        bytes += header.name + ": " + header.value + "\r\n";
    }
    bytes += "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
    return raw(bytes);
}

Answer Answer::raw(const QByteArray& bytes)
{
    return nothing().send(bytes);
}

Answer Answer::nothing()
{
    return {};
}

Answer Answer::silence()
{
    return nothing().keepSilent();
}

Answer& Answer::send(const QByteArray& bytes)
{
    steps.append({ Step::Kind::send, bytes, 0ms });
    return *this;
}

Answer& Answer::sendForEver(const QByteArray& bytes)
{
    steps.append({ Step::Kind::sendForEver, bytes, 0ms });
    return *this;
}

Answer& Answer::drip(const QByteArray& bytes, qsizetype portion, std::chrono::milliseconds after)
{
    for (qsizetype at = 0; at < bytes.size(); at += portion) {
        send(bytes.mid(at, portion)).pause(after);
    }
    return *this;
}

Answer& Answer::pause(std::chrono::milliseconds time)
{
    steps.append({ Step::Kind::pause, {}, time });
    return *this;
}

Answer& Answer::keepSilent()
{
    steps.append({ Step::Kind::silence, {}, 0ms });
    return *this;
}

Answer& Answer::hangUp()
{
    steps.append({ Step::Kind::hangUp, {}, 0ms });
    return *this;
}

Answer& Answer::reset()
{
    steps.append({ Step::Kind::reset, {}, 0ms });
    return *this;
}

Answer& Answer::cutAfter(qsizetype bytes)
{
    QList<Step> kept;
    for (Step step : std::as_const(steps)) {
        if (step.kind == Step::Kind::send) {
            step.bytes.truncate(bytes);
            bytes -= step.bytes.size();
        }
        kept.append(step);
        if (bytes == 0) {
            break;
        }
    }
    steps = kept;
    return *this;
}

}
