#pragma once

#include "host/export.h"

#include <QMetaType>
#include <QObject>
#include <QSharedPointer>
#include <QString>

/// One line of the cheque. Plug-ins only read it; all reads are cheap and agree with each other while a hook runs.
/// Money is in roubles, not rounded. [cheque-thread]
class VANTIRO_HOST_API GoodsItem : public QObject {
    Q_OBJECT

public:
    GoodsItem();
    ~GoodsItem() override;

    /// Position number: the key that joins the line to its impacts and coupons. Unique on the document.
    [[nodiscard]] virtual int getPosnum() const = 0;
    /// Price of one unit.
    [[nodiscard]] virtual double getPrice() const = 0;
    /// The lowest price of one unit that is allowed.
    [[nodiscard]] virtual double getMinPrice() const = 0;
    /// Quantity, possibly a fraction.
    [[nodiscard]] virtual double getQuantity() const = 0;
    /// The line's sum as the document now has it, discounts taken off.
    [[nodiscard]] virtual double getSumb() const = 0;
    /// Goods code.
    [[nodiscard]] virtual QString getCode() const = 0;
    /// Barcode; empty when the line has none.
    [[nodiscard]] virtual QString getBcode() const = 0;
    /// Points may pay for the line.
    [[nodiscard]] virtual bool isAllowBonusSpend() const = 0;
    /// The line earns points.
    [[nodiscard]] virtual bool isAllowBonusEarn() const = 0;
    /// The line takes discounts.
    [[nodiscard]] virtual bool isAllowDiscount() const = 0;
    /// The line takes discounts of an outside system, such as a loyalty plug-in, and no others.
    [[nodiscard]] virtual bool isAllowOnlyExternalDiscount() const = 0;

private:
    Q_DISABLE_COPY(GoodsItem)
};

Q_DECLARE_METATYPE(QSharedPointer<GoodsItem>)
