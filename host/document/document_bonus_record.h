#pragma once

#include <QDateTime>
#include <QMetaType>
#include <QString>

/// Points that the host itself has booked on the document, under rules of its own. Plug-ins test only whether a
/// document has any. A plain value.
struct DocumentBonusRecord {
    QString cardNumber;
    double amount = 0.0; // points, positive when earned
    QDateTime dateTime;
};

Q_DECLARE_METATYPE(DocumentBonusRecord)
