#pragma once

#include "host/export.h"

#include <QSharedPointer>
#include <QString>
#include <QVariant>

struct EContext {
    /// Where in the till an action occurs.
    enum Code : int {
        openDocument = 6,
        any = 255,
    };

    /// What a handler tells the host.
    enum Result : int {
        refused = 0, // the handler has reported an error; the host does not carry the action out
        goOn = 2,
    };
};

namespace control {

/// The actions that loyalty plug-ins are asked about.
enum EActionType : int {
    // "couponNumber": text; a handler that takes it inserts "couponType" and "allowSameCouponNumber"; see
    // `ActionTrigger::Order`
    addCoupon = 198,
    deleteCoupon = 199, // "coupon": `CouponPtr`
    checkConnection = 235, // "pluginName": text; the plug-in of that name inserts "pingTask"
};

/// An action of the till: named arguments. Copies share their arguments, so what a handler inserts is seen by the host
/// and by the handlers after it. [cheque-thread]
class VANTIRO_HOST_API Action {
public:
    /// An action without arguments.
    Action();

    /// Adds the argument, or replaces the one of that name, and returns this action.
    Action& appendArgument(const QVariant& value, const QString& name);

    [[nodiscard]] QVariant value(const QString& name, const QVariant& defaultValue) const;

    /// Adds or replaces an argument for everyone who shares this action; hence const.
    void insert(const QString& name, const QVariant& value) const;

private:
    struct Arguments;
    QSharedPointer<Arguments> arguments;
};

} // namespace control
