#include "tests/faults/faulty_server.h"
#include "tests/faults/service_replies.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using vantiro_test::Answer;

namespace faults {

namespace {

[[nodiscard]] QByteArray whole(const QByteArray& good)
{
    return http("200 OK", good);
}

/// The place behind the head.
[[nodiscard]] qsizetype headOf(const QByteArray& reply)
{
    return reply.indexOf("\r\n\r\n") + 4;
}

[[nodiscard]] QByteArray withLength(const QByteArray& length, const QByteArray& body)
{
    return "HTTP/1.1 200 OK\r\nContent-Length: " + length + "\r\n\r\n" + body;
}

[[nodiscard]] QByteArray withoutLength(const QByteArray& body)
{
    return "HTTP/1.1 200 OK\r\nContent-Type: text/xml; charset=utf-8\r\n\r\n" + body;
}

[[nodiscard]] QByteArray longer(const QByteArray& good)
{
    return withLength(QByteArray::number(good.size() + 10), good);
}

[[nodiscard]] QByteArray chunk(const QByteArray& part)
{
    return QByteArray::number(part.size(), 16) + "\r\n" + part + "\r\n";
}

/// A chunked reply of two chunks, without the one that ends it.
[[nodiscard]] QByteArray chunks(const QByteArray& good)
{
    return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + chunk(good.first(50)) + chunk(good.sliced(50));
}

[[nodiscard]] NamedFault raw(const char* name, QByteArray (*bytes)(const QByteArray& good))
{
    return answering(QString::fromLatin1(name),
                     [bytes](const QByteArray& good, const Order&) { return Answer::raw(bytes(good)).hangUp(); });
}

/// As `raw`, but the connection stays open and nothing more comes.
[[nodiscard]] NamedFault silentAfter(const char* name, QByteArray (*bytes)(const QByteArray& good))
{
    return answering(QString::fromLatin1(name),
                     [bytes](const QByteArray& good, const Order&) { return Answer::raw(bytes(good)).keepSilent(); });
}

[[nodiscard]] NamedFault resetAfter(const char* name, QByteArray (*bytes)(const QByteArray& good))
{
    // The pause lets the bytes arrive: a reset overtakes them.
    return answering(QString::fromLatin1(name), [bytes](const QByteArray& good, const Order&) {
        return Answer::raw(bytes(good)).pause(20ms).reset();
    });
}

[[nodiscard]] QByteArray nothing(const QByteArray&)
{
    return {};
}

[[nodiscard]] QByteArray statusLineCut(const QByteArray&)
{
    return "HTTP/1.1 20";
}

[[nodiscard]] QByteArray headCut(const QByteArray& good)
{
    return whole(good).first(40);
}

[[nodiscard]] QByteArray headAlone(const QByteArray& good)
{
    return whole(good).first(headOf(whole(good)));
}

[[nodiscard]] QByteArray halfOfTheBody(const QByteArray& good)
{
    return whole(good).first(headOf(whole(good)) + good.size() / 2);
}

[[nodiscard]] QByteArray allButTheLastByte(const QByteArray& good)
{
    return whole(good).chopped(1);
}

[[nodiscard]] QList<NamedFault> brokenReplies()
{
    return {
        silentAfter("SilentAfterTheRequest", nothing),
        raw("ClosedAfterTheRequest", nothing),
        resetAfter("ResetAfterTheRequest", nothing),
        raw("ClosedInTheStatusLine", statusLineCut),
        resetAfter("ResetInTheStatusLine", statusLineCut),
        raw("ClosedInTheHead", headCut),
        resetAfter("ResetInTheHead", headCut),
        silentAfter("SilentInTheHead", headCut),
        raw("ClosedBeforeTheBody", headAlone),
        resetAfter("ResetBeforeTheBody", headAlone),
        raw("ClosedInTheBody", halfOfTheBody),
        resetAfter("ResetInTheBody", halfOfTheBody),
        silentAfter("SilentInTheBody", halfOfTheBody),
        raw("ClosedBeforeTheLastByte", allButTheLastByte),
        resetAfter("ResetBeforeTheLastByte", allButTheLastByte),
    };
}

[[nodiscard]] QList<NamedFault> wrongLengths()
{
    return {
        raw("LengthTooGreatThenClosed", longer),
        silentAfter("LengthTooGreatThenSilent", longer),
        raw("LengthTooSmall",
            [](const QByteArray& good) { return withLength(QByteArray::number(good.size() - 10), good); }),
        raw("LengthOfNothing", [](const QByteArray& good) { return withLength("0", good); }),
        raw("LengthNegative", [](const QByteArray& good) { return withLength("-1", good); }),
        raw("LengthNoNumber", [](const QByteArray& good) { return withLength("many", good); }),
        raw("LengthsThatDiffer",
            [](const QByteArray& good) {
                return withLength("20\r\nContent-Length: " + QByteArray::number(good.size()), good);
            }),
        raw("NoLength", withoutLength),
        raw("NoLengthClosedInTheBody",
            [](const QByteArray& good) { return withoutLength(good.first(good.size() / 2)); }),
        resetAfter("NoLengthResetInTheBody",
                   [](const QByteArray& good) { return withoutLength(good.first(good.size() / 2)); }),
        raw("MoreThanTheLength", [](const QByteArray& good) { return whole(good) + "<more/>"; }),
        raw("TwoReplies", [](const QByteArray& good) { return whole(good) + http("500 Error", faultUnder("s")); }),
    };
}

[[nodiscard]] QList<NamedFault> chunkedReplies()
{
    return {
        raw("Chunked", [](const QByteArray& good) { return chunks(good) + "0\r\n\r\n"; }),
        raw("ChunksWithoutAnEndThenClosed", chunks),
        silentAfter("ChunksWithoutAnEndThenSilent", chunks),
        raw("ChunkCut", [](const QByteArray& good) { return chunks(good).chopped(30); }),
        raw("ChunkSizeNoNumber",
            [](const QByteArray& good) { return chunks(good) + "zz\r\n" + good + "\r\n0\r\n\r\n"; }),
        raw("ChunkSizeTooSmall",
            [](const QByteArray& good) {
                return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n10\r\n" + good + "\r\n0\r\n\r\n";
            }),
        raw("ChunksUnderAnUnknownCoding",
            [](const QByteArray& good) {
                return "HTTP/1.1 200 OK\r\nTransfer-Encoding: gzip, chunked\r\n\r\n" + chunk(good) + "0\r\n\r\n";
            }),
    };
}

[[nodiscard]] NamedFault dripping(const char* name, qsizetype portions, std::chrono::milliseconds pause, bool headToo)
{
    return answering(QString::fromLatin1(name), [=](const QByteArray& good, const Order&) {
        const QByteArray reply = whole(good);
        const qsizetype from = headToo ? 0 : headOf(reply);
        return Answer::raw(reply.first(from)).drip(reply.sliced(from), reply.size() / portions + 1, pause);
    });
}

[[nodiscard]] QByteArray earlyHints()
{
    return "HTTP/1.1 103 Early Hints\r\nLink: </style.css>\r\n\r\n";
}

[[nodiscard]] QList<NamedFault> slowAndInterimReplies()
{
    return {
        dripping("DrippingInTime", 10, 20ms, true),
        dripping("DrippingBodyTooSlow", 100, 50ms, false),
        dripping("DrippingHeadTooSlow", 200, 50ms, true),
        raw("Continue", [](const QByteArray& good) { return "HTTP/1.1 100 Continue\r\n\r\n" + whole(good); }),
        raw("ProcessingAndEarlyHints",
            [](const QByteArray& good) { return "HTTP/1.1 102 Processing\r\n\r\n" + earlyHints() + whole(good); }),
        raw("ContinueThenClosed", [](const QByteArray&) -> QByteArray { return "HTTP/1.1 100 Continue\r\n\r\n"; }),
        raw("SwitchingProtocols",
            [](const QByteArray& good) { return "HTTP/1.1 101 Switching Protocols\r\nUpgrade: other\r\n\r\n" + good; }),
        answering(u"ContinueForEver"_s,
                  [](const QByteArray&, const Order&) {
                      Answer answer = Answer::nothing();
                      for (int count = 0; count < 100; ++count) {
                          answer.send("HTTP/1.1 100 Continue\r\n\r\n").pause(50ms);
                      }
                      return answer;
                  }),
    };
}

}

QList<NamedFault> framingFaults()
{
    return brokenReplies() + wrongLengths() + chunkedReplies() + slowAndInterimReplies();
}

}
