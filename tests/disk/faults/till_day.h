#pragma once

#include "tests/disk/faults/failing_disk.h"
#include "tests/disk/faults/open_service.h"
#include "till/delivery/delivery.h"
#include "till/desk/checkout.h"

#include <QPluginLoader>
#include <QString>
#include <QStringList>

#include <memory>

/// A till with the plug-in's own library, its real store, and a cashier whose steps are words. What is shown to the
/// cashier is kept. [cheque-thread]
class TillDay {
public:
    /// Loads the plug-in and opens the store. Throws what they throw.
    TillDay(const QString& pluginFile, const QString& folder);
    ~TillDay();

    /// The steps of a story; empty when there is no such story.
    [[nodiscard]] static QStringList story(const QString& name);

    /// Carries the step out. Throws what the till throws; false when it has refused.
    [[nodiscard]] bool perform(const QString& step);

    [[nodiscard]] till::Checkout& checkout();
    /// The lines since the last call.
    [[nodiscard]] QStringList shown();

    OpenService service;

private:
    Q_DISABLE_COPY_MOVE(TillDay)

    void scan(const QString& code, double price, double quantity);

    QStringList lines;
    QPluginLoader loader;
    till::Delivery delivery;
    std::unique_ptr<till::Checkout> theCheckout;
};
