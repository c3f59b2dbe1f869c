#include "till/script/service_control.h"

#include "till/script/script_line.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>
#include <QSet>

#include <curl/curl.h>

#include <algorithm>
#include <memory>

namespace till {

namespace {

    struct CloseHandle {
        void operator()(CURL* handle) const
        {
            curl_easy_cleanup(handle);
        }
    };

    size_t takeBytes(const char* data, size_t size, size_t count, void* reply)
    {
        static_cast<QByteArray*>(reply)->append(data, static_cast<qsizetype>(size * count));
        return size * count;
    }

    /// One call of the control address. The till's own client only posts; these are not the plug-in's exchanges.
    [[nodiscard]] QJsonDocument call(const QUrl& control, const QByteArray& method, const QString& path,
                                     const QByteArray& body = {})
    {
        QUrl url(control);
        url.setPath(path);
        const std::unique_ptr<CURL, CloseHandle> handle(curl_easy_init());
        if (!handle) {
            throw ScriptError(QStringLiteral("there is no memory for a call of the sandbox"));
        }
        constexpr long seconds = 10;
        QByteArray reply;
        const QByteArray address = url.toEncoded();
        curl_easy_setopt(handle.get(), CURLOPT_URL, address.constData());
        curl_easy_setopt(handle.get(), CURLOPT_PROXY, "");
        curl_easy_setopt(handle.get(), CURLOPT_NOSIGNAL, 1L);
        curl_easy_setopt(handle.get(), CURLOPT_TIMEOUT, seconds);
        if (method != "GET") {
            curl_easy_setopt(handle.get(), CURLOPT_POST, 1L);
            curl_easy_setopt(handle.get(), CURLOPT_CUSTOMREQUEST, method.constData());
            curl_easy_setopt(handle.get(), CURLOPT_POSTFIELDS, body.constData());
            curl_easy_setopt(handle.get(), CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
        }
        curl_easy_setopt(handle.get(), CURLOPT_WRITEFUNCTION, takeBytes);
        curl_easy_setopt(handle.get(), CURLOPT_WRITEDATA, &reply);
        const CURLcode result = curl_easy_perform(handle.get());
        if (result != CURLE_OK) {
            throw ScriptError(QStringLiteral("the sandbox at %1 does not answer: %2")
                                  .arg(control.toString(), QString::fromUtf8(curl_easy_strerror(result))));
        }
        long status = 0;
        curl_easy_getinfo(handle.get(), CURLINFO_RESPONSE_CODE, &status);
        const QJsonDocument answer = QJsonDocument::fromJson(reply);
        constexpr long success = 200;
        if (status != success) {
            const QString error = answer.object()[QStringLiteral("error")].toString();
            throw ScriptError(QStringLiteral("the sandbox says: %1")
                                  .arg(error.isEmpty() ? QStringLiteral("HTTP status %1").arg(status) : error));
        }
        return answer;
    }

    [[nodiscard]] Kopecks sumOf(const QJsonObject& object, const QString& key)
    {
        bool good = false;
        const double value = object[key].toString().toDouble(&good);
        if (!good) {
            throw ScriptError(QStringLiteral("the sandbox tells no number for %1").arg(key));
        }
        return kopecks(value);
    }

    [[nodiscard]] QString kindOf(const QJsonObject& cheque)
    {
        return cheque[QStringLiteral("type")].toString() + u' ' + cheque[QStringLiteral("status")].toString();
    }

    [[nodiscard]] QList<ServiceCheque> chequesOf(const QJsonObject& books)
    {
        QList<ServiceCheque> cheques;
        for (const QJsonValue& value : books[QStringLiteral("cheques")].toArray()) {
            const QJsonObject cheque = value.toObject();
            // Below zero are points that a return has given back: nothing that paid for anything.
            const Kopecks points = std::max<Kopecks>(0, sumOf(cheque, QStringLiteral("spent")));
            cheques.append({ cheque[QStringLiteral("uid")].toString(), kindOf(cheque),
                             sumOf(cheque, QStringLiteral("amount")), points,
                             cheque[QStringLiteral("status")].toString() == u"Canceled",
                             cheque[QStringLiteral("conflicts")].toInt() });
        }
        return cheques;
    }

} // namespace

ServiceControl::ServiceControl(const QList<ControlledServer>& controlled)
    : servers(controlled)
{
}

bool ServiceControl::isEmpty() const
{
    return servers.isEmpty();
}

const ControlledServer& ServiceControl::server(const std::optional<QString>& name) const
{
    for (const ControlledServer& server : servers) {
        if (!name || server.name == *name) {
            return server;
        }
    }
    throw ScriptError(servers.isEmpty() ? QStringLiteral(
                          "there is no sandbox service to control; name it with --sandbox NAME=SERVICE,CONTROL")
                                        : QStringLiteral("there is no server \"%1\"").arg(name.value_or(QString())));
}

QString ServiceControl::nameOf(const QString& address) const
{
    for (const ControlledServer& server : servers) {
        if (QUrl(address).authority() == server.service.authority()) {
            return server.name;
        }
    }
    return address;
}

void ServiceControl::stop(const ControlledServer& server) const
{
    static_cast<void>(call(server.control, "POST", QStringLiteral("/stop")));
}

void ServiceControl::start(const ControlledServer& server) const
{
    static_cast<void>(call(server.control, "POST", QStringLiteral("/start")));
}

void ServiceControl::setFault(const ControlledServer& server, const QString& kind, const QString& operation,
                              std::optional<int> times, const QString& argument) const
{
    QJsonObject fault { { QStringLiteral("kind"), kind } };
    if (!operation.isEmpty()) {
        fault[QStringLiteral("operation")] = operation;
    }
    if (times) {
        fault[QStringLiteral("times")] = *times;
    }
    if (!argument.isEmpty()) {
        fault[QStringLiteral("arg")] = argument;
    }
    static_cast<void>(call(server.control, "POST", QStringLiteral("/faults"), QJsonDocument(fault).toJson()));
}

void ServiceControl::clearFaults(const ControlledServer& server) const
{
    static_cast<void>(call(server.control, "DELETE", QStringLiteral("/faults")));
}

QJsonObject ServiceControl::books() const
{
    return call(server(std::nullopt).control, "GET", QStringLiteral("/books")).object();
}

QList<QJsonObject> ServiceControl::allBooks() const
{
    QList<QJsonObject> all;
    QSet<QString> seen;
    for (const ControlledServer& server : servers) {
        const QJsonObject books = call(server.control, "GET", QStringLiteral("/books")).object();
        const QString state = books[QStringLiteral("state")].toString();
        if (!seen.contains(state)) {
            seen.insert(state);
            all.append(books);
        }
    }
    return all;
}

QList<ServiceCheque> ServiceControl::cheques() const
{
    return chequesOf(books());
}

QList<ServiceCheque> ServiceControl::allCheques() const
{
    QList<ServiceCheque> all;
    for (const QJsonObject& books : allBooks()) {
        all.append(chequesOf(books));
    }
    return all;
}

QList<ServiceSpending> ServiceControl::spendings() const
{
    // The entries that concern a spending; those of earning and of goods that came back are another matter.
    static const QSet<QString> kinds { QStringLiteral("subtract"), QStringLiteral("cancel"), QStringLiteral("settle"),
                                       QStringLiteral("give-back") };
    QMap<std::pair<QString, QString>, Kopecks> spent;
    for (const QJsonObject& books : allBooks()) {
        for (const QJsonValue& value : books[QStringLiteral("entries")].toArray()) {
            const QJsonObject entry = value.toObject();
            if (kinds.contains(entry[QStringLiteral("kind")].toString())) {
                spent[{ entry[QStringLiteral("card")].toString(), entry[QStringLiteral("uid")].toString() }]
                    -= sumOf(entry, QStringLiteral("points")); // what leaves a card stands there below zero
            }
        }
    }
    QList<ServiceSpending> spendings;
    for (auto it = spent.cbegin(); it != spent.cend(); ++it) {
        spendings.append({ it.key().first, it.key().second, *it });
    }
    return spendings;
}

Kopecks ServiceControl::balance(const QString& card) const
{
    const QJsonArray list = books()[QStringLiteral("cards")].toArray();
    for (const QJsonValue& entry : list) {
        if (entry.toObject()[QStringLiteral("number")].toString() == card) {
            return sumOf(entry.toObject(), QStringLiteral("balance"));
        }
    }
    throw ScriptError(QStringLiteral("the service has no card %1").arg(card));
}

} // namespace till
