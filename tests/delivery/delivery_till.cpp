#include "tests/delivery/delivery_till.h"

#include "host/framework/db_queue_broker.h"

#include <QJsonObject>
#include <QSqlQuery>
#include <QStringList>
#include <QTimeZone>

using namespace Qt::StringLiterals;

const QByteArray goodReply = R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body>)"
                             R"(<OfflineAccrualResponse xmlns="http://tempuri.org/"/></s:Body></s:Envelope>)";

QByteArray faultReply(const QByteArray& text)
{
    return R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body><s:Fault><faultstring>)" + text
        + "</faultstring></s:Fault></s:Body></s:Envelope>";
}

ScriptedTime::ScriptedTime()
    : moment(QDate(2026, 11, 21), QTime(12, 0), QTimeZone::utc())
{
    EXPECT_EQ(MockFactory<CurrentTime>::mocked, nullptr) << "two substitutes at once";
    MockFactory<CurrentTime>::mocked = this;
}

ScriptedTime::~ScriptedTime()
{
    MockFactory<CurrentTime>::mocked = nullptr;
}

void ScriptedTime::advance(std::chrono::milliseconds time)
{
    moment = moment.addMSecs(time.count());
}

QDateTime ScriptedTime::getCurrentTime() const
{
    return moment;
}

DeliveryTill::DeliveryTill()
{
    reopen();
}

DeliveryTill::~DeliveryTill()
{
    till::store::close();
}

void DeliveryTill::reopen()
{
    till::store::open(place.filePath(u"till"_s));
    QSqlQuery query = till::store::prepare(u"PRAGMA synchronous = OFF"_s); // the power does not go here
    till::store::execute(query);
}

void DeliveryTill::closeStore()
{
    till::store::close();
}

void DeliveryTill::enqueue(const QString& text, const QString& server)
{
    const QJsonObject headers {
        { u"Content-Type"_s, u"text/xml; charset=utf-8"_s },
        { u"SOAPAction"_s, u"http://tempuri.org/IVantiroService/OfflineAccrual"_s },
        { u"Authorization"_s, u"Basic a2Fzc2E6c2VjcmV0"_s },
    };
    DBQueueBroker().enqueue(u"vantiro"_s,
                            { { u"url"_s, server },
                              { u"request"_s, u"OfflineAccrual"_s },
                              { u"headers"_s, headers },
                              { u"body"_s, QString(u"<e>"_s + text + u"</e>"_s) } },
                            QString());
}

void DeliveryTill::enqueueRaw(const QString& message)
{
    QSqlQuery query = till::store::prepare(
        u"INSERT INTO queue (queue, message, extra, queued_at) VALUES ('vantiro', ?, '', '2026-11-21T12:00:00.000Z')"_s);
    query.addBindValue(message);
    till::store::execute(query);
}

std::string DeliveryTill::queue()
{
    using enum till::store::RecordState;
    QStringList lines;
    const QList<till::store::QueueRecord> records = till::store::queueRecords();
    for (const till::store::QueueRecord& record : records) {
        QString line = QString::number(record.id)
            + (record.state == pending       ? u" pending"_s
                   : record.state == held    ? u" held"_s
                   : record.state == refused ? u" refused"_s
                                             : u" damaged"_s);
        if (record.attempts != 0) {
            line += u", %1 wrong"_s.arg(record.attempts);
        }
        if (!record.reason.isEmpty()) {
            line += u": "_s + record.reason;
        }
        lines.append(line);
    }
    return lines.join(u'\n').toStdString();
}

qint64 DeliveryTill::waits(const QDateTime& from)
{
    const auto record = till::store::firstPending();
    return record && record->notBefore.isValid() ? from.msecsTo(record->notBefore) : -1;
}
