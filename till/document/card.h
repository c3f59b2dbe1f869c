#pragma once

#include "host/document/document_card_record.h"
#include "host/export.h"

#include <QVariant>

namespace till {

/// What a card record says. A plain value.
struct CardFields {
    QVariant number;
    int codeInternal = 0;
    QVariant bonusBalance; // points; invalid while it is not known
    double pointsForSpend = 0.0; // roubles
    double spentSum = 0.0; // roubles
};

/// A card record of the reference till. The contract only writes the last two fields; the till reads them here.
/// [cheque-thread]
class VANTIRO_HOST_API Card : public DocumentCardRecord {
public:
    explicit Card(const CardFields& cardFields);
    ~Card() override;

    [[nodiscard]] QVariant getNumber() const override;
    [[nodiscard]] int getCodeInternal() const override;
    [[nodiscard]] QVariant getBonusBalance() const override;
    void setBonusBalance(const QVariant& balance) override;
    void setPointsForSpend(double points) override;
    void setSpentSum(double sum) override;

    CardFields fields;
};

}
