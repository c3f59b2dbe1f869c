#include "tests/fuzz/replies.h"
#include "tests/fuzz/target.h"

#include <map>

// The messages of a reply. The input is the reply, or the text of its result.

namespace fuzz {

namespace {

    using Messages = std::map<int, std::vector<std::string>>;

    [[nodiscard]] Messages messagesIn(const XmlElement& root)
    {
        Messages messages;
        for (const XmlElement* const message : elementsNamed(root, "Msg")) {
            if (const auto device = wholeNumber(message->attribute("Device").value_or(std::string()))) {
                messages[*device].push_back(condensed(message->attribute("Body").value_or(std::string())));
            }
        }
        return messages;
    }

    [[nodiscard]] Messages asRead(const QMap<int, QList<QString>>& read)
    {
        Messages messages;
        for (auto device = read.cbegin(); device != read.cend(); ++device) {
            for (const QString& text : device.value()) {
                messages[device.key()].push_back(condensed(text.toStdString()));
            }
        }
        return messages;
    }

} // namespace

void readMessages(std::string_view input)
{
    const std::string reply = replyTo("GetMessages", input);
    HostileServer server({ { 200, QByteArray::fromStdString(reply) } });
    OpenClient client;
    QMap<int, QList<QString>> read;
    if (endingOf([&] { read = client.getMessages(saleWithCard(), {}, {}, {}); }) != Ending::value) {
        return;
    }

    require(readOtherwise(reply, XmlEncoding::fromTheText).has_value(), "messages of a reply that is not XML");
    const std::string text = firstText(reply, "GetMessagesResult").value_or(std::string());
    Messages expected;
    if (!condensed(text).empty()) {
        const std::optional<XmlElement> root = readOtherwise(text, XmlEncoding::utf8);
        require(root.has_value(), "messages of a result that is not XML");
        expected = messagesIn(*root);
    }
    require(asRead(read) == expected, "other messages, or for other devices");
}

} // namespace fuzz
