#pragma once

#include "host/document/goods_item.h"
#include "host/export.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace till {

/// What a line says. Money is in roubles. A plain value.
struct LineFields {
    int posnum = 0; // 0: the cheque gives the line the next free number
    QString code;
    QString barcode;
    double price = 0.0; // of one unit
    double minPrice = 0.0; // of one unit
    double quantity = 1.0;
    std::optional<double> sum; // what the line costs, discounts taken off; unset: price times quantity
    bool bonusSpendAllowed = true;
    bool bonusEarnAllowed = true;
    bool discountAllowed = true;
    bool onlyExternalDiscountAllowed = false;

    [[nodiscard]] bool operator==(const LineFields& other) const = default;
};

/// A line of the reference till. The fields are set between hooks, never while one runs. [cheque-thread]
class VANTIRO_HOST_API Line : public GoodsItem {
public:
    explicit Line(const LineFields& lineFields);
    ~Line() override;

    [[nodiscard]] int getPosnum() const override;
    [[nodiscard]] double getPrice() const override;
    [[nodiscard]] double getMinPrice() const override;
    [[nodiscard]] double getQuantity() const override;
    [[nodiscard]] double getSumb() const override;
    [[nodiscard]] QString getCode() const override;
    [[nodiscard]] QString getBcode() const override;
    [[nodiscard]] bool isAllowBonusSpend() const override;
    [[nodiscard]] bool isAllowBonusEarn() const override;
    [[nodiscard]] bool isAllowDiscount() const override;
    [[nodiscard]] bool isAllowOnlyExternalDiscount() const override;

    LineFields fields;

    /// As JSON, for whoever stores the cheque: it is stored after every step of the cashier, and most lines are those of
    /// the step before.
    struct Kept {
        LineFields fields;
        QByteArray text; // of these fields; empty before the first time
    };
    mutable Kept kept;
};

}
