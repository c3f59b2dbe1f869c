#pragma once

#include "bench/common/canned_server.h"
#include "front/vantiro.h"
#include "till/desk/checkout.h"

#include <QByteArray>
#include <QTemporaryDir>

#include <memory>
#include <optional>
#include <string>
#include <vector>

/// A till at work: the plug-in, the checkout, the store and the log in a folder on the disk, and the service at the
/// other end of a socket. The cashier says and reads nothing. One at a time. [cheque-thread]
class Shop {
public:
    /// With a service of its own, which answers as to sales of so many lines.
    explicit Shop(int lineCount);
    /// With the services at these addresses, the first being the most wanted.
    Shop(int lineCount, const QList<QUrl>& services);
    ~Shop();
    Shop(const Shop&) = delete;
    Shop& operator=(const Shop&) = delete;

    /// Opens a sale under the next number and enters its lines.
    void enterLines(std::optional<int> number);
    /// Card, request, coupon, points, cash and close of the sale that is open. Throws `std::runtime_error` when a step
    /// was not done.
    void sell();

    /// Its own, if it has one.
    [[nodiscard]] CannedServer& service();
    [[nodiscard]] till::Checkout& till();
    [[nodiscard]] Vantiro& plugin();

    const int lineCount;

private:
    void start(const QList<QUrl>& services);

    QTemporaryDir folder;
    std::unique_ptr<CannedServer> server;
    std::unique_ptr<Vantiro> thePlugin;
    std::unique_ptr<till::Checkout> theTill;
};
