#include "bench/exchange/questions.h"

#include "bench/common/bare_post.h"
#include "bench/common/replies.h"

#include <QDomDocument>
#include <QEventLoop>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <stdexcept>

namespace {

constexpr int timeout = 30; // seconds

void require(bool isGood, const std::string& what)
{
    if (!isGood) {
        throw std::runtime_error("no good answer: " + what);
    }
}

/// The cheque alone that the client sends.
[[nodiscard]] std::string chequeSent(const QByteArray& body)
{
    QDomDocument request;
    require(static_cast<bool>(request.setContent(body)), "a request cannot be read");
    return request.documentElement().text().toStdString();
}

} // namespace

Questions::Service::Service(int lineCount)
    : server(repliesToSale(lineCount))
    , stub(server.url().toEncoded())
    , cheque(lineCount)
{
    client.setHosts({ server.url() });
    client.setTimeout(timeout);
}

WireRequest Questions::Service::sentBy(const std::function<void()>& ask)
{
    server.keepRequests(true);
    ask();
    server.keepRequests(false);
    return server.takeRequests().at(0);
}

Questions::Questions()
{
    for (const int lineCount : { 1, 20, 100 }) {
        services.push_back(std::make_unique<Service>(lineCount));
        Service& service = *services.back();
        if (lineCount == 1) {
            add("is_card_valid", service,
                [&service] { require(service.client.isCardValid(QStringLiteral("9000000001")), "is_card_valid"); });
            questions.push_back(
                { "is_card_valid:gsoap", [&service] { require(service.stub.isCardValid("9000000001"), "gsoap"); } });
            continue;
        }
        const std::string name = "get_discounts/" + std::to_string(lineCount);
        const auto ask = [&service, name, lineCount] {
            const auto impacts = service.client.getDiscounts(service.cheque.sale, service.cheque.positionCoupons,
                                                             service.cheque.coupons);
            require(impacts.size() == lineCount, name);
        };
        add(name, service, ask);
        const std::string text = chequeSent(service.sentBy(ask).body);
        questions.push_back(
            { name + ":gsoap", [&service, text] { require(!service.stub.getDiscounts(text).empty(), "gsoap"); } });
    }
}

const std::vector<Question>& Questions::all() const
{
    return questions;
}

void Questions::add(const std::string& name, Service& service, const std::function<void()>& ask)
{
    const WireRequest request = service.sentBy(ask);
    const QUrl url = service.server.url();

    questions.push_back({ name, ask });
    questions.push_back({ name + ":libcurl", [bare = BarePost(url.toEncoded()), request] {
                             require(!bare.post(request.operation, request.body).isEmpty(), "libcurl");
                         } });
    questions.push_back({ name + ":qt_network", [this, url, request] { postThroughQt(url, request, true); } });
    questions.push_back({ name + ":qt_network_fresh", [this, url, request] { postThroughQt(url, request, false); } });
}

void Questions::postThroughQt(const QUrl& url, const WireRequest& request, bool keepsConnection)
{
    QNetworkRequest head(url);
    head.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("text/xml; charset=UTF-8"));
    head.setRawHeader("SOAPAction",
                      "http://tempuri.org/IVantiroService/" + QByteArray::fromStdString(request.operation));
    if (!keepsConnection) {
        head.setRawHeader("Connection", "close");
        manager.clearConnectionCache();
    }
    const std::unique_ptr<QNetworkReply> reply(manager.post(head, request.body));
    if (!reply->isFinished()) {
        QEventLoop loop;
        QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
        loop.exec();
    }
    require(reply->error() == QNetworkReply::NoError && !reply->readAll().isEmpty(), "qt_network");
}
