#include "host/document/abstract_document.h"
#include "host/document/coupon.h"
#include "host/document/enumerations.h"
#include "host/document/goods_item.h"
#include "host/facilities/tr.h"
#include "host/framework/event.h"
#include "host/framework/task.h"

#include <QMetaType>

namespace {

// The types in which arguments of events and actions travel. Pointers to objects get their conversion to `QObject*`
// with the registration. It is done while the till is loaded, so that no order of calls between host and plug-ins
// matters.
struct MetaTypes {
    MetaTypes()
    {
        qRegisterMetaType<QSharedPointer<AbstractDocument>>();
        qRegisterMetaType<QSharedPointer<GoodsItem>>();
        qRegisterMetaType<CouponPtr>();
        qRegisterMetaType<ECoupon::Type>();
        qRegisterMetaType<Event>();
        qRegisterMetaType<QSharedPointer<BasicTask>>();
        qRegisterMetaType<tr::Tr>();
    }
};

[[maybe_unused]] const MetaTypes metaTypes;

}
