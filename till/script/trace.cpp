#include "till/script/trace.h"

#include "till/facilities/redaction.h"
#include "till/work_events.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace till {

namespace {

    constexpr int traceVersion = 1;

    [[nodiscard]] QJsonArray masked(const QStringList& texts)
    {
        QJsonArray array;
        for (const QString& text : texts) {
            array.append(redact(text));
        }
        return array;
    }

    [[nodiscard]] QByteArray lineOf(const QJsonObject& object)
    {
        return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
    }

    /// The configuration without user and password, wherever they stand.
    [[nodiscard]] QString withoutCredentials(const QString& configuration)
    {
        static const QRegularExpression settings(uR"(^[ \t]*(?:user|password)[ \t]*=.*\R?)"_s,
                                                 QRegularExpression::MultilineOption
                                                     | QRegularExpression::CaseInsensitiveOption);
        static const QRegularExpression userInformation(uR"(://[^/@,\s"]*@)"_s);
        return QString(configuration).remove(settings).replace(userInformation, u"://"_s);
    }

    /// The order in which attributes are written differs from process to process, and means nothing.
    [[nodiscard]] QString withSortedAttributes(const QString& text)
    {
        static const QRegularExpression tags(uR"((?<=<)([\w:.-]{1,64}+)((?:\s++[\w:.-]{1,64}+="[^"<]*+"){2,}+))"_s);
        static const QRegularExpression attributes(uR"([\w:.-]++="[^"]*+")"_s);
        QString result;
        qsizetype kept = 0;
        for (auto match = tags.globalMatch(text); match.hasNext();) {
            const QRegularExpressionMatch tag = match.next();
            QStringList sorted;
            for (auto one = attributes.globalMatch(tag.captured(2)); one.hasNext();) {
                sorted.append(one.next().captured());
            }
            sorted.sort();
            result += QStringView(text).sliced(kept, tag.capturedStart(2) - kept).toString() + u' ' + sorted.join(u' ');
            kept = tag.capturedEnd(2);
        }
        return result + QStringView(text).sliced(kept).toString();
    }

    /// Events that a repetition must show too, in order, as texts that may be compared.
    class Comparable {
    public:
        Comparable(const Trace& trace, qint64 lastStep)
        {
            for (const QJsonObject& event : trace.events) {
                if (event[u"event"_s] != u"search"_s && event[u"step"_s].toInteger() <= lastStep) {
                    QJsonObject kept = event;
                    kept.remove(u"milliseconds"_s);
                    events.append(kept);
                }
            }
        }

        [[nodiscard]] qsizetype size() const
        {
            return events.size();
        }

        [[nodiscard]] const QJsonObject& at(qsizetype index) const
        {
            return events.at(index);
        }

        /// The text of a value, with times and identities replaced by their places.
        [[nodiscard]] QString text(const QString& key, const QJsonValue& value)
        {
            // A reply is repeated word for word, and so are the identities in what comes of it.
            const bool ofTheService = key == u"reply" || key == u"shown" || key == u"printed";
            const QString text = withSortedAttributes(
                value.isString() ? value.toString()
                                 : QString::fromUtf8(
                                     QJsonDocument(QJsonObject { { u"is"_s, value } }).toJson(QJsonDocument::Compact)));
            static const QRegularExpression changing(
                uR"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d(?:\.\d+)?Z?|[0-9A-Fa-f]{8}(?:-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12})"_s);
            QString result;
            qsizetype kept = 0;
            for (auto match = changing.globalMatch(text); match.hasNext();) {
                const QRegularExpressionMatch found = match.next();
                result += QStringView(text).sliced(kept, found.capturedStart() - kept);
                const QString token = found.captured();
                if (token.contains(u'T')) {
                    result += u"(time)"_s;
                } else {
                    result += ofTheService ? token : u"(identity %1)"_s.arg(placeOf(token.toLower()));
                }
                kept = found.capturedEnd();
            }
            return result + QStringView(text).sliced(kept).toString();
        }

    private:
        [[nodiscard]] qsizetype placeOf(const QString& identity)
        {
            const auto known = identities.constFind(identity);
            return known != identities.constEnd() ? *known : *identities.insert(identity, identities.size() + 1);
        }

        QList<QJsonObject> events;
        QMap<QString, qsizetype> identities;
    };

    [[nodiscard]] QString nameOf(const QJsonObject& event)
    {
        QString name = event[u"event"_s].toString();
        for (const QString& key : { u"hook"_s, u"action"_s, u"state"_s }) {
            if (const QString value = event[key].toString(); !value.isEmpty()) {
                name += u' ' + value;
            }
        }
        return name;
    }

    /// The lines of both texts from the first one that differs, one each.
    [[nodiscard]] QStringList bothLines(const QString& before, const QString& now)
    {
        const QStringList first = before.split(u'\n');
        const QStringList second = now.split(u'\n');
        qsizetype line = 0;
        while (line < first.size() && line < second.size() && first.at(line) == second.at(line)) {
            ++line;
        }
        return { u"recorded: "_s + first.value(line, u"(nothing)"_s),
                 u"now:      "_s + second.value(line, u"(nothing)"_s) };
    }

} // namespace

