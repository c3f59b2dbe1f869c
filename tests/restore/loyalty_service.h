#pragma once

#include "tests/support/loopback_server.h"

#include <QString>
#include <QStringList>

#include <atomic>

/// The far end of the wire, at a port of this process. Its answers depend on the request alone, so that a cheque that
/// goes on from a wrong state is answered otherwise: each coupon of a cheque raises the discount, and points are taken
/// as they are asked for. [any-thread]
class LoyaltyService {
public:
    LoyaltyService();

    [[nodiscard]] QString address() const;

    /// Something in between answers requests for discounts with status 503.
    void loseDiscounts();
    /// The request of this number, counted from 0 over the life of the service, gets no answer.
    void keepSilentAt(qsizetype request);

    [[nodiscard]] qsizetype count() const;
    /// The requests from that one on, as they came over the wire but for the order of attributes, which has no meaning
    /// and changes from process to process: "GetDiscounts <soapenv:Envelope …".
    [[nodiscard]] QStringList requestsFrom(qsizetype first) const;

private:
    [[nodiscard]] vantiro_test::Answer answer(const vantiro_test::HttpRequest& request);

    std::atomic<bool> discountsLost = false;
    std::atomic<qsizetype> silentAt = -1;
    std::atomic<qsizetype> answered = 0;
    vantiro_test::LoopbackServer server;
};
