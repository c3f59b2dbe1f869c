#include "till/document/line.h"

namespace till {

Line::Line(const LineFields& lineFields)
    : fields(lineFields)
{
}

Line::~Line() = default;

int Line::getPosnum() const
{
    return fields.posnum;
}

double Line::getPrice() const
{
    return fields.price;
}

double Line::getMinPrice() const
{
    return fields.minPrice;
}

double Line::getQuantity() const
{
    return fields.quantity;
}

double Line::getSumb() const
{
    return fields.sum.value_or(fields.price * fields.quantity);
}

QString Line::getCode() const
{
    return fields.code;
}

QString Line::getBcode() const
{
    return fields.barcode;
}

bool Line::isAllowBonusSpend() const
{
    return fields.bonusSpendAllowed;
}

bool Line::isAllowBonusEarn() const
{
    return fields.bonusEarnAllowed;
}

bool Line::isAllowDiscount() const
{
    return fields.discountAllowed;
}

bool Line::isAllowOnlyExternalDiscount() const
{
    return fields.onlyExternalDiscountAllowed;
}

}
