#include "tests/front/kept_state.h"

#include <gtest/gtest.h>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString ofChequeKey = u"checkCoupons"_s;
const QString byPositionKey = u"positionCoupons"_s;

/// Takes the place of the till's store, so that a question asked by saving is not told as a save.
class QuietSaves : public SaveToFileLogic {
public:
    QuietSaves()
        : former(std::exchange(MockFactory<SaveToFileLogic>::mocked, this))
    {
    }

    ~QuietSaves() override
    {
        MockFactory<SaveToFileLogic>::mocked = former;
    }

    void save(const QSharedPointer<AbstractDocument>&, const QString&) override { }

private:
    SaveToFileLogic* former;
};

[[nodiscard]] std::string couponsOf(const AbstractDocument& document)
{
    const QVariant ofCheque = document.getValue(u"Vantiro"_s, ofChequeKey, QVariant());
    const QVariant byPosition = document.getValue(u"Vantiro"_s, byPositionKey, QVariant());
    if (!ofCheque.isValid() && !byPosition.isValid()) {
        return "none stored";
    }
    QStringList parts;
    if (!ofCheque.toStringList().isEmpty()) {
        parts.append(u"cheque: "_s + ofCheque.toStringList().join(u' '));
    }
    const QVariantMap positions = byPosition.toMap();
    for (auto it = positions.cbegin(); it != positions.cend(); ++it) {
        parts.append(it.key() + u": "_s + it->toStringList().join(u' '));
    }
    return parts.join(u"; "_s).toStdString();
}

} // namespace

TillAtWork::Settings couponsApart()
{
    return { { u"Vantiro:checkCouponPrefix"_s, u"cheque-"_s }, { u"Vantiro:positionCouponPrefix"_s, u"item-"_s } };
}

std::string couponsInMemory(const Vantiro& plugin)
{
    const QuietSaves saves;
    const QSharedPointer<AbstractDocument> sheet = DocumentBuilder().build();
    plugin.updateCouponsPluginData(sheet);
    return couponsOf(*sheet);
}

std::string couponsStored(const TillAtWork& till)
{
    return couponsOf(*till.document());
}

void giveCoupons(TillAtWork& till, const QStringList& ofCheque, const QMap<int, QStringList>& byPosition)
{
    QVariantMap positions;
    for (auto it = byPosition.cbegin(); it != byPosition.cend(); ++it) {
        positions.insert(QString::number(it.key()), QVariant(it.value()));
    }
    till.store(ofChequeKey, ofCheque);
    till.store(byPositionKey, positions);
    EXPECT_TRUE(till.plugin.restoreLoyaltySystem());
}

void addWell(TillAtWork& till, const QString& number)
{
    till.server.answerText("IsCouponValid", u"true"_s);
    EXPECT_TRUE(till.addCoupon(number)) << number.toStdString();
    EXPECT_TRUE(till.server.take("IsCouponValid").contains(number));
    static_cast<void>(till.told());
    static_cast<void>(till.log());
}

void giveLoyaltyData(OpenVantiro& plugin)
{
    plugin.pointsForSpend = 30.0;
    plugin.discountImpacts = { discountImpact(Detail(record_name::positionDiscount).sum(5.0)) };
    plugin.bonusImpacts = { bonusImpact({ { 1, 3.0 } }) };
    plugin.messagesToCashier = { u"кассиру"_s };
    plugin.messagesToClient = { u"покупателю"_s };
}

std::string loyaltyDataOf(OpenVantiro& plugin)
{
    return u"%1 points, %2 discounts, %3 spent, %4, %5"_s
        .arg(QString::number(plugin.pointsForSpend), QString::number(plugin.discountImpacts.size()),
             QString::number(plugin.bonusImpacts.size()), plugin.messagesToCashier.join(u' '),
             plugin.messagesToClient.join(u' '))
        .toStdString();
}
