#pragma once

#include "tests/crash/story.h"

#include <QString>
#include <QStringList>

// The steps of which stories are made.
namespace crash::steps {

[[nodiscard]] Step openSale(int document);
[[nodiscard]] Step openReturn(int document);
[[nodiscard]] Step openReturnOf(int sale, int document);
/// The cheque has so many lines, those taken off among them.
[[nodiscard]] Step scan(const till::Checkout::Article& article, int lines);
[[nodiscard]] Step takeBack(int position, double quantity, int lines);
[[nodiscard]] Step remove(int position);
[[nodiscard]] Step select(int position);

[[nodiscard]] Step card(const QString& number);
[[nodiscard]] Step phone(const QString& number);
[[nodiscard]] Step request();
[[nodiscard]] Step coupon(const QString& number);
[[nodiscard]] Step deleteCoupon(const QString& number);
/// As many as the service still allows where that is less.
[[nodiscard]] Step points(double amount);
[[nodiscard]] Step rollback();

[[nodiscard]] Step payCash();
[[nodiscard]] Step payCertificate(double amount);
[[nodiscard]] Step close(int document);
[[nodiscard]] Step cancel(int document);
[[nodiscard]] Step putOut(int document);
[[nodiscard]] Step reveal(int document, int newDocument);

[[nodiscard]] Step stop(const QString& server);
[[nodiscard]] Step start(const QString& server);
/// The next request of the operation is executed, and its reply is lost.
[[nodiscard]] Step loseReply(const QString& server, const QString& operation);
[[nodiscard]] Step noFaults();

/// Until nothing is left to be delivered.
[[nodiscard]] Step deliver();
/// A moment in which nobody uses the till.
[[nodiscard]] Step idle();

} // namespace crash::steps
