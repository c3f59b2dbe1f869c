#pragma once

#include "host/export.h"

#include <QMetaType>
#include <QSharedPointer>
#include <QVariant>

/// A card attached to the document. [cheque-thread]
class VANTIRO_HOST_API DocumentCardRecord {
public:
    DocumentCardRecord();
    virtual ~DocumentCardRecord();

    /// Card number, read as text.
    [[nodiscard]] virtual QVariant getNumber() const = 0;
    /// Internal code of the card in the host.
    [[nodiscard]] virtual int getCodeInternal() const = 0;
    /// Balance of points, read as a double; invalid while it is not known.
    [[nodiscard]] virtual QVariant getBonusBalance() const = 0;
    virtual void setBonusBalance(const QVariant& balance) = 0;
    /// The points that may be spent on this document, in roubles.
    virtual void setPointsForSpend(double points) = 0;
    /// The sum that has been paid with points, in roubles.
    virtual void setSpentSum(double sum) = 0;

private:
    Q_DISABLE_COPY(DocumentCardRecord)
};

Q_DECLARE_METATYPE(QSharedPointer<DocumentCardRecord>)
