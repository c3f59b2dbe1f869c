#include "host/document/abstract_document.h"
#include "host/document/enumerations.h"
#include "host/facilities/tr.h"
#include "host/framework/event.h"
#include "host/framework/task.h"
#include "till/document/cheque.h"
#include "till/document/coupon_record.h"

#include <gtest/gtest.h>

namespace {

// Asked by name and before any test, so that nothing in this program has registered the types on its own.
const QStringList namesUnknownAtLoad = [] {
    QStringList unknown;
    for (const char* name : { "QSharedPointer<AbstractDocument>", "QSharedPointer<GoodsItem>", "QSharedPointer<Coupon>",
                              "CouponPtr", "ECoupon::Type", "Event", "QSharedPointer<BasicTask>", "tr::Tr" }) {
        if (!QMetaType::fromName(name).isValid()) {
            unknown.append(QString::fromLatin1(name));
        }
    }
    return unknown;
}();

template <class T>
bool becomesObject()
{
    return QMetaType::hasRegisteredConverterFunction(QMetaType::fromType<T>(), QMetaType::fromType<QObject*>());
}

const bool convertibleAtLoad = becomesObject<QSharedPointer<AbstractDocument>>()
    && becomesObject<QSharedPointer<GoodsItem>>() && becomesObject<QSharedPointer<Coupon>>();

TEST(MetaTypes, AreRegisteredWhenTheTillIsLoaded)
{
    EXPECT_EQ(namesUnknownAtLoad, QStringList());
    EXPECT_TRUE(convertibleAtLoad);
}

template <class T>
void expectObject(const QSharedPointer<T>& pointer)
{
    const QVariant argument = QVariant::fromValue(pointer);
    ASSERT_TRUE(argument.canConvert<QObject*>());
    EXPECT_EQ(argument.value<QObject*>(), pointer.data());
}

TEST(MetaTypes, PointersToObjectsConvertToTheObject)
{
    expectObject<AbstractDocument>(QSharedPointer<till::Cheque>::create());
    expectObject<GoodsItem>(QSharedPointer<till::Line>::create(till::LineFields()));
    expectObject<Coupon>(QSharedPointer<till::CouponRecord>::create(QStringLiteral("1")));
}

TEST(MetaTypes, CouponTypeIsReadFromItsNumber)
{
    const QVariant number(3);
    ASSERT_TRUE(number.canConvert<ECoupon::Type>());
    EXPECT_EQ(number.value<ECoupon::Type>(), ECoupon::loyaltySystem);
    EXPECT_EQ(QVariant::fromValue(ECoupon::loyaltySystem).toInt(), 3);
}

TEST(MetaTypes, CouponPointerGoesByBothNames)
{
    EXPECT_EQ(QMetaType::fromName("CouponPtr"), QMetaType::fromName("QSharedPointer<Coupon>"));
}

}