void TraceRecorder::begin(const QString& file, const Trace& head)
{
    QFile output(file);
    QJsonObject servers;
    for (const ControlledServer& server : head.servers) {
        servers[server.name] = server.service.toString(QUrl::RemoveUserInfo);
    }
    const QByteArray header = lineOf({ { u"trace"_s, traceVersion },
                                       { u"script"_s, redact(head.script) },
                                       { u"configuration"_s, withoutCredentials(head.configuration) },
                                       { u"servers"_s, servers } });
    if (!output.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFile::ReadOwner | QFile::WriteOwner)
        || output.write(header) != header.size() || !output.flush()) {
        throw ScriptError(u"the trace %1 cannot be written: %2; name a new file"_s.arg(file, output.errorString()));
    }
}

TraceRecorder::TraceRecorder(const QString& file)
    : output(file)
{
    if (!output.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::ExistingOnly)) {
        throw ScriptError(u"the trace %1 cannot be written: %2"_s.arg(file, output.errorString()));
    }
    observeWork([this](const WorkEvent& event) {
        const bool isHook = event.kind == u"hook";
        write({ { u"event"_s, event.kind },
                { isHook ? u"hook"_s : u"state"_s, event.name },
                { isHook ? u"result"_s : u"document"_s, redact(event.detail) } });
    });
}

TraceRecorder::~TraceRecorder()
{
    observeWork({});
}

void TraceRecorder::step(qsizetype index)
{
    {
        const std::lock_guard lock(mutex);
        current = index;
    }
    write({ { u"event"_s, u"step"_s } });
}

void TraceRecorder::said(const QStringList& shown, const QStringList& printed)
{
    write({ { u"event"_s, u"said"_s }, { u"shown"_s, masked(shown) }, { u"printed"_s, masked(printed) } });
}

void TraceRecorder::failed(const QString& reason)
{
    write({ { u"event"_s, u"failed"_s }, { u"reason"_s, redact(reason) } });
}

void TraceRecorder::exchanged(const ExchangeEvent& event)
{
    write({ { u"event"_s, isSearch(event) ? u"search"_s : u"exchange"_s },
            { u"address"_s, event.address },
            { u"action"_s, event.action },
            { u"request"_s, redact(QString::fromUtf8(event.request)) },
            { u"status"_s, event.status },
            { u"reply"_s, redact(QString::fromUtf8(event.reply)) },
            { u"failure"_s, redact(event.failure) },
            { u"milliseconds"_s, event.milliseconds } });
}

