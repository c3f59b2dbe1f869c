#pragma once

#include "host/export.h"

#include <QMap>
#include <QMetaType>
#include <QString>
#include <QVariant>

/// The activity events that host and loyalty plug-ins exchange. Others occur and are ignored.
struct EActivityListener {
    enum Event : int {
        // from the host; every document is a `QSharedPointer<AbstractDocument>`
        restoreDocument = 9, // `DocumentWatcher::setDocument` has been called with the document to restore
        documentClosed = 10, // "document"
        documentCancelled = 12, // "document", and "documentBeforeStorno" where the host has one
        positionRemoved = 21, // "position": `QSharedPointer<GoodsItem>`, "document"
        documentCancelledBeforeClose = 22, // as `documentCancelled`

        // to the host
        processStarted = 72, // "message": `tr::Tr`, shown until `processFinished`
        processFinished = 73,
        couponRefused = 127, // "text": `tr::Tr`, "couponNumber", "forCustomer": bool
        runTask = 245, // "task": `QSharedPointer<BasicTask>`; the host runs it off the thread of cheque operations
    };
};

/// An activity event: a code and named arguments. A value. [any-thread]
class VANTIRO_HOST_API Event {
public:
    Event(); // needed of a meta type; its code is 0, which no listener knows
    explicit Event(EActivityListener::Event code);
    Event(EActivityListener::Event code, const QMap<QString, QVariant>& arguments);

    /// Adds the argument, or replaces the one of that name, and returns this event.
    Event& addArgument(const QString& name, const QVariant& value);

    [[nodiscard]] EActivityListener::Event getCode() const;
    [[nodiscard]] bool contains(const QString& name) const;
    [[nodiscard]] QVariant value(const QString& name, const QVariant& defaultValue) const;

    /// Equal code and equal arguments.
    [[nodiscard]] bool operator==(const Event& other) const;

private:
    EActivityListener::Event code;
    QMap<QString, QVariant> arguments;
};

Q_DECLARE_METATYPE(Event)
