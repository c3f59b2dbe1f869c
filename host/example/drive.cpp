#include "host/document/abstract_document.h"
#include "host/framework/basic_loyalty_system.h"
#include "host/framework/basic_plugin.h"

#include <QCoreApplication>
#include <QPluginLoader>
#include <QTextStream>

namespace {

/// A sale that has just been opened: no card, no lines, nothing to pay.
class EmptySale : public AbstractDocument {
public:
    QDateTime getOpenTime() override
    {
        return openTime;
    }

    bool canGoOffline() override
    {
        return true;
    }

    bool hasCardRecord(int /*cardMode*/) override
    {
        return false;
    }

    QString getDocumentIdentity() override
    {
        return QStringLiteral("till-1/shift-1/sale-1");
    }

    bool hasCoupon(const QSharedPointer<Coupon>& /*coupon*/) override
    {
        return false;
    }

    bool hasCardRecordOfType(int /*cardType*/) override
    {
        return false;
    }

    QSharedPointer<DocumentCardRecord> getCardRecord(int /*cardMode*/) override
    {
        return {};
    }

    double getSumToPay() override
    {
        return 0.0;
    }

    Position getCurrentPosition() override
    {
        return {};
    }

    QList<DocumentBonusRecord> getBonusRecords() override
    {
        return {};
    }

    int getDocumentType() override
    {
        return EDocumentType::sale;
    }

    int getChequeNumber() override
    {
        return 1;
    }

    int getShiftNumber() override
    {
        return 1;
    }

    QDateTime getCloseTime() override
    {
        return {};
    }

    double getDocumentSum() override
    {
        return 0.0;
    }

    QVariant getSourceDocumentId() override
    {
        return {};
    }

    QList<QSharedPointer<GoodsItem>> getGoodsItems() override
    {
        return {};
    }

    QList<QSharedPointer<GoodsItem>> getDeletedGoodsItems() override
    {
        return {};
    }

    QList<QSharedPointer<MoneyItem>> getMoneyItems() override
    {
        return {};
    }

    int getPositionCount() override
    {
        return 0;
    }

    QList<QSharedPointer<DocumentImpact>> getDocumentImpacts() override
    {
        return {};
    }

    bool isDeferred() override
    {
        return false;
    }

    void setPluginDataJson(const QString& json) override
    {
        pluginDataJson = json;
    }

    QString getPluginDataJson() override
    {
        return pluginDataJson;
    }

private:
    const QDateTime openTime = QDateTime::currentDateTime();
    QString pluginDataJson;
};

QString yesOrNo(bool value)
{
    return value ? QStringLiteral("yes") : QStringLiteral("no");
}

/// What needs no server. False when the plug-in cannot work.
bool drive(BasicPlugin& plugin, BasicLoyaltySystem& system)
{
    if (!plugin.init()) {
        return false;
    }
    system.setDocument(QSharedPointer<EmptySale>::create());
    const QString line = QStringLiteral("card mode %1, coupons of type 3: %2, part of the points: %3");
    QTextStream(stdout) << line.arg(QString::number(system.getCardMode()),
                                    yesOrNo(system.couponBelongsToSystem(ECoupon::loyaltySystem)),
                                    yesOrNo(system.isAllowPartialPointsSpend()))
                        << Qt::endl;
    system.setDocument({});
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);

    QPluginLoader loader(application.arguments().value(1));
    // Without the first hint a missing function ends the till at its first call, in the middle of a cheque. With the
    // second the plug-in's code stays in memory: what it has handed out may outlive it.
    loader.setLoadHints(QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint);
    auto* const plugin = qobject_cast<BasicPlugin*>(loader.instance());
    auto* const system = qobject_cast<BasicLoyaltySystem*>(loader.instance());
    if (plugin == nullptr || system == nullptr) {
        QTextStream(stderr) << "No loyalty plug-in: " << loader.errorString() << Qt::endl;
        return 1;
    }

    const bool works = drive(*plugin, *system);
    plugin->deinit();
    loader.unload(); // destroys the plug-in's object now, and not somewhere behind the end of main
    return works ? 0 : 1;
}
