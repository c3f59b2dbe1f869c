#pragma once

#include "host/facilities/exceptions.h"
#include "host/framework/activity_notifier.h"
#include "host/framework/task.h"
#include "tests/front/till_at_work.h"
#include "till/store/document_json.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <utility>

namespace walk {

// Parts of the till that stand in front of the substitutes that it works with already, and hand on to them.

/// Keeps the document as it was last saved; on demand it has no room for more, or takes nothing down.
class Saves : public SaveToFileLogic {
public:
    Saves()
        : former(std::exchange(MockFactory<SaveToFileLogic>::mocked, this))
    {
    }

    ~Saves() override
    {
        MockFactory<SaveToFileLogic>::mocked = former;
    }

    void save(const QSharedPointer<AbstractDocument>& document, const QString& extra) override
    {
        if (isProbe) {
            return;
        }
        if (fail) {
            throw BasicException(tr::Tr(QStringLiteral("диск полон")));
        }
        former->save(document, extra);
        latest = till::toJson(document);
    }

    QByteArray latest;
    bool fail = false;
    bool isProbe = false;

private:
    SaveToFileLogic* former;
};

/// Deletes coupons by the action that a cashier uses, so that the plug-in is asked while it handles an event.
class Coupons : public CouponLogic {
public:
    explicit Coupons(TillAtWork& itsTill)
        : till(itsTill)
        , former(std::exchange(MockFactory<CouponLogic>::mocked, this))
    {
    }

    ~Coupons() override
    {
        MockFactory<CouponLogic>::mocked = former;
    }

    void deleteCoupon(const control::Action& action) override
    {
        former->deleteCoupon(action);
        static_cast<void>(till.deleteCoupon(action.value(QStringLiteral("couponNumber"), QVariant()).toString()));
    }

private:
    TillAtWork& till;
    CouponLogic* former;
};

/// Takes the tasks over that the plug-in hands out.
class Tasks : public BaseActivityListener {
public:
    Tasks()
        : BaseActivityListener(nullptr)
    {
        Singleton<ActivityNotifier>::get()->subscribe(this);
    }

    void handleEvent(const Event& event) override
    {
        if (event.getCode() == EActivityListener::runTask) {
            waiting.append(event.value(QStringLiteral("task"), QVariant()).value<QSharedPointer<BasicTask>>());
        }
    }

    [[nodiscard]] QString runFirst()
    {
        const QSharedPointer<BasicTask> task = waiting.takeFirst();
        const QSharedPointer<TaskResult> result = task->run();
        task->deliver(result);
        return result->toString();
    }

private:
    QList<QSharedPointer<BasicTask>> waiting;
};

} // namespace walk
