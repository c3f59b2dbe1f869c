#include "tests/disk/power/story.h"

#include "till/document/cheque.h"
#include "till/store/document_json.h"
#include "till/store/queue_records.h"

#include <QJsonDocument>
#include <QTimeZone>

#include <random>

using namespace Qt::StringLiterals;

namespace {

using enum Command::Kind;
using till::store::DocumentState;

/// Hardly any, a part of a page, or several pages.
[[nodiscard]] QString filling(int number)
{
    constexpr int sizes[] { 10, 300, 1700, 9000 };
    return QString(sizes[number % 4], QChar(u'a' + number % 26));
}

[[nodiscard]] Story creation()
{
    return { u"creation"_s, u"shop/desk/till"_s, { { enqueue, 1 }, { reopen }, { enqueue, 2 } } };
}

[[nodiscard]] Story queueing(int length)
{
    Story story { u"enqueue"_s, u"till"_s, {} };
    for (int number = 1; number <= 8 * length; ++number) {
        story.commands.push_back({ enqueue, number });
    }
    return story;
}

[[nodiscard]] Story saving(int length)
{
    Story story { u"documents"_s, u"till"_s, {} };
    for (int number = 1; number <= length + 1; ++number) {
        int version = 0;
        for (const DocumentState state : { DocumentState::open, DocumentState::open, DocumentState::aside,
                                           DocumentState::open, DocumentState::closing, DocumentState::closed }) {
            story.commands.push_back({ save, number, ++version, state });
        }
    }
    return story;
}

[[nodiscard]] Story delivering(int length)
{
    Story story { u"deliver"_s, u"till"_s, {} };
    for (int first = 1; first <= 4 * length; first += 4) {
        for (int number = first; number < first + 4; ++number) {
            story.commands.push_back({ enqueue, number });
        }
        story.commands.insert(story.commands.end(),
                              { { deliver, first },
                                { postpone, first + 1 },
                                { setAside, first + 2 },
                                { deliver, first + 1 },
                                { release, first + 2 },
                                { deliver, first + 2 },
                                { deliver, first + 3 } });
    }
    return story;
}

/// As a shop day would, but in any order.
[[nodiscard]] Story mixed(int length, unsigned int seed)
{
    Story story { u"mixed"_s, u"till"_s, {} };
    std::mt19937 dice(seed);
    QMap<int, int> versions;
    QList<int> waiting;
    int made = 0;
    for (int i = 0; i < 16 * length; ++i) {
        const int roll = std::uniform_int_distribution(0, 9)(dice);
        if (roll < 3 || (roll >= 6 && waiting.isEmpty())) {
            waiting.append(++made);
            story.commands.push_back({ enqueue, made });
        } else if (roll < 6) {
            const int number = std::uniform_int_distribution(1, 3)(dice);
            const auto state = static_cast<DocumentState>(std::uniform_int_distribution(0, 5)(dice));
            story.commands.push_back({ save, number, ++versions[number], state });
        } else if (roll < 8) {
            story.commands.push_back({ deliver, waiting.takeFirst() });
        } else if (roll == 8) {
            story.commands.push_back({ setAside, waiting.constLast() });
        } else {
            story.commands.push_back({ reopen });
        }
    }
    return story;
}

[[nodiscard]] QString recordWords(const QString& state, int attempts, const QString& reason, const QByteArray& message)
{
    return u"%1, %2 attempts, \"%3\": "_s.arg(state, QString::number(attempts), reason) + QString::fromUtf8(message);
}

[[nodiscard]] QString documentWords(DocumentState state, const QSharedPointer<AbstractDocument>& document)
{
    return u"state %1: "_s.arg(static_cast<int>(state)) + QString::fromUtf8(till::toJson(document));
}

[[nodiscard]] QString all(const QMap<int, QString>& records, const QMap<int, QString>& documents)
{
    QString text;
    for (auto record = records.cbegin(); record != records.cend(); ++record) {
        text += u"record %1 "_s.arg(record.key()) + record.value() + u'\n';
    }
    for (auto document = documents.cbegin(); document != documents.cend(); ++document) {
        text += u"document %1 "_s.arg(document.key()) + document.value() + u'\n';
    }
    return text;
}

} // namespace

std::vector<Story> stories(int length, unsigned int seed)
{
    return { creation(), queueing(length), saving(length), delivering(length), mixed(length, seed) };
}

QJsonObject storyMessage(int number)
{
    return { { u"number"_s, number }, { u"body"_s, filling(number) } };
}

QSharedPointer<AbstractDocument> storyDocument(int number, int version)
{
    till::ChequeHead head;
    head.number = number;
    head.openTime = QDateTime(QDate(2024, 3, 5), QTime(14, 7, 9), QTimeZone::utc()).toLocalTime();
    auto document = QSharedPointer<till::Cheque>::create(head, u"document-%1"_s.arg(number));
    for (int line = 0; line < 1 + version % 3; ++line) {
        till::LineFields fields;
        fields.code = QString::number(version);
        fields.price = version;
        document->addLine(fields);
    }
    document->setPluginDataJson(filling(number + version));
    return document;
}

void Holdings::apply(const Command& command)
{
    const auto record = [&](const QString& state, int attempts, const QString& reason) {
        records.insert(command.number,
                       recordWords(state, attempts, reason,
                                   QJsonDocument(storyMessage(command.number)).toJson(QJsonDocument::Compact)));
    };
    switch (command.kind) {
    case enqueue:
        recordsMade = command.number;
        record(u"pending"_s, 0, {});
        break;
    case save:
        documents.insert(command.number, documentWords(command.state, storyDocument(command.number, command.version)));
        break;
    case deliver:
        records.remove(command.number);
        break;
    case postpone:
        record(u"pending"_s, 3, u"later"_s);
        break;
    case setAside:
        record(u"refused"_s, 4, u"no such card"_s);
        break;
    case release:
        record(u"pending"_s, 0, {});
        break;
    case reopen:
        break;
    }
    all = ::all(records, documents);
}

const QString& Holdings::text() const
{
    return all;
}

int Holdings::nextRecord() const
{
    return recordsMade + 1;
}

QString storedHoldings()
{
    using enum till::store::RecordState;
    QMap<int, QString> records;
    const QList<till::store::QueueRecord> stored = till::store::queueRecords();
    for (const till::store::QueueRecord& record : stored) {
        const QString state = record.state == pending ? u"pending"_s
            : record.state == refused                 ? u"refused"_s
                                                      : u"unexpected"_s;
        records.insert(static_cast<int>(record.id), recordWords(state, record.attempts, record.reason, record.message));
    }
    QMap<int, QString> documents;
    const QList<till::store::DocumentEntry> entries = till::store::documents();
    for (const till::store::DocumentEntry& entry : entries) {
        documents.insert(entry.number, documentWords(entry.state, till::store::documentOf(entry.identity)));
    }
    return all(records, documents);
}
