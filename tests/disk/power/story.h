#pragma once

#include "till/store/document_states.h"

#include <QJsonObject>
#include <QMap>
#include <QSharedPointer>
#include <QString>
#include <QStringList>

#include <vector>

/// One call of the store. A plain value.
struct Command {
    enum class Kind {
        enqueue, // the message of the number; it becomes the record of that number
        save, // the document of the number, in this version and state
        deliver, // the record of the number, as the others below
        postpone,
        setAside,
        release,
        reopen, // the store is closed and opened
    };

    Kind kind = Kind::reopen;
    int number = 0;
    int version = 0;
    till::store::DocumentState state = till::store::DocumentState::open;
};

/// What a till does with its store, from the making of the store on. Records are numbered from 1 in the order of their
/// queuing. A plain value.
struct Story {
    QString name;
    QString folder; // of the store, below the root
    std::vector<Command> commands;
};

/// All of them, so many times as long. The numbers of the mixed one are drawn with the seed.
[[nodiscard]] std::vector<Story> stories(int length, unsigned int seed);

/// What a call stores. From a part of a page of the database to several.
[[nodiscard]] QJsonObject storyMessage(int number);
[[nodiscard]] QSharedPointer<AbstractDocument> storyDocument(int number, int version);

/// All that the store holds after some calls, in the words of this test.
class Holdings {
public:
    void apply(const Command& command);

    /// A line per record and per document.
    [[nodiscard]] const QString& text() const;
    /// The number that the next record gets.
    [[nodiscard]] int nextRecord() const;

private:
    QMap<int, QString> records; // state, attempts and reason, then the message
    QMap<int, QString> documents;
    int recordsMade = 0;
    QString all;
};

/// The same words for what the till's own store tells of itself. Throws what the store throws.
[[nodiscard]] QString storedHoldings();
