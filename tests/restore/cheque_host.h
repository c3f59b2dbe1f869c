#pragma once

#include "front/vantiro.h"
#include "till/document/cheque_contents.h"

#include <QSharedPointer>
#include <QString>
#include <QStringList>

/// A till that plays a cheque through, one named step after the other, with the plug-in at work. It does what a host
/// has to do besides: it puts on the document what the hooks give, and saves what it changes itself. What the plug-in
/// learns is the plug-in's to save. The document is a sale of the identity "1"; the store is open. [cheque-thread]
class ChequeHost {
public:
    /// Initialises the plug-in.
    ChequeHost();
    ~ChequeHost();

    /// The steps of a road through the life of a cheque; empty when there is no such road.
    [[nodiscard]] static QStringList road(const QString& name);

    /// Does the step and returns what it has come to, in one line. [blocks: server and disk]
    QString perform(const QString& step);

    /// After a start: brings the document back from the store, and when it was open, lets the plug-in restore its
    /// state, unless told otherwise. Throws `std::runtime_error` when the store has no document.
    void resume(bool restoring);

    /// All that is on disk of the cheque: the document, then the messages in the queue, one a line.
    [[nodiscard]] static QStringList onDisk();

private:
    Q_DISABLE_COPY_MOVE(ChequeHost)

    [[nodiscard]] static QSharedPointer<AbstractDocument> storedDocument();
    [[nodiscard]] till::ChequeContents& contents() const;
    void save() const;
    /// What this till itself keeps with the document, durable after the next save; an invalid value removes it.
    void keep(const QString& name, const QVariant& value) const;
    [[nodiscard]] QVariant kept(const QString& name) const;

    void takeOff(bool discounts);
    void workOutLines();
    [[nodiscard]] QString addCoupon(const QString& number, int position);
    [[nodiscard]] QString summary() const;

    QString open();
    QString presentCard();
    QString request();
    QString putDiscounts();
    QString removePosition();
    QString offerPoints();
    QString choosePoints();
    QString spendPoints();
    QString putPoints();
    QString rollBack();
    QString setAside();
    QString reveal();
    QString pay();
    QString commit();
    QString tellClosed();
    QString tellCancelled();
    QString end();

    static inline const QString identity = QStringLiteral("1");
    static inline const QString chosenPoints = QStringLiteral("chosenPoints"); // but not spent yet
    static inline const QString rolledBack = QStringLiteral("rolledBack"); // and nothing stored by the plug-in since
    static inline const QString over = QStringLiteral("over");

    Vantiro plugin;
    QSharedPointer<AbstractDocument> document;
};
