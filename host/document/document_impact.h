#pragma once

#include "host/document/document_impact_detail.h"
#include "host/document/plugin_data.h"
#include "host/export.h"

#include <QMap>
#include <QMetaType>
#include <QObject>
#include <QSharedPointer>
#include <QVariant>

/// A discount or a spending of points: one detail for the whole, and details by position. A value whose details are
/// shared between its copies. Its meta-object is what `serder` stores impacts by. [cheque-thread]
class VANTIRO_HOST_API DocumentImpact : public PluginData {
    Q_GADGET
    Q_PROPERTY(QVariant totals READ storedTotals WRITE setStoredTotals)
    Q_PROPERTY(QVariant details READ storedDetails WRITE setStoredDetails)

public:
    /// An empty record, for restoring: its totals are an empty detail, so `getTotals` is never null.
    DocumentImpact();
    /// A record with the given summary detail and no detail by position. A null pointer counts as an empty detail.
    explicit DocumentImpact(const QSharedPointer<DocumentImpactDetail>& totals);
    DocumentImpact(const DocumentImpact& other);
    DocumentImpact& operator=(const DocumentImpact& other);
    ~DocumentImpact() override;

    /// The summary: one detail that holds the sum of the whole impact.
    [[nodiscard]] QSharedPointer<DocumentImpactDetail> getTotals() const;

    /// The details by position number.
    [[nodiscard]] QMap<int, QSharedPointer<DocumentImpactDetail>> getDetails();

    /// Adds a detail for the position with the given sum; it acts on a position, and all else is as in the totals. A
    /// position that already has one keeps it, with the sum added.
    void addDetailForPosition(int position, double sum);

private:
    // A store knows maps, lists, texts and numbers, so that is what the properties give out and take.
    [[nodiscard]] QVariant storedTotals() const;
    void setStoredTotals(const QVariant& stored);
    [[nodiscard]] QVariant storedDetails() const;
    void setStoredDetails(const QVariant& stored);

    QSharedPointer<DocumentImpactDetail> totals;
    QMap<int, QSharedPointer<DocumentImpactDetail>> details;
};

/// A discount that the loyalty system has granted.
class VANTIRO_HOST_API DiscountImpact : public DocumentImpact {
public:
    using DocumentImpact::DocumentImpact;
    ~DiscountImpact() override;
};

/// Points spent on the cheque.
class VANTIRO_HOST_API BonusImpact : public DocumentImpact {
public:
    using DocumentImpact::DocumentImpact;
    ~BonusImpact() override;
};

Q_DECLARE_METATYPE(QSharedPointer<DocumentImpact>)
Q_DECLARE_METATYPE(QSharedPointer<DiscountImpact>)
Q_DECLARE_METATYPE(QSharedPointer<BonusImpact>)
