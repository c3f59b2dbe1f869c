#include "host/document/money_item.h"

MoneyItem::MoneyItem() = default;
MoneyItem::~MoneyItem() = default;
