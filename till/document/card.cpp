#include "till/document/card.h"

namespace till {

Card::Card(const CardFields& cardFields)
    : fields(cardFields)
{
}

Card::~Card() = default;

QVariant Card::getNumber() const
{
    return fields.number;
}

int Card::getCodeInternal() const
{
    return fields.codeInternal;
}

QVariant Card::getBonusBalance() const
{
    return fields.bonusBalance;
}

void Card::setBonusBalance(const QVariant& balance)
{
    fields.bonusBalance = balance;
}

void Card::setPointsForSpend(double points)
{
    fields.pointsForSpend = points;
}

void Card::setSpentSum(double sum)
{
    fields.spentSum = sum;
}

}
