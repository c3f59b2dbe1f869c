#pragma once

#include "tests/cheque/cheque_support.h"
#include "till/document/cheque.h"

#include <QList>
#include <QSharedPointer>
#include <QString>

#include <random>

/// A discount or points in whole kopecks.
struct GeneratedRecord {
    int position = 0;
    int code = 0;
    qint64 sum = 0;
};

/// A line in whole kopecks and thousandths.
struct GeneratedLine {
    int position = 0;
    qint64 price = 0;
    qint64 quantity = 0;
    qint64 sum = 0;
    QString code;
    QString barcode;
};

/// A document, and the plain list of what it was made from.
struct GeneratedDocument {
    QSharedPointer<till::Cheque> document;
    PositionCoupons positionCoupons;
    Coupons coupons;
    GrantedDiscounts grantedImpacts;
    QList<QSharedPointer<BonusImpact>> spentImpacts; // the document carries them

    QString card; // empty when the document has none
    QList<GeneratedLine> lines;
    QList<GeneratedRecord> carried; // discounts of the document, in the order in which they are found
    QList<GeneratedRecord> granted; // on positions
    qint64 grantedOnCheque = 0;
    QList<GeneratedRecord> spent; // points, in the order in which they are found
    QList<qint64> certificates;
    qint64 sum = 0; // of the document
};

/// The same documents on every machine: the distributions of the standard library are not.
class DocumentGenerator {
public:
    explicit DocumentGenerator(unsigned seed);

    [[nodiscard]] GeneratedDocument next();
    /// Up to `longest` pieces of ordinary and of hostile text.
    [[nodiscard]] QString text(int longest);
    /// From 0 to one less than `count`.
    [[nodiscard]] int below(int count);

private:
    [[nodiscard]] qint64 kopecks();

    std::mt19937 engine;
};
