#include "till/delivery/delivery.h"

#include "host/facilities/current_time.h"
#include "host/facilities/log_manager.h"
#include "host/facilities/rest_client.h"
#include "till/delivery/verdict.h"
#include "till/facilities/http_request.h"
#include "till/store/stored_text.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>

#include <algorithm>

namespace till {

namespace {

    using store::QueueRecord;
    using store::RecordState;

    /// What a message asks to be posted. A plain value.
    struct Posting {
        QUrl url;
        QString operation;
        QByteArray body;
        QHash<QString, QString> headers;
    };

    /// None when the message is not what the plug-in writes.
    [[nodiscard]] std::optional<Posting> postingOf(const QByteArray& message)
    {
        if (isLooseJson(message)) {
            return std::nullopt;
        }
        const QJsonObject object = QJsonDocument::fromJson(message).object();
        Posting posting;
        posting.url = QUrl(object[QStringLiteral("url")].toString());
        posting.operation = object[QStringLiteral("request")].toString();
        posting.body = object[QStringLiteral("body")].toString().toUtf8();
        const QJsonObject headers = object[QStringLiteral("headers")].toObject();
        for (auto header = headers.constBegin(); header != headers.constEnd(); ++header) {
            if (!header->isString()) {
                return std::nullopt;
            }
            posting.headers.insert(header.key(), header->toString());
        }
        if (posting.operation.isEmpty() || posting.body.isEmpty() || headers.isEmpty()) {
            return std::nullopt;
        }
        // No server would ever be asked with such headers: the message would wait for one, and those behind it with it.
        if (unusablePart(QUrl(QStringLiteral("http://server/")), posting.headers) != HttpFailure::none) {
            return std::nullopt;
        }
        return posting;
    }

    [[nodiscard]] Log4Qt::Logger* logger()
    {
        return Log4Qt::LogManager::logger(QStringLiteral("till"), QStringLiteral("delivery"));
    }

    [[nodiscard]] QDateTime now()
    {
        return MockFactory<CurrentTime>::create()->getCurrentTime();
    }

    /// The server of the message first, then the others.
    [[nodiscard]] Verdict post(const Posting& posting, const Delivery::Settings& settings)
    {
        QList<QUrl> addresses { posting.url };
        for (const QUrl& server : settings.servers) {
            if (!addresses.contains(server)) {
                addresses.append(server);
            }
        }
        Verdict verdict;
        for (const QUrl& address : std::as_const(addresses)) {
            const QSharedPointer<RestClient> client = MockFactory<RestClient>::create();
            client->setTimeout(settings.timeout);
            client->post(address, posting.body, posting.headers);
            verdict = verdictOn(*client, posting.operation);
            if (verdict.kind != Verdict::Kind::unanswered) {
                break;
            }
        }
        return verdict;
    }

} // namespace

Delivery::Delivery(const Settings& deliverySettings)
    : settings(deliverySettings)
{
    if (!settings.random) {
        settings.random = [] { return QRandomGenerator::global()->generateDouble(); };
    }
}

Delivery::Outcome Delivery::run(bool force, const std::function<bool()>& goOn)
{
    Outcome outcome;
    while (const std::optional<QueueRecord> record = store::firstPending()) {
        const QDateTime time = now();
        // A time further off than we ever set it comes of a clock that has been set back.
        const bool waits = record->notBefore.isValid() && record->notBefore > time
            && record->notBefore <= time.addMSecs(settings.longestWait.count());
        if (waits && !force) {
            outcome.next = record->notBefore;
            break;
        }
        if (goOn && !goOn()) {
            outcome.next = time;
            break;
        }
        const Step step = deliver(*record);
        if (step == Step::waits) {
            const std::optional<QueueRecord> waiting = store::queueRecord(record->id);
            outcome.next = waiting ? waiting->notBefore : time;
            break;
        }
        ++(step == Step::delivered ? outcome.delivered : outcome.steppedAside);
    }
    return outcome;
}

bool Delivery::send(const QueueRecord& record)
{
    return deliver(record) == Step::delivered;
}

Delivery::Step Delivery::deliver(const QueueRecord& record)
{
    const std::optional<Posting> posting = postingOf(record.message);
    const QString id = QString::number(record.id);
    if (!posting) {
        store::setAside(record.id, RecordState::damaged, record.attempts,
                        QStringLiteral("the message cannot be read"));
        logger()->error("Сообщение очереди %1 повреждено и отложено", id);
        return Step::steppedAside;
    }

    const Verdict verdict = post(*posting, settings);
    switch (verdict.kind) {
    case Verdict::Kind::delivered:
        store::removeDelivered(record.id);
        logger()->info("Сообщение очереди %1 доставлено", id);
        failures = 0;
        return Step::delivered;
    case Verdict::Kind::refused:
        store::setAside(record.id, RecordState::refused, record.attempts + 1, verdict.reason);
        logger()->error(QStringLiteral("Сообщение очереди %1 отклонено: %2").arg(id, verdict.reason));
        failures = 0;
        return Step::steppedAside;
    case Verdict::Kind::misanswered:
        if (record.attempts + 1 >= settings.maximumAttempts) {
            store::setAside(record.id, RecordState::refused, record.attempts + 1, verdict.reason);
            logger()->error(QStringLiteral("Сообщение очереди %1 отложено: %2").arg(id, verdict.reason));
            failures = 0;
            return Step::steppedAside;
        }
        store::postpone(record.id, record.attempts + 1, verdict.reason, afterWaiting());
        break;
    case Verdict::Kind::unanswered:
        store::postpone(record.id, record.attempts, verdict.reason, afterWaiting());
        break;
    }
    logger()->error(QStringLiteral("Сообщение очереди %1 не доставлено: %2").arg(id, verdict.reason));
    return Step::waits;
}

QDateTime Delivery::afterWaiting()
{
    constexpr int enough = 20; // doublings; more leave the range of the type
    const qint64 doubled = settings.firstWait.count() << std::min(failures, enough);
    ++failures;
    const qint64 wait = std::min<qint64>(doubled, settings.longestWait.count());
    return now().addMSecs(wait - static_cast<qint64>(settings.random() * static_cast<double>(wait) / 2.0));
}

} // namespace till
