#pragma once

#include "tests/front/till_at_work.h"
#include "tests/walk/model.h"
#include "tests/walk/records.h"
#include "tests/walk/setting.h"
#include "tests/walk/step.h"

#include <QByteArray>
#include <QList>
#include <QSharedPointer>

#include <memory>

namespace walk {

class Saves;
class Coupons;
class Tasks;

/// The plug-in at work in a till that takes the steps of a walk, and what is seen of it. [cheque-thread]
class WalkedTill {
public:
    WalkedTill(const Setting& setting, const Document& document);
    ~WalkedTill();

    /// Takes the step, with the servers and the cashier in the mood of the script.
    [[nodiscard]] Account run(const Step& step, const Script& script);
    [[nodiscard]] View view();

private:
    void start(const QSharedPointer<AbstractDocument>& document);
    void open(const QSharedPointer<AbstractDocument>& document);
    [[nodiscard]] QString perform(const Step& step);
    [[nodiscard]] QString performOnCheque(const Step& step);
    [[nodiscard]] QString identify(const QString& number);
    [[nodiscard]] QString cardInfo();
    [[nodiscard]] QString cardNumber(int type);
    [[nodiscard]] QString spend();
    [[nodiscard]] QString addCoupon(const QString& number);
    void addPosition(double sum);
    void takeOff(int position);
    void tellEvent(int code, About which);
    void putOut(const Document& next);
    void bringBack();
    void restart(Restart from, Restoring how);

    Setting setting;
    QSharedPointer<AbstractDocument> previous;
    QList<QByteArray> setAside;
    std::unique_ptr<TillAtWork> till;
    std::unique_ptr<Saves> saves; // this and the next stand in front of those of the till
    std::unique_ptr<Coupons> couponLogic;
    std::unique_ptr<Tasks> tasks;
    QSharedPointer<AbstractDocument> probe; // takes what the plug-in has in its coupon stores
};

} // namespace walk
