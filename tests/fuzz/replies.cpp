#include "tests/fuzz/replies.h"

#include "tests/fuzz/target.h"
#include "till/document/card.h"
#include "till/document/cheque.h"

#include <algorithm>
#include <charconv>
#include <typeinfo>

namespace fuzz {

namespace {

    constexpr int cardMode = 7;

    [[nodiscard]] std::optional<std::string> textOf(std::string_view reply, std::string_view tag, bool only)
    {
        const std::optional<XmlElement> root = readOtherwise(reply, XmlEncoding::fromTheText);
        const std::vector<const XmlElement*> found
            = root ? elementsNamed(*root, tag) : std::vector<const XmlElement*>();
        if (found.empty() || (only && found.size() > 1)) {
            return std::nullopt;
        }
        return found.front()->text;
    }

    void replaceAll(std::string& text, std::string_view from, std::string_view to)
    {
        std::string result;
        std::size_t kept = 0;
        for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, kept)) {
            result.append(text, kept, at - kept).append(to);
            kept = at + from.size();
        }
        text = result.append(text, kept);
    }

    template <class T>
    [[nodiscard]] std::optional<T> numberIn(std::string_view text)
    {
        const std::size_t first = text.find_first_not_of(" \t\n\r");
        text.remove_prefix(std::min(first, text.size()));
        text = text.substr(0, text.find_last_not_of(" \t\n\r") + 1);
        if (text.starts_with('+') && !text.starts_with("+-")) {
            text.remove_prefix(1);
        }
        T value {};
        const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        return error == std::errc() && rest == text.data() + text.size() ? std::optional<T>(value) : std::nullopt;
    }

} // namespace

std::vector<std::string_view> partsOf(std::string_view input)
{
    constexpr std::string_view border = "\n%%\n";
    std::vector<std::string_view> parts;
    for (std::size_t at = input.find(border); at != std::string_view::npos; at = input.find(border)) {
        parts.push_back(input.substr(0, at));
        input.remove_prefix(at + border.size());
    }
    parts.push_back(input);
    return parts;
}

HostileReply replyOf(std::string_view part)
{
    constexpr int mostDigits = 3;
    HostileReply reply;
    const auto [rest, error] = std::from_chars(part.data(), part.data() + part.size(), reply.status);
    const auto digits = rest - part.data();
    const bool told = error == std::errc() && reply.status >= 0 && digits <= mostDigits
        && (rest == part.data() + part.size() || *rest == '\n');
    if (told) {
        part.remove_prefix(std::min(part.size(), static_cast<std::size_t>(digits) + 1));
    } else {
        reply.status = 200;
    }
    reply.body = QByteArray(part.data(), static_cast<qsizetype>(part.size()));
    return reply;
}

HostileServer::HostileServer(const QList<HostileReply>& replies)
    : script(replies)
{
    MockFactory<RestClient>::mocked = this;
}

HostileServer::~HostileServer()
{
    MockFactory<RestClient>::mocked = nullptr;
}

qsizetype HostileServer::posts() const
{
    return made;
}

void HostileServer::post(const QUrl&, const QByteArray&, const QHash<QString, QString>&)
{
    last = script.value(made);
    ++made;
}

int HostileServer::getHttpStatus()
{
    return last.status;
}

tr::Tr HostileServer::getErrorText()
{
    return tr::Tr(QString::number(last.status));
}

QByteArray HostileServer::getResponseBody()
{
    return last.status == 0 ? QByteArray() : last.body;
}

void HostileServer::setTimeout(int) { }

bool HostileServer::isSuccess()
{
    return last.status >= 200 && last.status <= 299;
}

bool HostileServer::hasConnectionError()
{
    return made > 0 && last.status == 0;
}

bool HostileServer::hasHttpError()
{
    return last.status != 0 && !isSuccess();
}

OpenClient::OpenClient()
{
    setHosts({ QUrl(QStringLiteral("http://a/")), QUrl(QStringLiteral("http://b/")),
               QUrl(QStringLiteral("http://c/")) });
}

