#include "tests/faults/faulty_server.h"

#include "tests/faults/service_replies.h"
#include "tests/support/loopback_server.h"

#include <stdexcept>

using namespace Qt::StringLiterals;
using vantiro_test::Answer;
using vantiro_test::HttpRequest;
using vantiro_test::LoopbackServer;

namespace faults {

namespace {

class HttpServer : public FaultyServer {
public:
    HttpServer(const Order& order, const MakeAnswer& answer)
        : server([order, answer](const HttpRequest& request) {
            const QByteArray action = actionOf(request);
            const QByteArray good = responseTo(action);
            return action == order.action ? answer(good, order) : Answer::raw(http("200 OK", good));
        })
    {
    }

    [[nodiscard]] QUrl url() const override
    {
        return server.url();
    }

    [[nodiscard]] int asked(const QByteArray& action) const override
    {
        int count = 0;
        for (const HttpRequest& request : server.requests()) {
            count += actionOf(request) == action ? 1 : 0;
        }
        return count;
    }

private:
    LoopbackServer server;
};

[[nodiscard]] QList<NamedFault> allFaults()
{
    return connectionFaults() + framingFaults() + replyFaults();
}

/// The number behind the word, -1 when the name is not made so.
[[nodiscard]] qsizetype numberBehind(const QString& word, const QString& name)
{
    bool ok = false;
    const int number = name.startsWith(word) ? name.sliced(word.size()).toInt(&ok) : -1;
    return ok ? number : -1;
}

}

FaultyServer::~FaultyServer() = default;

int FaultyServer::asked(const QByteArray& /*action*/) const
{
    return 0;
}

NamedFault answering(const QString& name, const MakeAnswer& answer)
{
    return { name, [answer](const Order& order) { return std::make_unique<HttpServer>(order, answer); } };
}

QStringList faultNames()
{
    QStringList names;
    for (const NamedFault& fault : allFaults()) {
        names.append(fault.name);
    }
    return names;
}

std::unique_ptr<FaultyServer> serverWith(const QString& fault, const Order& order)
{
    for (const NamedFault& known : allFaults()) {
        if (known.name == fault) {
            return known.make(order);
        }
    }
    if (const qsizetype bytes = numberBehind(u"CutAfter"_s, fault); bytes >= 0) {
        return std::make_unique<HttpServer>(order, [bytes](const QByteArray& good, const Order&) {
            return Answer::raw(http("200 OK", good)).cutAfter(bytes).hangUp();
        });
    }
    if (const qsizetype bytes = numberBehind(u"ResetAfter"_s, fault); bytes >= 0) {
        return std::make_unique<HttpServer>(order, [bytes](const QByteArray& good, const Order&) {
            return Answer::raw(http("200 OK", good)).cutAfter(bytes).reset();
        });
    }
    throw std::invalid_argument("there is no fault " + fault.toStdString());
}

qsizetype sizeOfReply(const QByteArray& action)
{
    return http("200 OK", responseTo(action)).size();
}

}
