#include "sandbox/fault_reply.h"

#include "sandbox/connection.h"

#include <algorithm>

namespace sandbox {

namespace {

constexpr const char* contentType = "text/xml; charset=utf-8";

/// Parts of a text that is never held as a whole: a head, a middle that is one piece again and again, a tail.
class RepeatedText {
public:
    RepeatedText(std::string first, std::string middle, std::size_t count, std::string last)
        : head(std::move(first))
        , piece(std::move(middle))
        , middleSize(piece.size() * count)
        , tail(std::move(last))
    {
    }

    [[nodiscard]] std::size_t size() const
    {
        return head.size() + middleSize + tail.size();
    }

    [[nodiscard]] std::string part(std::size_t offset, std::size_t length) const
    {
        std::string text;
        for (; length > 0; --length, ++offset) {
            if (offset < head.size()) {
                text += head[offset];
            } else if (offset < head.size() + middleSize) {
                text += piece[(offset - head.size()) % piece.size()];
            } else {
                text += tail[offset - head.size() - middleSize];
            }
        }
        return text;
    }

private:
    std::string head;
    std::string piece;
    std::size_t middleSize;
    std::string tail;
};

void send(httplib::Response& response, const RepeatedText& text)
{
    static constexpr std::size_t chunk = 65'536;
    response.body.clear();
    response.set_content_provider(text.size(), contentType,
                                  [text](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
                                      const std::string part = text.part(offset, std::min(length, chunk));
                                      return sink.write(part.data(), part.size());
                                  });
}

constexpr const char* begin = "<s:Envelope xmlns:s=\"http://schemas.xmlsoap.org/soap/envelope/\"><s:Body><Filler>";
constexpr const char* end = "</Filler></s:Body></s:Envelope>";

void sendGiant(httplib::Response& response, std::size_t size)
{
    const std::size_t frame = std::string_view(begin).size() + std::string_view(end).size();
    send(response, RepeatedText(begin, "x", size > frame ? size - frame : 0, end));
}

void sendNested(httplib::Response& response, std::size_t levels)
{
    std::string opening;
    std::string closing;
    for (std::size_t i = 0; i < levels; ++i) {
        opening += "<n>";
        closing += "</n>";
    }
    response.set_content(begin + opening + closing + end, contentType);
}

}

void spoilReply(const Fault& fault, httplib::Response& response)
{
    switch (fault.kind) {
    case FaultKind::reset:
        // The header is longer than this, so that the cut falls between its middle and that of the body.
        Connection::current().resetAfter(64 + response.body.size() / 2);
        break;
    case FaultKind::drop:
        Connection::current().hangUp();
        break;
    case FaultKind::truncated:
        response.body.resize(response.body.size() / 2);
        break;
    case FaultKind::notXml:
        response.set_content("<!DOCTYPE html><html><body><h1>It works!<p>Welcome & enjoy</body></html>", "text/html");
        break;
    case FaultKind::giant:
        sendGiant(response, static_cast<std::size_t>(fault.number()));
        break;
    case FaultKind::nested:
        sendNested(response, static_cast<std::size_t>(fault.number()));
        break;
    default:
        break; // the others do not touch a reply
    }
}

}