QSharedPointer<AbstractDocument> saleWithCard()
{
    till::ChequeHead head;
    head.number = 1042;
    head.shift = 17;
    head.openTime = QDateTime(QDate(2024, 3, 5), QTime(14, 7, 9));
    auto document = QSharedPointer<till::Cheque>::create(head, QStringLiteral("1"));
    till::LineFields line;
    line.code = QStringLiteral("1042");
    line.barcode = QStringLiteral("4600051000057");
    line.price = 89.90;
    line.quantity = 2.0;
    document->addLine(line);
    till::CardFields card;
    card.number = QStringLiteral("9000000001");
    card.codeInternal = 77;
    document->setCard(cardMode, 1, QSharedPointer<till::Card>::create(card));
    return document;
}

std::string replyTo(std::string_view operation, std::string_view input)
{
    if (input.find("Envelope") != std::string_view::npos) {
        return std::string(input);
    }
    std::string text;
    for (const char c : input) {
        switch (c) {
        case '<':
            text += "&lt;";
            break;
        case '>':
            text += "&gt;";
            break;
        case '&':
            text += "&amp;";
            break;
        case '\r':
            text += "&#xD;";
            break;
        default:
            text += c;
        }
    }
    const std::string name(operation);
    return R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body><)" + name
        + R"(Response xmlns="http://tempuri.org/"><)" + name + "Result>" + text + "</" + name + "Result></" + name
        + "Response></s:Body></s:Envelope>";
}

Ending endingOf(const std::function<void()>& call)
{
    try {
        timed(call);
        return Ending::value;
    } catch (const VantiroException& refusal) {
        // The class is what callers decide by, so it must be exactly one of the three.
        const std::type_info& type = typeid(refusal);
        if (type == typeid(VantiroNoConnectionException)) {
            return Ending::noConnection;
        }
        if (type == typeid(VantiroFaultException)) {
            return Ending::fault;
        }
        require(type == typeid(VantiroException), std::string("a failure of the class ") + type.name());
        return Ending::refused;
    }
}

std::optional<std::string> onlyText(std::string_view reply, std::string_view tag)
{
    return textOf(reply, tag, true);
}

std::optional<std::string> firstText(std::string_view reply, std::string_view tag)
{
    return textOf(reply, tag, false);
}

XmlElement asRead(const QDomElement& element)
{
    XmlElement result;
    result.name = element.tagName().toStdString();
    const QDomNamedNodeMap attributes = element.attributes();
    for (int i = 0; i < attributes.count(); ++i) {
        const QDomAttr attribute = attributes.item(i).toAttr();
        result.attributes.emplace_back(attribute.name().toStdString(), attribute.value().toStdString());
    }
    result.text = element.text().toStdString();
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        result.children.push_back(asRead(child));
    }
    return result;
}

std::string unescaped(std::string text)
{
    replaceAll(text, "&amp;", "&");
    replaceAll(text, "&lt;", "<");
    replaceAll(text, "&gt;", ">");
    replaceAll(text, "&apos;", "'");
    replaceAll(text, "&quot;", "\"");
    replaceAll(text, "&#xD;", "");
    return text;
}

std::optional<int> wholeNumber(std::string_view text)
{
    return numberIn<int>(text);
}

std::optional<double> number(std::string_view text)
{
    return numberIn<double>(trimmed(text)); // Qt passes over any blank here, but over those of ASCII at a whole number
}

int wholeNumber(const XmlElement& element, std::string_view attribute)
{
    const std::optional<int> value = wholeNumber(element.attribute(attribute).value_or(std::string()));
    require(value.has_value(), "taken, though " + std::string(attribute) + " is no whole number");
    return *value;
}

double number(const XmlElement& element, std::string_view attribute)
{
    const std::optional<double> value = number(element.attribute(attribute).value_or(std::string()));
    require(value.has_value(), "taken, though " + std::string(attribute) + " is no number");
    return *value;
}

} // namespace fuzz
