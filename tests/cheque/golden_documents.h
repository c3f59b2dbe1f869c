#pragma once

#include "tests/cheque/cheque_support.h"

#include <QJsonObject>
#include <QList>
#include <QSharedPointer>
#include <QString>
#include <QStringList>

/// A document with its golden cheques, and all else that goes into a cheque.
struct GoldenDocument {
    QString name; // of its files: "01-no-card" in "01-no-card.ordinary.xml"
    QStringList forms; // of the cheques that such a document can have
    QSharedPointer<AbstractDocument> document;
    PositionCoupons positionCoupons = {};
    Coupons coupons = {};
    GrantedDiscounts granted = {}; // for the ordinary cheque
    QList<QSharedPointer<BonusImpact>> spent = {}; // for the accrual cheque
    QJsonObject checkData = {};
    int noBonusForMinprice = 0;
    bool forbidDiscountForDiscountedPosition = false;
};

/// All of them, made anew. Returns by key find their sale, cheque 900, under the key 4711.
[[nodiscard]] QList<GoldenDocument> goldenDocuments();
/// The document of a thousand lines that `thousand_lines.py` beside the golden cheques describes.
[[nodiscard]] GoldenDocument documentOfThousandLines();
