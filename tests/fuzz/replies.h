#pragma once

#include "bonus/vantiro_bonus_interface.h"
#include "client/exceptions.h"
#include "host/facilities/rest_client.h"
#include "tests/fuzz/other_xml.h"

#include <QByteArray>
#include <QDomElement>
#include <QList>
#include <QString>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace fuzz {

/// How one `post` ends; the status 0 is that of no reply. A plain value.
struct HostileReply {
    int status = 0;
    QByteArray body;
};

/// The parts of an input that holds several, between lines of two per cent signs.
[[nodiscard]] std::vector<std::string_view> partsOf(std::string_view input);

/// A part as a reply: the status in its first line and the body below it; without such a line the whole part is the
/// body of a reply with the status 200.
[[nodiscard]] HostileReply replyOf(std::string_view part);

/// A server that replies as it was told. While one of these lives, it is what `MockFactory<RestClient>` gives out. A
/// `post` beyond the replies finds nobody. [cheque-thread]
class HostileServer : public RestClient {
public:
    explicit HostileServer(const QList<HostileReply>& replies);
    ~HostileServer() override;

    /// The posts made so far.
    [[nodiscard]] qsizetype posts() const;

    void post(const QUrl& url, const QByteArray& body, const QHash<QString, QString>& headers) override;
    [[nodiscard]] int getHttpStatus() override;
    [[nodiscard]] tr::Tr getErrorText() override;
    [[nodiscard]] QByteArray getResponseBody() override;
    void setTimeout(int seconds) override;
    [[nodiscard]] bool isSuccess() override;
    [[nodiscard]] bool hasConnectionError() override;
    [[nodiscard]] bool hasHttpError() override;

private:
    Q_DISABLE_COPY_MOVE(HostileServer)

    QList<HostileReply> script;
    HostileReply last;
    qsizetype made = 0;
};

/// The client with its parts open to view. It has the servers `http://a/`, `http://b/` and `http://c/`, and asks the
/// first. [cheque-thread]
class OpenClient : public VantiroBonusInterface {
public:
    OpenClient();

    using VantiroInterface::currentServerIndex;
    using VantiroInterface::getXmlCheckString;
};

/// A sale of two pieces with a card. A new one at each call. [cheque-thread]
[[nodiscard]] QSharedPointer<AbstractDocument> saleWithCard();

/// The reply to the operation that an input stands for: the input itself when it speaks of an envelope, else one whose
/// result holds the input as text.
[[nodiscard]] std::string replyTo(std::string_view operation, std::string_view input);

/// How an operation ended.
enum class Ending { value, refused, fault, noConnection };

/// Runs the call; what it throws besides the three classes of the client passes through.
[[nodiscard]] Ending endingOf(const std::function<void()>& call);

/// As the operation must read the reply: the text of the only result, or of the first one; nothing when the reply is
/// not XML or has none.
[[nodiscard]] std::optional<std::string> onlyText(std::string_view reply, std::string_view tag);
[[nodiscard]] std::optional<std::string> firstText(std::string_view reply, std::string_view tag);

/// An element of the product's tree in the form of the other parser.
[[nodiscard]] XmlElement asRead(const QDomElement& element);

/// A text whose markup was escaped up to twice, as XML again.
[[nodiscard]] std::string unescaped(std::string text);

/// What a text says as a number; nothing when it says none. White space around it does not count.
[[nodiscard]] std::optional<int> wholeNumber(std::string_view text);
[[nodiscard]] std::optional<double> number(std::string_view text);
/// The same of an attribute, which must be there: throws `BrokenPromise` when it is not, or is no number.
[[nodiscard]] int wholeNumber(const XmlElement& element, std::string_view attribute);
[[nodiscard]] double number(const XmlElement& element, std::string_view attribute);

} // namespace fuzz
