#include "client/vantiro_interface.h"

#include "client/ping_task_result.h"
#include "client/wire.h"
#include "client/xml_writer.h"
#include "host/facilities/log_manager.h"
#include "host/facilities/rest_client.h"
#include "host/framework/activity_notifier.h"

using namespace vantiro;

namespace {

const QString serverIndexKey = QStringLiteral("serverIndex");
constexpr int noServer = -1;

} // namespace

QSharedPointer<TaskResult> VantiroInterface::ping() const
{
    const QString action = QStringLiteral("Ping");
    wire::Request request(action);
    createXmlRequest(request.getDocument(), request.getBody());
    const QByteArray body = writeXml(request.getDocument()).toUtf8();
    const QHash<QString, QString> headers = createHttpHeaders(action);

    const QSharedPointer<RestClient> client = MockFactory<RestClient>::create();
    client->setTimeout(timeout);
    client->setLogger(
        Log4Qt::LogManager::logger(QStringLiteral("taskmanager"), QStringLiteral("vantiroping")));

    const auto result = QSharedPointer<PingTaskResult>::create();
    result->data.insert(serverIndexKey, noServer);
    for (int index = 0; index < hosts.size(); ++index) {
        client->post(hosts.at(index), body, headers);
        if (client->isSuccess()) {
            result->available = true;
            result->data.insert(serverIndexKey, index);
            break;
        }
    }
    return result;
}

void VantiroInterface::actualizeServer()
{
    logger->info("Пинг серверов");
    if (currentServerIndex == 0) {
        logger->info("Пинг не требуется - уже выбран самый приоритетный сервер");
        return;
    }

    const QSharedPointer<BasicTask> task = QSharedPointer<CustomTask>::create([this] { return ping(); });
    task->addTaskResultHandler([this](const QSharedPointer<TaskResult>& result) {
        changeServer(result->data.value(serverIndexKey).toInt());
    });
    const QMap<QString, QVariant> arguments { { QStringLiteral("task"), QVariant::fromValue(task) } };
    Singleton<ActivityNotifier>::get()->notify(Event(EActivityListener::runTask, arguments));
}

void VantiroInterface::changeServer(int serverIndex)
{
    // Where no server answered, the next request starts at the top of the list and fails over from there.
    currentServerIndex = serverIndex == noServer ? 0 : serverIndex;
}
