#include "host/document/document_impact_detail.h"

#include <QSharedData>

struct DocumentImpactDetailData : QSharedData {
    QString name;
    double sum = 0.0;
    int position = 0;
    int code = 0;
    int object = 0;
    int type = 0;
    int mode = 0;
    QVariant rate;
    int source = 0;
    QDateTime dateTime;
    bool minPriceIgnored = false;
    QSharedPointer<DocumentCardRecord> card;
    QVariant cardIndex;
};

DocumentImpactDetail::DocumentImpactDetail()
    : d(new DocumentImpactDetailData)
{
}

DocumentImpactDetail::DocumentImpactDetail(const DocumentImpactDetail& other) = default;
DocumentImpactDetail& DocumentImpactDetail::operator=(const DocumentImpactDetail& other) = default;
DocumentImpactDetail::~DocumentImpactDetail() = default;

QString DocumentImpactDetail::getDiscountName() const
{
    return d->name;
}

void DocumentImpactDetail::setDiscountName(const QString& name)
{
    d->name = name;
}

double DocumentImpactDetail::getDiscountSum() const
{
    return d->sum;
}

void DocumentImpactDetail::setDiscountSum(double sum)
{
    d->sum = sum;
}

int DocumentImpactDetail::getPosition() const
{
    return d->position;
}

void DocumentImpactDetail::setPosition(int position)
{
    d->position = position;
}

int DocumentImpactDetail::getDiscountCode() const
{
    return d->code;
}

void DocumentImpactDetail::setDiscountCode(int code)
{
    d->code = code;
}

EDiscountObject::type DocumentImpactDetail::getDiscountObject() const
{
    return static_cast<EDiscountObject::type>(d->object);
}

void DocumentImpactDetail::setDiscountObject(EDiscountObject::type object)
{
    d->object = object;
}

EDiscountType::type DocumentImpactDetail::getDiscountType() const
{
    return static_cast<EDiscountType::type>(d->type);
}

void DocumentImpactDetail::setDiscountType(EDiscountType::type type)
{
    d->type = type;
}

EDiscountMode::type DocumentImpactDetail::getDiscountMode() const
{
    return static_cast<EDiscountMode::type>(d->mode);
}

void DocumentImpactDetail::setDiscountMode(EDiscountMode::type mode)
{
    d->mode = mode;
}

QVariant DocumentImpactDetail::getDiscountRate() const
{
    return d->rate;
}

void DocumentImpactDetail::setDiscountRate(const QVariant& rate)
{
    d->rate = rate;
}

EImpactSource::source DocumentImpactDetail::getImpactSource() const
{
    return static_cast<EImpactSource::source>(d->source);
}

void DocumentImpactDetail::setImpactSource(EImpactSource::source source)
{
    d->source = source;
}

QDateTime DocumentImpactDetail::getDateTime() const
{
    return d->dateTime;
}

void DocumentImpactDetail::setDateTime(const QDateTime& dateTime)
{
    d->dateTime = dateTime;
}

bool DocumentImpactDetail::isMinPriceIgnored() const
{
    return d->minPriceIgnored;
}

void DocumentImpactDetail::setMinPriceIgnored(bool ignored)
{
    d->minPriceIgnored = ignored;
}

QSharedPointer<DocumentCardRecord> DocumentImpactDetail::getCardRecord() const
{
    return d->card;
}

void DocumentImpactDetail::setCardRecord(const QSharedPointer<DocumentCardRecord>& card)
{
    d->card = card;
}

QVariant DocumentImpactDetail::getCardIndex() const
{
    return d->cardIndex;
}

void DocumentImpactDetail::setCardIndex(const QVariant& index)
{
    d->cardIndex = index;
}

int DocumentImpactDetail::getDiscountObjectNumber() const
{
    return d->object;
}

void DocumentImpactDetail::setDiscountObjectNumber(int number)
{
    d->object = number;
}

int DocumentImpactDetail::getDiscountTypeNumber() const
{
    return d->type;
}

void DocumentImpactDetail::setDiscountTypeNumber(int number)
{
    d->type = number;
}

int DocumentImpactDetail::getDiscountModeNumber() const
{
    return d->mode;
}

void DocumentImpactDetail::setDiscountModeNumber(int number)
{
    d->mode = number;
}

int DocumentImpactDetail::getImpactSourceNumber() const
{
    return d->source;
}

void DocumentImpactDetail::setImpactSourceNumber(int number)
{
    d->source = number;
}
