#pragma once

#include "host/document/abstract_document.h"
#include "host/export.h"

#include <QDateTime>
#include <QSharedPointer>
#include <QString>

/// The sale that a return refers to, as far as the return knows it. A plain record.
struct SaleDocumentSource {
    qint32 chequeNumber = 0;
    QDateTime openTime;
    QDateTime closeTime;
    QString pluginDataJson; // in the form of `AbstractDocument::getPluginDataJson`
};

/// A return made against a sale that carries a record of the sale with it. Plug-ins tell it by a dynamic cast.
/// [cheque-thread]
class VANTIRO_HOST_API BackBySaleDocument : public AbstractDocument {
    Q_OBJECT

public:
    BackBySaleDocument();
    ~BackBySaleDocument() override;

    /// The sale, null if it is not known.
    [[nodiscard]] virtual QSharedPointer<SaleDocumentSource> getSource() = 0;
};
