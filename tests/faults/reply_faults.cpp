#include "tests/faults/faulty_server.h"
#include "tests/faults/service_replies.h"

#include <QStringEncoder>

using namespace Qt::StringLiterals;
using vantiro_test::Answer;

namespace faults {

namespace {

/// A reply with that status whose body would do.
[[nodiscard]] NamedFault status(const char* name, const char* line)
{
    return answering(QString::fromLatin1(name),
                     [line](const QByteArray& good, const Order&) { return Answer::raw(http(line, good)); });
}

/// It names a server that nobody may ask: a request with credentials and money goes nowhere but where it was sent.
[[nodiscard]] NamedFault redirect(const char* name, const char* line)
{
    return answering(QString::fromLatin1(name), [line](const QByteArray& good, const Order& order) {
        return Answer::raw(http(line, good, "Location: " + order.elsewhere + "\r\n"));
    });
}

[[nodiscard]] NamedFault body(const char* name, const char* line, QByteArray (*content)(const QByteArray& good))
{
    return answering(QString::fromLatin1(name), [line, content](const QByteArray& good, const Order&) {
        return Answer::raw(http(line, content(good)));
    });
}

[[nodiscard]] NamedFault bytes(const char* name, QByteArray (*content)(const QByteArray& good))
{
    return answering(QString::fromLatin1(name),
                     [content](const QByteArray& good, const Order&) { return Answer::raw(content(good)).hangUp(); });
}

[[nodiscard]] QByteArray fault(const QByteArray&)
{
    return faultUnder("s");
}

[[nodiscard]] QByteArray nothing(const QByteArray&)
{
    return {};
}

[[nodiscard]] QByteArray page(const QByteArray&)
{
    return "<html><body>Войдите в сеть<br></body></html>";
}

/// A page that is well-formed: an access point that asks for a login may well write it so.
[[nodiscard]] QByteArray wellFormedPage(const QByteArray&)
{
    return R"(<?xml version="1.0" encoding="utf-8"?><html xmlns="http://www.w3.org/1999/xhtml"><body>Войдите</body></html>)";
}

/// Declared to be UTF-8; the remark in it is not.
[[nodiscard]] QByteArray otherCharset(const QByteArray& good)
{
    return QByteArray(good).replace("<s:Body>", "<s:Body><!--\xca\xe0\xf0\xf2\xe0-->");
}

[[nodiscard]] QByteArray unknownCharset(const QByteArray& good)
{
    return QByteArray(good).replace("utf-8", "x-cash-1");
}

[[nodiscard]] QByteArray utf16(const QByteArray& good)
{
    QStringEncoder encoder(QStringConverter::Utf16LE, QStringConverter::Flag::WriteBom);
    return encoder.encode(QString::fromUtf8(unknownCharset(good)).replace(u"x-cash-1"_s, u"utf-16"_s));
}

[[nodiscard]] QByteArray withDocumentType(const QByteArray& good)
{
    return QByteArray(good).replace("<s:Envelope", R"(<!DOCTYPE a [<!ENTITY b "c">]><s:Envelope)");
}

[[nodiscard]] QByteArray withZero(const QByteArray& good)
{
    return QByteArray(good).replace("<s:Body>", QByteArray("<s:Body>\0", 9));
}

[[nodiscard]] QByteArray deeplyNested(const QByteArray& good)
{
    return QByteArray(good)
        .replace("<s:Body>", "<s:Body>" + QByteArray("<a>").repeated(5000))
        .replace("</s:Body>", QByteArray("</a>").repeated(5000) + "</s:Body>");
}

/// What a compressing proxy makes of "<a/>"; nobody has asked for it.
[[nodiscard]] QByteArray zipped(const QByteArray&)
{
    const QByteArray zip = QByteArray::fromHex("1f8b08000000000000ffb349d4b70300d9a4e1e104000000");
    return http("200 OK", zip, "Content-Encoding: gzip\r\n");
}

[[nodiscard]] QList<NamedFault> statuses()
{
    return {
        redirect("Status301", "301 Moved Permanently"),
        redirect("Status302", "302 Found"),
        redirect("Status303", "303 See Other"),
        redirect("Status307", "307 Temporary Redirect"),
        redirect("Status308", "308 Permanent Redirect"),
        status("Status400", "400 Bad Request"),
        status("Status401", "401 Unauthorized"),
        status("Status403", "403 Forbidden"),
        status("Status404", "404 Not Found"),
        status("Status407", "407 Proxy Authentication Required"),
        status("Status408", "408 Request Timeout"),
        status("Status413", "413 Content Too Large"),
        status("Status429", "429 Too Many Requests"),
        status("Status502", "502 Bad Gateway"),
        status("Status503", "503 Service Unavailable"),
        body("Status503WithAFault", "503 Service Unavailable", fault),
        status("Status504", "504 Gateway Timeout"),
        status("Status599", "599 Whatever"),
        status("Status999", "999 Request denied"),
    };
}

[[nodiscard]] QList<NamedFault> successesThatAreNone()
{
    return {
        answering(u"Status204"_s,
                  [](const QByteArray&, const Order&) { return Answer::raw("HTTP/1.1 204 No Content\r\n\r\n"); }),
        body("Status206OfAPart", "206 Partial Content",
             [](const QByteArray& good) { return good.first(good.size() / 2); }),
        status("Status206OfAll", "206 Partial Content"),
        body("EmptyReply", "200 OK", nothing),
        body("Page", "200 OK", page),
        body("WellFormedPage", "200 OK", wellFormedPage),
        body("FaultWithStatus200", "200 OK", fault),
        body("OtherCharset", "200 OK", otherCharset),
        body("UnknownCharset", "200 OK", unknownCharset),
        body("Utf16", "200 OK", utf16),
        body("DocumentType", "200 OK", withDocumentType),
        body("ZeroByte", "200 OK", withZero),
        body("DeeplyNested", "200 OK", deeplyNested),
        bytes("GzipThatNobodyAskedFor", zipped),
        answering(u"GiantByItsLength"_s,
                  [](const QByteArray& good, const Order&) {
                      return Answer::raw("HTTP/1.1 200 OK\r\nContent-Length: 4294967296\r\n\r\n" + good).keepSilent();
                  }),
        answering(u"GiantWithoutEnd"_s,
                  [](const QByteArray& good, const Order&) {
                      return Answer::raw("HTTP/1.1 200 OK\r\n\r\n" + good).sendForEver(QByteArray(65536, ' '));
                  }),
        answering(u"HeadWithoutEnd"_s,
                  [](const QByteArray&, const Order&) {
                      return Answer::raw("HTTP/1.1 200 OK\r\n").sendForEver("X-A: b\r\n");
                  }),
    };
}

[[nodiscard]] QList<NamedFault> status500()
{
    const char* const line = "500 Internal Server Error";
    return {
        body("Fault", line, fault),
        body("FaultUnderAnotherPrefix", line, [](const QByteArray&) { return faultUnder("SOAP-ENV"); }),
        status("Status500WithTheAnswer", line),
        body("Status500WithAPage", line, page),
        body("Status500Empty", line, nothing),
    };
}

[[nodiscard]] QList<NamedFault> otherProtocols()
{
    return {
        bytes("Http09", [](const QByteArray& good) { return good; }),
        bytes("Http2StatusLine",
              [](const QByteArray& good) {
                  return "HTTP/2 200\r\nContent-Length: " + QByteArray::number(good.size()) + "\r\n\r\n" + good;
              }),
        bytes("StatusOfTwoDigits", [](const QByteArray& good) { return http("20 OK", good); }),
        bytes("HeaderThatIsNone", [](const QByteArray& good) { return http("200 OK", good, "no colon at all\r\n"); }),
        bytes("Noise", [](const QByteArray&) { return QByteArray("\x00\xff\x7f\x01 SSH-2.0-noise\r\n", 20); }),
        bytes("MailServer", [](const QByteArray&) -> QByteArray { return "220 mail.example ESMTP\r\n"; }),
    };
}

}

QList<NamedFault> replyFaults()
{
    return statuses() + successesThatAreNone() + status500() + otherProtocols();
}

}
