#include "host/document/document_impact.h"

#include "host/facilities/serder.h"
#include "till/document/stored_detail.h"

#include <QVariantMap>

namespace {

using DetailPtr = QSharedPointer<DocumentImpactDetail>;

const serder::details::Strategy& detailStrategy()
{
    static const serder::details::Strategy strategy
        = serder::details::Strategy::create(DocumentImpactDetail::staticMetaObject);
    return strategy;
}

DetailPtr restored(const QVariant& stored)
{
    auto detail = DetailPtr::create();
    detailStrategy().deserialize(detail.data(), stored, DocumentImpactDetail::staticMetaObject);
    return detail;
}

}

DocumentImpact::DocumentImpact()
    : DocumentImpact(nullptr)
{
}

DocumentImpact::DocumentImpact(const QSharedPointer<DocumentImpactDetail>& summary)
    : totals(summary.isNull() ? DetailPtr::create() : summary)
{
}

DocumentImpact::DocumentImpact(const DocumentImpact& other) = default;
DocumentImpact& DocumentImpact::operator=(const DocumentImpact& other) = default;
DocumentImpact::~DocumentImpact() = default;

QSharedPointer<DocumentImpactDetail> DocumentImpact::getTotals() const
{
    return totals;
}

QMap<int, QSharedPointer<DocumentImpactDetail>> DocumentImpact::getDetails()
{
    return details;
}

void DocumentImpact::addDetailForPosition(int position, double sum)
{
    const auto known = details.constFind(position);
    if (known != details.constEnd()) {
        known.value()->setDiscountSum(known.value()->getDiscountSum() + sum);
        return;
    }
    const auto detail = DetailPtr::create(*totals);
    detail->setDiscountObject(EDiscountObject::position);
    detail->setPosition(position);
    detail->setDiscountSum(sum);
    details.insert(position, detail);
}

QVariant DocumentImpact::storedTotals() const
{
    return till::storedDetail(*totals);
}

void DocumentImpact::setStoredTotals(const QVariant& stored)
{
    totals = restored(stored);
}

QVariant DocumentImpact::storedDetails() const
{
    QVariantMap result;
    for (auto detail = details.constBegin(); detail != details.constEnd(); ++detail) {
        result.insert(QString::number(detail.key()), till::storedDetail(*detail.value()));
    }
    return result;
}

void DocumentImpact::setStoredDetails(const QVariant& stored)
{
    details.clear();
    const QVariantMap map = stored.toMap();
    for (auto entry = map.constBegin(); entry != map.constEnd(); ++entry) {
        bool isNumber = false;
        const int position = entry.key().toInt(&isNumber);
        // A damaged entry would otherwise come back as a detail of the wrong line, or as one that says nothing.
        if (!isNumber || !entry.value().canConvert<QVariantMap>()) {
            continue;
        }
        const DetailPtr detail = restored(entry.value());
        detail->setPosition(position);
        details.insert(position, detail);
    }
}

DiscountImpact::~DiscountImpact() = default;

BonusImpact::~BonusImpact() = default;
