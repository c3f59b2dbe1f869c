#include "tests/crash/steps.h"

#include "till/desk/desk_error.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <stdexcept>

namespace crash::steps {

namespace {

using till::store::DocumentState;

[[nodiscard]] std::optional<DocumentState> stateOf(int number)
{
    for (const till::store::DocumentEntry& entry : till::store::documents()) {
        if (entry.number == number) {
            return entry.state;
        }
    }
    return std::nullopt;
}

[[nodiscard]] bool isOpen(const Desk& desk, int document)
{
    return desk.checkout.isOpen() && desk.checkout.document()->getChequeNumber() == desk.numberOf(document);
}

[[nodiscard]] qsizetype linesOf(const Desk& desk)
{
    return desk.checkout.contents().liveLines().size() + desk.checkout.contents().deletedLines().size();
}

[[nodiscard]] bool hasCoupon(const Desk& desk, const QString& number)
{
    return std::ranges::any_of(desk.checkout.contents().coupons,
                               [&](const QSharedPointer<Coupon>& coupon) { return coupon->getNumber() == number; });
}

/// Discounts are asked for no more, and neither are cards and coupons taken.
[[nodiscard]] bool isBeingPaid(const Desk& desk)
{
    return desk.checkout.loyaltySystem().hasBonusImpacts() || !desk.checkout.contents().payments.isEmpty();
}

[[noreturn]] void fail(const char* what)
{
    throw std::runtime_error(what);
}

template <class Opening>
[[nodiscard]] Step opening(int document, const Opening& open)
{
    return [document, open](const Desk& desk) {
        if (!stateOf(desk.numberOf(document))) {
            open(desk, desk.numberOf(document));
        }
    };
}

} // namespace

Step openSale(int document)
{
    return opening(document, [](const Desk& desk, int number) { desk.checkout.openSale(number); });
}

Step openReturn(int document)
{
    return opening(document, [](const Desk& desk, int number) { desk.checkout.openReturn(number); });
}

Step openReturnOf(int sale, int document)
{
    return opening(document,
                   [sale](const Desk& desk, int number) { desk.checkout.openReturnOf(desk.numberOf(sale), number); });
}

Step scan(const till::Checkout::Article& article, int lines)
{
    return [article, lines](const Desk& desk) {
        if (linesOf(desk) < lines) {
            desk.checkout.scan(article);
        }
    };
}

Step takeBack(int position, double quantity, int lines)
{
    return [=](const Desk& desk) {
        if (linesOf(desk) < lines) {
            desk.checkout.takeBack(position, quantity);
        }
    };
}

Step remove(int position)
{
    return [position](const Desk& desk) {
        const auto live = desk.checkout.contents().liveLines();
        if (std::ranges::any_of(live, [&](const auto& line) { return line->getPosnum() == position; })) {
            desk.checkout.remove(position);
        }
    };
}

Step select(int position)
{
    return [position](const Desk& desk) { desk.checkout.selectPosition(position); };
}

Step card(const QString& number)
{
    return [number](const Desk& desk) {
        if (desk.checkout.contents().attachedCards().isEmpty() && !desk.checkout.presentCard(number)) {
            fail("the card is not taken");
        }
    };
}

Step phone(const QString& number)
{
    return [number](const Desk& desk) {
        if (desk.checkout.contents().attachedCards().isEmpty() && !desk.checkout.presentPhone(number)) {
            fail("the card is not found by telephone");
        }
    };
}

Step request()
{
    return [](const Desk& desk) {
        if (!isBeingPaid(desk)) {
            static_cast<void>(desk.checkout.request()); // offline it fails, and the sale goes on
        }
    };
}

Step coupon(const QString& number)
{
    return [number](const Desk& desk) {
        if (!hasCoupon(desk, number) && !desk.checkout.addCoupon(number)) {
            fail("the coupon is not taken");
        }
    };
}

Step deleteCoupon(const QString& number)
{
    return [number](const Desk& desk) {
        if (hasCoupon(desk, number) && !desk.checkout.deleteCoupon(number)) {
            fail("the coupon is not deleted");
        }
    };
}

Step points(double amount)
{
    return [amount](const Desk& desk) {
        if (isBeingPaid(desk)) {
            return;
        }
        try {
            static_cast<void>(desk.checkout.payPoints(amount)); // offline none are spent
        } catch (const till::DeskError&) {
            static_cast<void>(
                desk.checkout.payPoints(std::nullopt)); // a spending that nobody knows of has used some up
        }
    };
}

Step rollback()
{
    return [](const Desk& desk) {
        if (desk.checkout.loyaltySystem().hasBonusImpacts() && !desk.checkout.rollback()) {
            fail("the points are not given back");
        }
    };
}

Step payCash()
{
    return [](const Desk& desk) {
        if (desk.checkout.due() > 0.0) {
            desk.checkout.payCash(std::nullopt);
        }
    };
}

Step payCertificate(double amount)
{
    return [amount](const Desk& desk) {
        if (desk.checkout.contents().payments.isEmpty()) {
            desk.checkout.payCertificate(QStringLiteral("70001"), amount);
        }
    };
}

Step close(int document)
{
    return [document](const Desk& desk) {
        if (isOpen(desk, document) && !desk.checkout.close()) {
            fail("the service has refused the cheque");
        }
    };
}

Step cancel(int document)
{
    return [document](const Desk& desk) {
        if (isOpen(desk, document) && !desk.checkout.cancel()) {
            fail("the points of the cancelled cheque are not given back");
        }
    };
}

Step putOut(int document)
{
    return [document](const Desk& desk) {
        if (isOpen(desk, document)) {
            desk.checkout.putOut();
        }
    };
}

Step reveal(int document, int newDocument)
{
    return [=](const Desk& desk) {
        if (stateOf(desk.numberOf(document)) == DocumentState::aside) {
            desk.checkout.reveal(desk.numberOf(document), desk.numberOf(newDocument));
        }
    };
}

Step stop(const QString& server)
{
    return [server](const Desk& desk) { desk.service.stop(desk.service.server(server)); };
}

Step start(const QString& server)
{
    return [server](const Desk& desk) { desk.service.start(desk.service.server(server)); };
}

Step loseReply(const QString& server, const QString& operation)
{
    return [=](const Desk& desk) {
        desk.service.setFault(desk.service.server(server), QStringLiteral("drop"), operation, 1, {});
    };
}

Step noFaults()
{
    return [](const Desk& desk) {
        for (const QString& server : { QStringLiteral("first"), QStringLiteral("second") }) {
            desk.service.clearFaults(desk.service.server(server));
        }
    };
}

Step deliver()
{
    return [](const Desk& desk) {
        constexpr int rounds = 12;
        for (int round = 0; round < rounds; ++round) {
            if (!desk.delivery.run(true).next) {
                return;
            }
        }
        fail("the queue is not delivered");
    };
}

Step idle()
{
    return [](const Desk& desk) { desk.checkout.idle(std::chrono::seconds(30)); };
}

} // namespace crash::steps
