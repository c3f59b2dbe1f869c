#include "tests/cheque/null_detail.h"

namespace {

using Details = QMap<int, QSharedPointer<DocumentImpactDetail>>;

Details& detailsOf(DocumentImpact& impact);

template <Details DocumentImpact::*Member>
struct Grant {
    friend Details& detailsOf(DocumentImpact& impact)
    {
        return impact.*Member;
    }
};

// The names in an explicit instantiation are not subject to access checks.
template struct Grant<&DocumentImpact::details>;

}

void setNullDetail(DocumentImpact& impact, int position)
{
    detailsOf(impact).insert(position, nullptr);
}
