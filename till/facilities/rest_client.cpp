#include "host/facilities/rest_client.h"

#include "host/facilities/log_manager.h"
#include "till/exchange_events.h"
#include "till/facilities/http_exchange.h"
#include "till/facilities/http_failure.h"
#include "till/facilities/http_library.h"
#include "till/facilities/http_request.h"

#include <QElapsedTimer>

#include <chrono>
#include <exception>

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds defaultTimeout(5);
constexpr int firstSuccess = 200;
constexpr int lastSuccess = 299;

enum class Ending {
    notYet,
    noReply,
    reply,
};

bool isSuccessStatus(int status)
{
    return status >= firstSuccess && status <= lastSuccess;
}

}

struct RestClient::Private {
    const Log4Qt::Logger* logger = nullptr;
    std::chrono::seconds timeout = defaultTimeout;

    Ending ending = Ending::notYet;
    int status = 0;
    QByteArray body;
    tr::Tr error;

    void exchange(const QUrl& url, const QByteArray& content, const QHash<QString, QString>& headers);
    [[nodiscard]] till::HttpResult ask(const QUrl& url, const QByteArray& content,
                                       const QHash<QString, QString>& headers) const;
    void describe(const QString& address, const till::HttpResult& result);
    void log(const QString& address, const till::HttpResult& result, qint64 milliseconds) const;
};

void RestClient::Private::exchange(const QUrl& url, const QByteArray& content, const QHash<QString, QString>& headers)
{
    const QString address = till::shownAddress(url);
    till::ExchangeEvent event { address, headers.value(u"SOAPAction"_s).section(u'/', -1), content, 0, {}, {}, 0 };
    if (till::answerExchange(event)) {
        ending = event.status == 0 ? Ending::noReply : Ending::reply;
        status = event.status;
        body = event.reply;
        error = event.failure.isEmpty() ? tr::Tr() : tr::Tr(event.failure);
        till::tellExchange(event);
        return;
    }
    QElapsedTimer clock;
    clock.start();
    till::HttpResult result = ask(url, content, headers);
    const qint64 took = clock.elapsed();

    // The outcome stands before anything that needs memory: an executed request must not look like a failed one.
    if (result.failure == till::HttpFailure::none) {
        ending = Ending::reply;
        status = result.status;
        body.swap(result.body);
    }
    describe(address, result);
    log(address, result, took);
    event.status = status;
    event.reply = body;
    event.failure = error.ru();
    event.milliseconds = took;
    till::tellExchange(event);
}

till::HttpResult RestClient::Private::ask(const QUrl& url, const QByteArray& content,
                                          const QHash<QString, QString>& headers) const
{
    const till::HttpFailure unusable = till::unusablePart(url, headers);
    if (unusable != till::HttpFailure::none) {
        till::HttpResult refused;
        refused.failure = unusable;
        return refused;
    }
    const auto library = till::HttpLibrary::get();
    const till::HeaderLines lines = till::headerLines(headers);
    return till::exchangeHttp(*library, till::requestAddress(url), content, lines.get(), timeout);
}

void RestClient::Private::describe(const QString& address, const till::HttpResult& result)
{
    if (result.failure != till::HttpFailure::none) {
        error = till::failureText(address, till::reasonOf(result.failure, timeout), result.detail);
    } else if (result.isTooLarge) {
        error = till::failureText(address, till::reasonOfSize(status), {});
    } else if (!isSuccessStatus(status)) {
        error = till::failureText(address, till::reasonOfStatus(status), {});
    }
}

void RestClient::Private::log(const QString& address, const till::HttpResult& result, qint64 milliseconds) const
{
    const QString failure = error.ru();
    const QString outcome = failure.isEmpty() ? u"%1: код HTTP %2"_s.arg(address, QString::number(status)) : failure;
    const QString line = u"POST %1; отправлено %2 Б, получено %3 Б, %4 мс"_s.arg(
        outcome, QString::number(result.sent), QString::number(result.received), QString::number(milliseconds));
    if (logger != nullptr) {
        logger->debug(line);
    } else {
        Log4Qt::LogManager::logger(u"restclient"_s, {})->debug(line);
    }
}

RestClient::RestClient()
    : d(std::make_unique<Private>())
{
}

RestClient::~RestClient() = default;

void RestClient::post(const QUrl& url, const QByteArray& body, const QHash<QString, QString>& headers)
{
    d->ending = Ending::noReply;
    d->status = 0;
    d->body = QByteArray();
    d->error = tr::Tr();
    try {
        d->exchange(url, body, headers);
    } catch (const std::exception&) {
        // Memory has run out, so there is none for a text either; the ending tells what happened.
    }
}

int RestClient::getHttpStatus()
{
    return d->status;
}

tr::Tr RestClient::getErrorText()
{
    return d->error;
}

QByteArray RestClient::getResponseBody()
{
    return d->body;
}

void RestClient::setTimeout(int seconds)
{
    d->timeout = seconds < 1 ? defaultTimeout : std::chrono::seconds(seconds);
}

bool RestClient::isSuccess()
{
    return d->ending == Ending::reply && isSuccessStatus(d->status);
}

bool RestClient::hasConnectionError()
{
    return d->ending == Ending::noReply;
}

bool RestClient::hasHttpError()
{
    return d->ending == Ending::reply && !isSuccessStatus(d->status);
}

void RestClient::setLogger(const Log4Qt::Logger* logger)
{
    d->logger = logger;
}

template class MockFactory<RestClient>;
