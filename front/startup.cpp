#include "front/vantiro.h"

#include "bonus/records.h"
#include "host/facilities/config.h"
#include "host/facilities/log_manager.h"
#include "host/facilities/serder.h"
#include "host/framework/activity_notifier.h"
#include "host/framework/task.h"

#include <functional>

// Made when the library is loaded, so that the first save of a cheque does not pay for the walk of the properties.
template struct serder::default_serder_type<DiscountImpact>;
template struct serder::default_serder_type<BonusImpact>;

Vantiro::Vantiro()
    : BaseActivityListener(nullptr)
    , interface(QSharedPointer<VantiroBonusInterface>::create())
    , logger(Log4Qt::LogManager::logger(QStringLiteral("vantiro"), QString()))
{
    cardMode = vantiro::records::cardMode;
    for (const int option : { 4, 256, 2048, 131072 }) { // the host's numbers; nothing else is known of them here
        BasicLoyaltySystem::setOption(static_cast<LoyaltySystemOption>(option), true);
    }
}

Vantiro::~Vantiro() = default;

bool Vantiro::init()
{
    interface->initialize();

    Config* const config = Singleton<Config>::get();
    checkCouponPrefix = config->getString(QStringLiteral("Vantiro:checkCouponPrefix"), QStringLiteral("vantiro"));
    checkCouponMask = config->getString(QStringLiteral("Vantiro:checkCouponMask"), QString());
    positionCouponPrefix
        = config->getString(QStringLiteral("Vantiro:positionCouponPrefix"), QStringLiteral("vantiro"));
    positionCouponMask = config->getString(QStringLiteral("Vantiro:positionCouponMask"), QString());
    restoreLoyaltyState = config->getBool(QStringLiteral("Vantiro:restoreLoyaltyState"), false);

    Singleton<ActivityNotifier>::get()->subscribe(this);

    using Order = ActionTrigger::Order;
    using Priority = ActionTrigger::Priority;
    const auto add = [this](EContext::Code context, control::EActionType action, Order order,
                            ActionTrigger::Handler handler, Priority priority) {
        addTrigger(ActionTrigger(context, action, order, std::move(handler), ActionTrigger::Result::success, priority));
    };
    add(EContext::openDocument, control::addCoupon, Order::before, std::bind_front(&Vantiro::addCoupon, this),
        Priority::high);
    add(EContext::openDocument, control::addCoupon, Order::after, std::bind_front(&Vantiro::appendCoupon, this),
        Priority::lowest);
    add(EContext::openDocument, control::deleteCoupon, Order::before, std::bind_front(&Vantiro::deleteCoupons, this),
        Priority::high);
    add(EContext::any, control::checkConnection, Order::before, std::bind_front(&Vantiro::checkConnection, this),
        Priority::high);

    return registerLoyaltySystem();
}

EContext::Result Vantiro::checkConnection(const control::Action& action) const
{
    const QString wanted = action.value(QStringLiteral("pluginName"), QVariant()).toString().toLower();
    if (wanted == QString::fromLatin1(metaObject()->className()).toLower()) {
        // The task holds the client by a reference of its own: the host may run it after this plug-in has gone.
        const QSharedPointer<VantiroInterface> client = interface;
        const QSharedPointer<BasicTask> task = QSharedPointer<CustomTask>::create([client] { return client->ping(); });
        action.insert(QStringLiteral("pingTask"), QVariant::fromValue(task));
    }
    return EContext::goOn;
}
