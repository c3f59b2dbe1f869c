#include "till/delivery/verdict.h"

#include <QXmlStreamReader>

namespace till {

namespace {

    using Kind = Verdict::Kind;

    constexpr int faultStatus = 500;

    struct Answer {
        enum class Kind { response, fault, other } kind = Kind::other;
        QString text; // of the fault; else why it is no answer
    };

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
        QXmlStreamReader reader(reply);
        Answer answer { Answer::Kind::other, QStringLiteral("the reply is no answer of the service") };
        if (reader.readNextStartElement() && isSoap(reader, u"Envelope")) {
            while (reader.readNextStartElement()) {
                if (isSoap(reader, u"Body") && reader.readNextStartElement()) {
                    if (isSoap(reader, u"Fault")) {
                        answer = { Answer::Kind::fault, faultText(reader) };
                    } else if (reader.name() == QString(operation + QStringLiteral("Response"))) {
                        answer = { Answer::Kind::response, QString() };
                    }
                    break;
                }
                reader.skipCurrentElement();
            }
        }
        while (!reader.atEnd()) {
            if (reader.readNext() == QXmlStreamReader::DTD) {
                return { Answer::Kind::other, QStringLiteral("the reply has a document type declaration") };
            }
        }
        if (reader.hasError()) {
            return { Answer::Kind::other, QStringLiteral("the reply cannot be read: %1").arg(reader.errorString()) };
        }
        return answer;
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
        return { Kind::unanswered, client.getErrorText().ru() };
    }
    const int status = client.getHttpStatus();
    if (client.isSuccess() || status == faultStatus) {
        const Answer answer = read(client.getResponseBody(), operation);
        switch (answer.kind) {
        case Answer::Kind::fault:
            return { Kind::refused, answer.text.isEmpty() ? QStringLiteral("the service refused it") : answer.text };
        case Answer::Kind::response:
            if (client.isSuccess()) {
                return { Kind::delivered, QString() };
            }
            return { Kind::misanswered, QStringLiteral("HTTP status %1 with a response").arg(status) };
        case Answer::Kind::other:
            return { Kind::misanswered, answer.text };
        }
    }
    if (isFinal(status)) {
        return { Kind::refused, QStringLiteral("HTTP status %1").arg(status) };
    }
    // Credentials, addresses and overload are the server's matter or the operator's, not this message's.
    return { Kind::unanswered, QStringLiteral("HTTP status %1").arg(status) };
}

} // namespace till
