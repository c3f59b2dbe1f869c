#include "tests/front/restarted_till.h"

#include "till/document/cheque_contents.h"
#include "till/store/document_json.h"

using namespace Qt::StringLiterals;

namespace {

const TillAtWork::Settings couponSettings { { u"Vantiro:checkCouponPrefix"_s, u"vantiro-c"_s } };

[[nodiscard]] const char* nameOf(Road road)
{
    return road == Road::memory ? "FromMemory" : "FromTheStore";
}

} // namespace

void PrintTo(Road road, std::ostream* stream)
{
    *stream << nameOf(road);
}

std::string roadName(const testing::TestParamInfo<Road>& row)
{
    return nameOf(row.param);
}

RestartedTill::RestartedTill(const DocumentBuilder& document)
    : till(std::in_place, document, couponSettings)
{
}

void RestartedTill::restart()
{
    restart(couponSettings);
}

void RestartedTill::restart(const TillAtWork::Settings& settings)
{
    QSharedPointer<AbstractDocument> document = till->document();
    if (GetParam() == Road::store) {
        document = till::documentFromJson(till::toJson(document));
    }
    till.emplace(document, settings);
    if (till->card()) {
        till->card()->fields.pointsForSpend = 0.0; // it is the plug-in that writes them
    }
}

void RestartedTill::restore()
{
    till->tell(Event(EActivityListener::restoreDocument));
}

void RestartedTill::add(const QString& coupon)
{
    till->server.answerText("IsCouponValid", u"true"_s);
    EXPECT_TRUE(till->addCoupon(coupon));
    EXPECT_FALSE(till->server.take("IsCouponValid").isEmpty());
}

std::string RestartedTill::couponsInMemory()
{
    till->plugin.updateCouponsPluginData(till->document());
    QMap<int, QList<QString>> byPosition;
    const QVariantMap stored = till->stored(u"positionCoupons"_s).toMap();
    for (auto it = stored.cbegin(); it != stored.cend(); ++it) {
        byPosition.insert(it.key().toInt(), it->toStringList());
    }
    return told(till->stored(u"checkCoupons"_s).toStringList()) + " | " + told(byPosition);
}

QString RestartedTill::nextCheque()
{
    till->answerRequest();
    EXPECT_TRUE(till->plugin.request(till->document()));
    const QString sent = till->server.take("GetDiscounts");
    EXPECT_FALSE(till->server.take("GetMessages").isEmpty());
    if (till->card()) {
        EXPECT_FALSE(till->server.take("GetCardDiscountAmount").isEmpty());
    }
    return sent;
}
