#pragma once

#include "host/document/document_card_record.h"
#include "host/document/enumerations.h"
#include "host/export.h"

#include <QDateTime>
#include <QMetaType>
#include <QObject>
#include <QSharedDataPointer>
#include <QSharedPointer>
#include <QString>
#include <QVariant>

struct DocumentImpactDetailData;

/// One discount on one object. A value; plug-ins make records of their own and hand them to the host. Its stored
/// properties are what `serder` keeps of it; the card record is not among them, as a document that comes back brings
/// its card with it. Sums are in roubles, not rounded. [cheque-thread]
class VANTIRO_HOST_API DocumentImpactDetail {
    Q_GADGET
    Q_PROPERTY(QString discountName READ getDiscountName WRITE setDiscountName)
    Q_PROPERTY(double discountSum READ getDiscountSum WRITE setDiscountSum)
    Q_PROPERTY(int position READ getPosition WRITE setPosition)
    Q_PROPERTY(int discountCode READ getDiscountCode WRITE setDiscountCode)
    Q_PROPERTY(int discountObject READ getDiscountObjectNumber WRITE setDiscountObjectNumber)
    Q_PROPERTY(int discountType READ getDiscountTypeNumber WRITE setDiscountTypeNumber)
    Q_PROPERTY(int discountMode READ getDiscountModeNumber WRITE setDiscountModeNumber)
    Q_PROPERTY(QVariant discountRate READ getDiscountRate WRITE setDiscountRate)
    Q_PROPERTY(int impactSource READ getImpactSourceNumber WRITE setImpactSourceNumber)
    Q_PROPERTY(QDateTime dateTime READ getDateTime WRITE setDateTime)
    Q_PROPERTY(bool minPriceIgnored READ isMinPriceIgnored WRITE setMinPriceIgnored)
    Q_PROPERTY(QVariant cardIndex READ getCardIndex WRITE setCardIndex)

public:
    /// An empty record: texts empty, numbers 0, variants and the date invalid, no card.
    DocumentImpactDetail();
    DocumentImpactDetail(const DocumentImpactDetail& other);
    DocumentImpactDetail& operator=(const DocumentImpactDetail& other);
    ~DocumentImpactDetail();

    /// Display name; it also tells whose record it is and is compared exactly.
    [[nodiscard]] QString getDiscountName() const;
    void setDiscountName(const QString& name);

    [[nodiscard]] double getDiscountSum() const;
    void setDiscountSum(double sum);

    /// Position number of the line that the record acts on.
    [[nodiscard]] int getPosition() const;
    void setPosition(int position);

    /// The code that the server gave.
    [[nodiscard]] int getDiscountCode() const;
    void setDiscountCode(int code);

    [[nodiscard]] EDiscountObject::type getDiscountObject() const;
    void setDiscountObject(EDiscountObject::type object);

    [[nodiscard]] EDiscountType::type getDiscountType() const;
    void setDiscountType(EDiscountType::type type);

    [[nodiscard]] EDiscountMode::type getDiscountMode() const;
    void setDiscountMode(EDiscountMode::type mode);

    /// The percentage, for a percent discount; the amount, for points.
    [[nodiscard]] QVariant getDiscountRate() const;
    void setDiscountRate(const QVariant& rate);

    [[nodiscard]] EImpactSource::source getImpactSource() const;
    void setImpactSource(EImpactSource::source source);

    /// When the record was made.
    [[nodiscard]] QDateTime getDateTime() const;
    void setDateTime(const QDateTime& dateTime);

    /// The record may take a line below its minimum price.
    [[nodiscard]] bool isMinPriceIgnored() const;
    void setMinPriceIgnored(bool ignored);

    /// The card behind the record; may be null.
    [[nodiscard]] QSharedPointer<DocumentCardRecord> getCardRecord() const;
    void setCardRecord(const QSharedPointer<DocumentCardRecord>& card);

    /// The internal code of that card.
    [[nodiscard]] QVariant getCardIndex() const;
    void setCardIndex(const QVariant& index);

private:
    friend struct DocumentImpactDetailData; // the host's own
    // The enumerations are stored as their numbers: a store keeps those and knows nothing of the names.
    [[nodiscard]] int getDiscountObjectNumber() const;
    void setDiscountObjectNumber(int number);
    [[nodiscard]] int getDiscountTypeNumber() const;
    void setDiscountTypeNumber(int number);
    [[nodiscard]] int getDiscountModeNumber() const;
    void setDiscountModeNumber(int number);
    [[nodiscard]] int getImpactSourceNumber() const;
    void setImpactSourceNumber(int number);

    QSharedDataPointer<DocumentImpactDetailData> d;
};

Q_DECLARE_METATYPE(QSharedPointer<DocumentImpactDetail>)
