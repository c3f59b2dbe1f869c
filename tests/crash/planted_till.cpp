#include "tests/crash/planted_till.h"

#include "host/facilities/rest_client.h"
#include "host/framework/db_queue_broker.h"
#include "host/framework/session.h"
#include "till/store/document_states.h"
#include "till/store/queue_records.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <utility>

namespace crash {

namespace {

constexpr std::array<std::pair<Defect, const char*>, 6> names { {
    { Defect::none, "none" },
    { Defect::closedBeforeQueued, "closedBeforeQueued" },
    { Defect::removedBeforeAnswer, "removedBeforeAnswer" },
    { Defect::renamedByRestart, "renamedByRestart" },
    { Defect::spendsTwice, "spendsTwice" },
    { Defect::twoBooks, "twoBooks" },
} };

using Headers = QHash<QString, QString>;

[[nodiscard]] bool isRequestOf(const Headers& headers, const QString& operation)
{
    const QString action = headers.value(QStringLiteral("SOAPAction"));
    return action.contains(u'/' + operation);
}

class RemovingClient : public RestClient {
public:
    void post(const QUrl& url, const QByteArray& body, const Headers& headers) override
    {
        const auto record = till::store::firstPending();
        if (record && isRequestOf(headers, QStringLiteral("OfflineAccrual"))) {
            till::store::removeDelivered(record->id);
        }
        RestClient::post(url, body, headers);
    }
};

class RenamingClient : public RestClient {
public:
    void post(const QUrl& url, const QByteArray& body, const Headers& headers) override
    {
        static const QRegularExpression identity(QStringLiteral("(ChequeUID=(?:\"|&quot;))[0-9A-F]{8}"));
        const QString renamed = QString::fromUtf8(body).replace(identity, QStringLiteral("\\1FFFFFFFF"));
        RestClient::post(url, renamed.toUtf8(), headers);
    }
};

class SpendingClient : public RestClient {
public:
    void post(const QUrl& url, const QByteArray& body, const Headers& headers) override
    {
        if (isRequestOf(headers, QStringLiteral("SubtractBonus45"))) {
            RestClient::post(url, body, headers);
        }
        RestClient::post(url, body, headers);
    }
};

class ClosingBroker : public DBQueueBroker {
public:
    void enqueue(const QString& queue, const QJsonObject& message, const QString& extra) override
    {
        till::store::saveAs(Singleton<Session>::get()->getDocument(), till::store::DocumentState::closed);
        DBQueueBroker::enqueue(queue, message, extra);
    }
};

[[nodiscard]] std::unique_ptr<RestClient> clientWith(Defect defect, bool isRestart)
{
    if (defect == Defect::removedBeforeAnswer) {
        return std::make_unique<RemovingClient>();
    }
    if (defect == Defect::spendsTwice) {
        return std::make_unique<SpendingClient>();
    }
    if (defect == Defect::renamedByRestart && isRestart) {
        return std::make_unique<RenamingClient>();
    }
    return nullptr;
}

} // namespace

std::optional<Defect> defectOf(const QString& name)
{
    const auto* const found
        = std::ranges::find_if(names, [&](const auto& one) { return name == QLatin1String(one.second); });
    return found == names.end() ? std::nullopt : std::optional(found->first);
}

QString nameOf(Defect defect)
{
    return QString::fromLatin1(std::ranges::find(names, defect, &std::pair<Defect, const char*>::first)->second);
}

PlantedTill::PlantedTill(Defect defect, bool isRestart)
    : client(clientWith(defect, isRestart))
{
    MockFactory<RestClient>::mocked = client.get();
    if (defect == Defect::closedBeforeQueued) {
        broker = std::make_unique<ClosingBroker>();
        Singleton<DBQueueBroker>::instance = broker.get();
    }
}

PlantedTill::~PlantedTill()
{
    MockFactory<RestClient>::mocked = nullptr;
    if (broker) {
        Singleton<DBQueueBroker>::instance = nullptr;
    }
}

} // namespace crash
