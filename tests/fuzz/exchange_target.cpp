#include "tests/fuzz/replies.h"
#include "tests/fuzz/target.h"
#include "till/log_events.h"

#include <QDomDocument>

#include <algorithm>

// The exchange with up to three servers. The input holds their replies in the order in which they are asked.

namespace fuzz {

namespace {

    constexpr int servers = 3;

    [[nodiscard]] bool isSuccess(int status)
    {
        return status >= 200 && status <= 299;
    }

    /// Who is asked, and who is used from then on.
    struct Walk {
        int posts = 1;
        int lastStatus = 0;
        int serverAfterwards = 0;
    };

    [[nodiscard]] Walk walkOver(const QList<HostileReply>& replies)
    {
        const auto statusOf = [&](int index) { return replies.value(index).status; };
        Walk walk { 1, statusOf(0), 0 };
        if (walk.lastStatus == 0) {
            for (int index = 1; index < servers && walk.serverAfterwards == 0; ++index) {
                walk.lastStatus = statusOf(index);
                ++walk.posts;
                walk.serverAfterwards = isSuccess(walk.lastStatus) ? index : 0;
            }
        }
        return walk;
    }

    void checkValue(const QDomDocument& answer, const XmlElement& root)
    {
        require(elementsNamed(root, "s:Fault").empty(), "a fault that was taken for an answer");
        const std::string found = difference(asRead(answer.documentElement()), root);
        require(found.empty(), "the reply was read as something else: " + found);
    }

    void checkFault(const std::string& told, const XmlElement& root)
    {
        require(!elementsNamed(root, "s:Fault").empty(), "a fault that nobody has sent");
        std::string sent;
        for (const XmlElement* const text : elementsNamed(root, "faultstring")) {
            sent += text->text;
        }
        require(condensed(told) == condensed(sent), "the text of a fault is not the server's");
    }

    /// The declaration names something, and no form of Unicode.
    [[nodiscard]] bool isInOldCharset(const std::string& text)
    {
        const std::string declaration = text.starts_with("<?xml") ? text.substr(0, text.find("?>")) : std::string();
        return declaration.find("encoding") != std::string::npos && declaration.find("utf") == std::string::npos
            && declaration.find("UTF") == std::string::npos;
    }

    void checkAnswer(Ending ending, const QDomDocument& answer, const std::string& fault, const QByteArray& body)
    {
        if (ending == Ending::refused) {
            return; // what is refused may be good to others: limits are our own
        }
        const std::string text = body.toStdString();
        if (isInOldCharset(text)) {
            return; // converters differ in the names that they know, and in bytes that stand for nothing
        }
        const std::optional<XmlElement> root = readOtherwise(text, XmlEncoding::fromTheText);
        require(root.has_value(), "taken, though it is not XML");
        if (ending == Ending::value) {
            checkValue(answer, *root);
        } else {
            checkFault(fault, *root);
        }
    }

} // namespace

void readExchange(std::string_view input)
{
    constexpr qsizetype longestLine = 1000;
    QList<HostileReply> replies;
    for (const std::string_view part : partsOf(input)) {
        replies.append(replyOf(part));
    }
    HostileServer server(replies);
    OpenClient client;
    int errors = 0;
    qsizetype longest = 0;
    const till::LogSubscription log = till::observeLog([&](const till::LogEvent& event) {
        errors += event.level == till::LogLevel::error ? 1 : 0;
        longest = std::max(longest, event.text.size());
    });

    QDomDocument request;
    QDomElement body = request.createElement(QStringLiteral("soapenv:Body"));
    body.appendChild(request.createElement(QStringLiteral("tem:Probe")));
    QDomDocument answer;
    std::string fault;
    const Ending ending = endingOf([&] {
        try {
            answer = client.processSoapMessage(request, body, QStringLiteral("Probe"));
        } catch (const VantiroFaultException& told) {
            fault = told.tr().ru().toStdString();
            throw;
        }
    });

    const Walk walk = walkOver(replies);
    require(server.posts() == walk.posts, "the wrong number of servers was asked");
    require(client.currentServerIndex == walk.serverAfterwards, "the wrong server is in use afterwards");
    const bool answered = isSuccess(walk.lastStatus) || walk.lastStatus == 500;
    require((ending == Ending::noConnection) == !answered, "a lost connection and an answer were taken for each other");
    const bool failed = ending == Ending::noConnection || ending == Ending::refused;
    require(errors == (failed ? 1 : 0), "not one error in the log for each failure that has no text of its own");
    require(longest < longestLine, "a reply fills the log");
    if (answered) {
        checkAnswer(ending, answer, fault, replies.value(walk.posts - 1).body);
    }
}

} // namespace fuzz
