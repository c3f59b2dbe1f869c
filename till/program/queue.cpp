#include "till/delivery/delivery.h"
#include "till/facilities/redaction.h"
#include "till/program/commands.h"
#include "till/program/player_session.h"
#include "till/store/queue_records.h"

#include "host/facilities/config.h"
#include "host/facilities/exceptions.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include <algorithm>
#include <cstdio>

#include <unistd.h>

namespace till {

namespace {

    using store::QueueRecord;
    using store::RecordState;

    [[nodiscard]] QString stateName(RecordState state)
    {
        switch (state) {
        case RecordState::pending:
            return QStringLiteral("pending");
        case RecordState::held:
            return QStringLiteral("held");
        case RecordState::refused:
            return QStringLiteral("refused");
        case RecordState::damaged:
            return QStringLiteral("damaged");
        }
        return QString();
    }

    /// The message without what nobody but the server may see.
    [[nodiscard]] QJsonObject shownMessage(const QueueRecord& record)
    {
        QJsonObject message = QJsonDocument::fromJson(record.message).object();
        QJsonObject headers = message[QStringLiteral("headers")].toObject();
        if (headers.contains(QStringLiteral("Authorization"))) {
            headers[QStringLiteral("Authorization")] = QStringLiteral("***");
            message[QStringLiteral("headers")] = headers;
        }
        QUrl address(message[QStringLiteral("url")].toString());
        if (!address.userInfo().isEmpty()) {
            address.setUserInfo(QString());
            message[QStringLiteral("url")] = address.toString();
        }
        return message;
    }

    [[nodiscard]] QueueRecord recordOf(const QueueOptions& options)
    {
        if (!options.id) {
            throw CommandError(QStringLiteral("name the record: vantiro-till queue %1 ID (list shows the numbers)")
                                   .arg(options.action));
        }
        const std::optional<QueueRecord> record = store::queueRecord(*options.id);
        if (!record) {
            throw CommandError(QStringLiteral("there is no record %1 in the queue").arg(*options.id));
        }
        return *record;
    }

    [[nodiscard]] int list()
    {
        const QList<QueueRecord> records = store::queueRecords();
        for (const QueueRecord& record : records) {
            writeLine(QStringLiteral("%1  %2  %3  attempts %4  %5")
                          .arg(QString::number(record.id).rightJustified(6),
                               record.queuedAt.toLocalTime().toString(Qt::ISODate),
                               stateName(record.state).leftJustified(8), QString::number(record.attempts),
                               record.reason)
                          .trimmed());
        }
        writeLine(QStringLiteral("%1 in the queue").arg(records.size()));
        return 0;
    }

    [[nodiscard]] int show(const QueueRecord& record)
    {
        writeLine(QStringLiteral("record %1 of the queue \"%2\", %3, queued %4, attempts %5")
                      .arg(QString::number(record.id), record.queue, stateName(record.state),
                           record.queuedAt.toLocalTime().toString(Qt::ISODate), QString::number(record.attempts)));
        if (!record.reason.isEmpty()) {
            writeLine(QStringLiteral("reason: ") + record.reason);
        }
        if (record.state == RecordState::damaged) {
            writeLine(redact(QString::fromUtf8(record.message)));
            return 0;
        }
        const QJsonObject message = shownMessage(record);
        writeLine(QStringLiteral("url: ") + message[QStringLiteral("url")].toString());
        const QJsonObject headers = message[QStringLiteral("headers")].toObject();
        for (auto header = headers.constBegin(); header != headers.constEnd(); ++header) {
            writeLine(QStringLiteral("%1: %2").arg(header.key(), header->toString()));
        }
        writeLine(message[QStringLiteral("body")].toString());
        return 0;
    }

    [[nodiscard]] int send(const QueueOptions& options)
    {
        Delivery::Settings settings;
        settings.timeout = Singleton<Config>::get()->getInt(QStringLiteral("Till:deliveryTimeout"), 30);
        Delivery delivery(settings);
        if (options.id) {
            const QueueRecord record = recordOf(options);
            if (delivery.send(record)) {
                writeLine(QStringLiteral("record %1 delivered").arg(record.id));
                return 0;
            }
            const std::optional<QueueRecord> left = store::queueRecord(record.id);
            writeLine(QStringLiteral("record %1 not delivered: %2")
                          .arg(QString::number(record.id), left ? left->reason : QString()));
            return 1;
        }
        const qsizetype all = store::queueRecords().size();
        const bool progress = ::isatty(STDERR_FILENO) != 0;
        int tried = 0;
        const Delivery::Outcome outcome = delivery.run(true, [&] {
            if (progress) {
                std::fprintf(stderr, "\r%d of %lld ", ++tried, static_cast<long long>(all));
            }
            return true;
        });
        if (progress) {
            std::fprintf(stderr, "\r             \r");
        }
        const qsizetype left = store::queueRecords().size();
        writeLine(
            QStringLiteral("delivered %1, stepped aside %2, left in the queue %3")
                .arg(QString::number(outcome.delivered), QString::number(outcome.steppedAside), QString::number(left)));
        if (left != 0) {
            writeLine(QStringLiteral("vantiro-till queue list tells why"));
        }
        return left == 0 ? 0 : 1;
    }

    [[nodiscard]] int exportAll(const QueueOptions& options)
    {
        QJsonArray array;
        const QList<QueueRecord> records = store::queueRecords();
        for (const QueueRecord& record : records) {
            array.append(QJsonObject { { QStringLiteral("id"), record.id },
                                       { QStringLiteral("queue"), record.queue },
                                       { QStringLiteral("state"), stateName(record.state) },
                                       { QStringLiteral("reason"), record.reason },
                                       { QStringLiteral("attempts"), record.attempts },
                                       { QStringLiteral("queuedAt"), record.queuedAt.toString(Qt::ISODateWithMs) },
                                       { QStringLiteral("message"), shownMessage(record) } });
        }
        const QByteArray json = QJsonDocument(array).toJson();
        if (options.file.isEmpty()) {
            std::fwrite(json.constData(), 1, static_cast<std::size_t>(json.size()), stdout);
            return 0;
        }
        QFile file(options.file);
        // What is there already is not ours to overwrite.
        if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly) || file.write(json) != json.size() || !file.flush()) {
            throw CommandError(QStringLiteral("%1 cannot be written: %2").arg(options.file, file.errorString()));
        }
        writeLine(
            QStringLiteral("%1 records in %2, without credentials").arg(QString::number(records.size()), options.file));
        return 0;
    }

} // namespace

int queue(const QueueOptions& options)
try {
    requireTill(options.places);
    const OpenTill till(options.places);
    if (options.action == u"list") {
        return list();
    }
    if (options.action == u"show") {
        return show(recordOf(options));
    }
    if (options.action == u"send") {
        return send(options);
    }
    if (options.action == u"export") {
        return exportAll(options);
    }
    const QueueRecord record = recordOf(options);
    if (options.action == u"hold") {
        store::setAside(record.id, RecordState::held, record.attempts, QStringLiteral("held by the operator"));
        writeLine(QStringLiteral("record %1 is held").arg(record.id));
    } else {
        store::release(record.id);
        writeLine(QStringLiteral("record %1 is pending again").arg(record.id));
    }
    return 0;
} catch (const BasicException& failure) {
    throw CommandError(failure.tr().ru());
}

} // namespace till
