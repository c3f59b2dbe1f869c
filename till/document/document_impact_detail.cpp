#include "till/document/stored_detail.h"

#include "host/facilities/serder.h"

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

    /// What is stored of a detail, and kept for the next time: the open cheque is stored after every step of the
    /// cashier, and most details are those of the step before.
    [[nodiscard]] static const QVariant& storedForm(const DocumentImpactDetail& detail)
    {
        static const auto strategy = serder::details::Strategy::create(DocumentImpactDetail::staticMetaObject);
        if (!detail.d->form.isValid()) {
            strategy.serialize(&detail.d->form, &detail, DocumentImpactDetail::staticMetaObject);
        }
        return detail.d->form;
    }

    [[nodiscard]] static QByteArray& keptText(const DocumentImpactDetail& detail)
    {
        return detail.d->text;
    }

    /// For every change: what was kept is another one's from then on.
    [[nodiscard]] DocumentImpactDetailData& changing()
    {
        form.clear();
        text.clear();
        return *this;
    }

private:
    mutable QVariant form; // invalid until it is asked for
    mutable QByteArray text; // as JSON, likewise
};

QVariant till::storedDetail(const DocumentImpactDetail& detail)
{
    return DocumentImpactDetailData::storedForm(detail);
}

QByteArray& till::keptDetailText(const DocumentImpactDetail& detail)
{
    return DocumentImpactDetailData::keptText(detail);
}

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
    d->changing().name = name;
}

double DocumentImpactDetail::getDiscountSum() const
{
    return d->sum;
}

void DocumentImpactDetail::setDiscountSum(double sum)
{
    d->changing().sum = sum;
}

int DocumentImpactDetail::getPosition() const
{
    return d->position;
}

void DocumentImpactDetail::setPosition(int position)
{
    d->changing().position = position;
}

int DocumentImpactDetail::getDiscountCode() const
{
    return d->code;
}

void DocumentImpactDetail::setDiscountCode(int code)
{
    d->changing().code = code;
}

EDiscountObject::type DocumentImpactDetail::getDiscountObject() const
{
    return static_cast<EDiscountObject::type>(d->object);
}

void DocumentImpactDetail::setDiscountObject(EDiscountObject::type object)
{
    d->changing().object = object;
}

EDiscountType::type DocumentImpactDetail::getDiscountType() const
{
    return static_cast<EDiscountType::type>(d->type);
}

void DocumentImpactDetail::setDiscountType(EDiscountType::type type)
{
    d->changing().type = type;
}

EDiscountMode::type DocumentImpactDetail::getDiscountMode() const
{
    return static_cast<EDiscountMode::type>(d->mode);
}

void DocumentImpactDetail::setDiscountMode(EDiscountMode::type mode)
{
    d->changing().mode = mode;
}

QVariant DocumentImpactDetail::getDiscountRate() const
{
    return d->rate;
}

void DocumentImpactDetail::setDiscountRate(const QVariant& rate)
{
    d->changing().rate = rate;
}

EImpactSource::source DocumentImpactDetail::getImpactSource() const
{
    return static_cast<EImpactSource::source>(d->source);
}

void DocumentImpactDetail::setImpactSource(EImpactSource::source source)
{
    d->changing().source = source;
}

QDateTime DocumentImpactDetail::getDateTime() const
{
    return d->dateTime;
}

void DocumentImpactDetail::setDateTime(const QDateTime& dateTime)
{
    d->changing().dateTime = dateTime;
}

bool DocumentImpactDetail::isMinPriceIgnored() const
{
    return d->minPriceIgnored;
}

void DocumentImpactDetail::setMinPriceIgnored(bool ignored)
{
    d->changing().minPriceIgnored = ignored;
}

QSharedPointer<DocumentCardRecord> DocumentImpactDetail::getCardRecord() const
{
    return d->card;
}

void DocumentImpactDetail::setCardRecord(const QSharedPointer<DocumentCardRecord>& card)
{
    d->changing().card = card;
}

QVariant DocumentImpactDetail::getCardIndex() const
{
    return d->cardIndex;
}

void DocumentImpactDetail::setCardIndex(const QVariant& index)
{
    d->changing().cardIndex = index;
}

int DocumentImpactDetail::getDiscountObjectNumber() const
{
    return d->object;
}

void DocumentImpactDetail::setDiscountObjectNumber(int number)
{
    d->changing().object = number;
}

int DocumentImpactDetail::getDiscountTypeNumber() const
{
    return d->type;
}

void DocumentImpactDetail::setDiscountTypeNumber(int number)
{
    d->changing().type = number;
}

int DocumentImpactDetail::getDiscountModeNumber() const
{
    return d->mode;
}

void DocumentImpactDetail::setDiscountModeNumber(int number)
{
    d->changing().mode = number;
}

int DocumentImpactDetail::getImpactSourceNumber() const
{
    return d->source;
}

void DocumentImpactDetail::setImpactSourceNumber(int number)
{
    d->changing().source = number;
}
