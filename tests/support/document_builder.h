#pragma once

#include "host/document/abstract_document.h"
#include "host/document/back_by_sale_document.h"
#include "till/document/cheque.h"
#include "till/document/return_by_sale.h"

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QSharedPointer>
#include <QString>
#include <QVariant>

// Documents for tests, in few words. Whatever is not said is fixed: see `DocumentBuilder`. Sums are in roubles, and
// nothing is worked out: a line says what it costs, and an impact lowers nothing.

/// The names by which records are told apart.
namespace record_name {

inline const QString bonus = QStringLiteral("Баллы Vantiro");
inline const QString positionDiscount = QStringLiteral("Скидка Vantiro на позицию");
inline const QString chequeDiscount = QStringLiteral("Скидка Vantiro на чек");

}

/// A goods line. Unless told otherwise it takes discounts and earns and takes points, has no barcode and no minimum
/// price, and costs its price times its quantity. A value.
class Goods {
public:
    Goods(int position, const QString& code, double price, double quantity = 1.0);

    Goods& barcode(const QString& text);
    Goods& minPrice(double price);
    Goods& costs(double sum);
    Goods& takesNoPoints();
    Goods& earnsNothing();
    Goods& takesNoDiscount();
    Goods& takesOnlyExternalDiscount();

    [[nodiscard]] const till::LineFields& fields() const;

private:
    till::LineFields line;
};

/// The detail of an impact. Unless told otherwise it is a sum discount of the loyalty system on a position. A value.
class Detail {
public:
    explicit Detail(const QString& name);

    Detail& code(int number);
    Detail& percent(const QVariant& rate);
    Detail& rate(const QVariant& rate);
    Detail& type(int number);
    Detail& fixedPrice();
    Detail& mode(int number);
    Detail& tender();
    Detail& source(int number);
    Detail& onCheque();
    Detail& on(int position);
    Detail& sum(double roubles);

    /// A new record at each call.
    [[nodiscard]] QSharedPointer<DocumentImpactDetail> record() const;

private:
    DocumentImpactDetail detail;
};

/// A discount with the detail as its totals and details of these sums by position. The totals keep the sum that they
/// were given.
[[nodiscard]] QSharedPointer<DiscountImpact> discountImpact(const Detail& totals, const QMap<int, double>& sums = {});
/// Points spent by position; the totals hold their sum.
[[nodiscard]] QSharedPointer<BonusImpact> bonusImpact(const QMap<int, double>& sums);

/// A document of the reference till. Unless told otherwise it is a sale of the identity "1", which is cheque 1042 of
/// shift 17, opened at 14:07:09 on 2024-03-05 and still open, with nothing on it. A value; each document that it builds
/// is a new one, which shares impacts and payments with the others.
class DocumentBuilder {
public:
    DocumentBuilder();

    DocumentBuilder& type(int number);
    DocumentBuilder& identity(const QString& text);
    DocumentBuilder& number(int chequeNumber);
    DocumentBuilder& shift(int shiftNumber);
    DocumentBuilder& openedAt(const QDateTime& time);
    DocumentBuilder& closedAt(const QDateTime& time);
    /// Closes it at 14:09:30 on the day it was opened.
    DocumentBuilder& closed();
    /// In place of the sum of its live lines.
    DocumentBuilder& costs(double sum);
    /// A card of the loyalty system.
    DocumentBuilder& card(const QVariant& cardNumber);
    /// A card of another mode.
    DocumentBuilder& cardOfMode(int mode, const QVariant& cardNumber);
    DocumentBuilder& line(const Goods& goods);
    DocumentBuilder& deletedLine(const Goods& goods);
    DocumentBuilder& impact(const QSharedPointer<DocumentImpact>& record);
    /// A discount that the document carries: the detail, on these positions with these sums.
    DocumentBuilder& discount(const Detail& detail, const QMap<int, double>& sums);
    DocumentBuilder& cash(double amount);
    /// Operation 3 with the given code; 70 and 74 are certificates.
    DocumentBuilder& certificate(const QString& certificateNumber, double amount, int opCode = 70);
    DocumentBuilder& payment(const QString& cardNumber, double amount, int valutOperation, int opCode);
    /// The key of the sale that a return reverses.
    DocumentBuilder& sourceKey(const QVariant& key);
    DocumentBuilder& pluginDataJson(const QString& json);

    [[nodiscard]] QSharedPointer<till::Cheque> build() const;
    /// A return that carries the record of its sale; null when it does not know it. Its type is 25.
    [[nodiscard]] QSharedPointer<till::ReturnBySale> buildReturn(
        const QSharedPointer<SaleDocumentSource>& source) const;

private:
    void fill(till::ChequeContents& contents) const;

    struct AttachedCard {
        int mode = 0;
        QVariant number;
    };
    struct AddedLine {
        till::LineFields fields;
        bool deleted = false;
    };

    QString documentIdentity;
    till::ChequeHead head;
    QList<AttachedCard> cards;
    QList<AddedLine> lines;
    QList<QSharedPointer<DocumentImpact>> impacts;
    QList<QSharedPointer<MoneyItem>> payments;
    QString pluginData;
};

/// The sale behind a return, opened and closed at these times.
[[nodiscard]] QSharedPointer<SaleDocumentSource> saleSource(int chequeNumber, const QDateTime& openTime,
                                                            const QDateTime& closeTime,
                                                            const QString& pluginDataJson = {});

/// A time without zone: `at("2024-03-05T14:07:09")`.
[[nodiscard]] QDateTime at(const char* isoTime);
