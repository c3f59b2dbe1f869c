#pragma once

#include "till/document/cheque.h"
#include "till/document/return_by_sale.h"

#include <QList>
#include <QMap>
#include <QSharedPointer>
#include <QString>

/// One purchase of so many lines, as the till and the server have left it at the close: every third line carries a
/// discount of the till, every second one of the loyalty system, points are spent on every line, and a coupon lies on
/// every tenth line and, for fifty lines each, on the cheque. A value. [cheque-thread]
struct LongCheque {
    explicit LongCheque(int lineCount);

    QSharedPointer<till::Cheque> sale;
    QSharedPointer<till::ReturnBySale> goodsReturn; // of the same lines; carries the record of its sale
    QSharedPointer<till::Cheque> emptied; // the same lines, all of them taken off again

    QMap<int, QList<QString>> positionCoupons;
    QList<QString> coupons;
    QList<QSharedPointer<DiscountImpact>> granted; // by the server, on every fourth line; no document carries them
    QList<QSharedPointer<BonusImpact>> spent; // the sale carries them
};