void TraceRecorder::write(const QJsonObject& event)
{
    const std::lock_guard lock(mutex);
    QJsonObject placed = event;
    placed[u"step"_s] = static_cast<qint64>(current);
    // A disk that takes no more must not stop a sale.
    static_cast<void>(output.write(lineOf(placed)));
    static_cast<void>(output.flush());
}

Trace readTrace(const QString& name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        throw ScriptError(u"the trace %1 cannot be read: %2"_s.arg(name, file.errorString()));
    }
    Trace trace;
    int number = 0;
    while (!file.atEnd()) {
        ++number;
        const QJsonDocument line = QJsonDocument::fromJson(file.readLine());
        const bool known = line.isObject()
            && (number == 1 ? line[u"trace"_s].toInt() == traceVersion
                            : line[u"event"_s].isString() && line[u"step"_s].isDouble());
        if (!known) {
            throw ScriptError(u"%1, line %2 is not that of a trace of this till"_s.arg(name).arg(number));
        }
        if (number == 1) {
            trace.script = line[u"script"_s].toString();
            trace.configuration = line[u"configuration"_s].toString();
            const QJsonObject servers = line[u"servers"_s].toObject();
            for (auto server = servers.constBegin(); server != servers.constEnd(); ++server) {
                trace.servers.append({ server.key(), QUrl(server->toString()), QUrl() });
            }
        } else {
            trace.events.append(line.object());
        }
    }
    if (number == 0) {
        throw ScriptError(u"%1 is empty, and no trace of this till"_s.arg(name));
    }
    return trace;
}

bool isSearch(const ExchangeEvent& event)
{
    return event.action == u"Ping";
}

QStringList firstDifference(const Trace& recorded, const Trace& repeated)
{
    const qint64 lastStep = recorded.events.isEmpty() ? 0 : recorded.events.constLast()[u"step"_s].toInteger();
    Comparable before(recorded, lastStep);
    Comparable now(repeated, lastStep);
    for (qsizetype i = 0; i < before.size() || i < now.size(); ++i) {
        if (i >= before.size() || i >= now.size()) {
            const QJsonObject& extra = i < before.size() ? before.at(i) : now.at(i);
            return { QString::number(extra[u"step"_s].toInteger()), nameOf(extra),
                     i < before.size() ? u"recorded, and not done now"_s : u"done now, and not recorded"_s };
        }
        const QJsonObject& first = before.at(i);
        const QJsonObject& second = now.at(i);
        QStringList keys = first.keys() + second.keys();
        std::ranges::sort(keys);
        keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
        for (const QString& key : keys) {
            const QString one = before.text(key, first[key]);
            const QString other = now.text(key, second[key]);
            if (one != other) {
                return QStringList { QString::number(first[u"step"_s].toInteger()), nameOf(first) + u", "_s + key }
                    + bothLines(one, other);
            }
        }
    }
    return {};
}

TraceAnswers::TraceAnswers(const Trace& trace)
{
    std::ranges::copy_if(trace.events, std::back_inserter(exchanges),
                         [](const QJsonObject& event) { return event.contains(u"action"_s); });
    used.fill(false, exchanges.size());
}

void TraceAnswers::step(qsizetype index)
{
    const std::lock_guard lock(mutex);
    current = index;
}

void TraceAnswers::answer(ExchangeEvent& event)
{
    const std::lock_guard lock(mutex);
    for (qsizetype i = 0; i < exchanges.size(); ++i) {
        const QJsonObject& known = exchanges.at(i);
        if (!used.at(i) && known[u"step"_s].toInteger() == current && known[u"action"_s].toString() == event.action
            && known[u"address"_s].toString() == event.address) {
            used[i] = true;
            event.status = known[u"status"_s].toInt();
            event.reply = known[u"reply"_s].toString().toUtf8();
            event.failure = known[u"failure"_s].toString();
            return;
        }
    }
    event.failure = u"no exchange of this kind was recorded for this step"_s;
}

} // namespace till
