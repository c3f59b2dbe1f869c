#include "till/delivery/verdict.h"

#include "till/facilities/redaction.h"
#include "till/printing/form_guard.h"

#include <QStringDecoder>
#include <QXmlStreamReader>

namespace till {

namespace {

    using Kind = Verdict::Kind;

    constexpr int faultStatus = 500;

    struct Answer {
        enum class Kind { response, fault, other } kind = Kind::other;
        QString text; // of the fault; else why it is no answer
    };

    [[nodiscard]] QString decoded(const QByteArray& reply)
    {
        QStringDecoder decoder(QStringConverter::encodingForData(reply, u'<').value_or(QStringConverter::Utf8));
        return decoder.decode(reply);
    }

    [[nodiscard]] QString faultText(QXmlStreamReader& reader)
    {
        while (reader.readNextStartElement()) {
            if (reader.name() == u"faultstring") {
                return reader.readElementText(QXmlStreamReader::IncludeChildElements);
            }
            reader.skipCurrentElement();
        }
        return QString();
    }

    /// The whole reply must be well-formed: a response that is cut off is none.
    [[nodiscard]] Answer read(const QByteArray& reply, const QString& operation)
    {
        const QString soap = QStringLiteral("http://schemas.xmlsoap.org/soap/envelope/");
        const auto isSoap = [&soap](const QXmlStreamReader& reader, QStringView name) {
            return reader.namespaceUri() == soap && reader.name() == name;
        };
        // The reader's time grows with the square of attributes and of namespaces, and it passes over a document type.
        const QString text = decoded(reply);
        if (text.startsWith(QChar(QChar::ByteOrderMark))) { // the reader would take it for the one that is gone already
            return { Answer::Kind::other, QStringLiteral("the reply begins with two byte order marks") };
        }
        if (const QString refusal = refusalOfForm(text); !refusal.isEmpty()) {
            return { Answer::Kind::other, QStringLiteral("the reply cannot be read: %1").arg(refusal) };
        }
        QXmlStreamReader reader(text);
        Answer answer { Answer::Kind::other, QStringLiteral("the reply is no answer of the service") };
        if (reader.readNextStartElement() && isSoap(reader, u"Envelope")) {
            while (reader.readNextStartElement()) {
                if (!isSoap(reader, u"Body")) {
                    reader.skipCurrentElement();
                    continue;
                }
                if (!reader.readNextStartElement()) {
                    break;
                }
                if (isSoap(reader, u"Fault")) {
                    answer = { Answer::Kind::fault, faultText(reader) };
                } else if (reader.name() == QString(operation + QStringLiteral("Response"))) {
                    answer = { Answer::Kind::response, QString() };
                }
                break;
            }
        }
        while (!reader.atEnd()) {
            reader.readNext();
        }
        if (reader.hasError()) {
            return { Answer::Kind::other, QStringLiteral("the reply cannot be read: %1").arg(reader.errorString()) };
        }
        return answer;
    }

    /// One line of a list, whatever the other end has written: it may be megabytes, and it may repeat what it was sent.
    [[nodiscard]] QString reason(const QString& text)
    {
        constexpr qsizetype longest = 300;
        QString line = redact(text.left(4 * longest)).simplified();
        if (line.size() > longest) {
            line.truncate(line.at(longest - 1).isHighSurrogate() ? longest - 1 : longest);
            line += u'…';
        }
        return line;
    }

    /// Statuses by which a server tells that this very message will never do.
    [[nodiscard]] bool isFinal(int status)
    {
        return status == 400 || status == 405 || status == 413 || status == 415 || status == 422;
    }

} // namespace

Verdict verdictOn(RestClient& client, const QString& operation)
{
    if (client.hasConnectionError()) {
        return { Kind::unanswered, reason(client.getErrorText().ru()) };
    }
    const int status = client.getHttpStatus();
    if (client.isSuccess() || status == faultStatus) {
        const Answer answer = read(client.getResponseBody(), operation);
        const QString told = reason(answer.text);
        switch (answer.kind) {
        case Answer::Kind::fault:
            return { Kind::refused, told.isEmpty() ? QStringLiteral("the service refused it") : told };
        case Answer::Kind::response:
            if (client.isSuccess()) {
                return { Kind::delivered, QString() };
            }
            return { Kind::misanswered, QStringLiteral("HTTP status %1 with a response").arg(status) };
        case Answer::Kind::other:
            return { Kind::misanswered, told };
        }
    }
    if (isFinal(status)) {
        return { Kind::refused, QStringLiteral("HTTP status %1").arg(status) };
    }
    // Credentials, addresses and overload are the server's matter or the operator's, not this message's.
    return { Kind::unanswered, QStringLiteral("HTTP status %1").arg(status) };
}

} // namespace till
