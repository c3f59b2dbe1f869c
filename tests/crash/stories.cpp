#include "tests/crash/steps.h"

namespace crash {

namespace {

using namespace steps;
using Article = till::Checkout::Article;
using State = till::store::DocumentState;

const QString first = QStringLiteral("first");
const QString second = QStringLiteral("second");
const QString accrual = QStringLiteral("Accrual");
const QString lateAccrual = QStringLiteral("OfflineAccrual");
const QString subtraction = QStringLiteral("SubtractBonus45");
const QString cancelling = QStringLiteral("CancelSubtractBonus");
const QString holder = QStringLiteral("9000000001");
const QString chequeCoupon = QStringLiteral("vantiro-10");
const QString lineCoupon = QStringLiteral("line-15");

[[nodiscard]] Article tea()
{
    return { QStringLiteral("1001"), QStringLiteral("4600051000057"), 89.90, 2.0, 60.0 };
}

[[nodiscard]] Article coffee()
{
    return { QStringLiteral("2001"), QStringLiteral("4606453849072"), 450.00, 1.0 };
}

[[nodiscard]] Article bread()
{
    return { QStringLiteral("3001"), QStringLiteral("4601234567893"), 120.00, 3.0 };
}

// The card is found by telephone; the first server books the sale and its reply is lost, the second knows it.
[[nodiscard]] Story sale()
{
    return { QStringLiteral("sale"),
             { openSale(1), scan(tea(), 1), scan(coffee(), 2), phone(QStringLiteral("+79990000001")), request(),
               payCash(), noFaults(), loseReply(first, accrual), close(1), noFaults(), openSale(2), scan(bread(), 1),
               payCash(), close(2) },
             { { 1, State::closed, 2, true }, { 2, State::closed, 1, false } } };
}

// Points are spent, given back and spent again, and no reply is lost: what is in doubt comes of kills alone.
[[nodiscard]] Story points()
{
    return { QStringLiteral("points"),
             { openSale(1), scan(coffee(), 1), scan(tea(), 2), card(holder), request(), steps::points(100.0),
               rollback(), steps::points(40.0), payCertificate(100.0), payCash(), close(1) },
             { { 1, State::closed, 2, true } } };
}

// Both replies to the close are lost, so that the cheque is booked and waits in the queue as well.
[[nodiscard]] Story coupons()
{
    return { QStringLiteral("coupons"),
             { openSale(1), scan(tea(), 1), scan(coffee(), 2), scan(bread(), 3), card(holder), coupon(chequeCoupon),
               select(1), coupon(lineCoupon), request(), deleteCoupon(chequeCoupon), remove(1), coupon(chequeCoupon),
               payCash(), noFaults(), loseReply(first, accrual), loseReply(second, accrual), close(1), noFaults(),
               deliver() },
             { { 1, State::closed, 3, true } } };
}

[[nodiscard]] Story outage()
{
    return { QStringLiteral("outage"),
             { openSale(1), scan(bread(), 1), card(holder), stop(first), stop(second), request(), steps::points(10.0),
               payCash(), close(1), openSale(2), scan(tea(), 1), remove(1), cancel(2), start(first), start(second),
               deliver() },
             { { 1, State::closed, 1, true }, { 2, State::cancelled, 1, false } } };
}

// The second server takes over in mid-cheque; behind a close the till finds back to the first.
[[nodiscard]] Story failOver()
{
    return { QStringLiteral("fail-over"),
             { openSale(1),         scan(bread(), 1), card(holder), stop(first), request(),
               steps::points(30.0), payCash(),        close(1),     idle(),      start(first),
               openSale(2),         scan(bread(), 1), payCash(),    close(2),    idle(),
               openSale(3),         scan(tea(), 1),   payCash(),    close(3),    deliver() },
             { { 1, State::closed, 1, true }, { 2, State::closed, 1, false }, { 3, State::closed, 1, false } } };
}

// Against a sale that points have paid for, in two parts, and without a sale.
[[nodiscard]] Story goodsReturn()
{
    return { QStringLiteral("return"),
             { openSale(1),
               scan(tea(), 1),
               card(holder),
               request(),
               steps::points(20.0),
               payCash(),
               close(1),
               openReturnOf(1, 2),
               takeBack(1, 1.0, 1),
               close(2),
               openReturnOf(1, 3),
               takeBack(1, 1.0, 1),
               noFaults(),
               loseReply(first, accrual),
               loseReply(second, accrual),
               close(3),
               noFaults(),
               openReturn(4),
               scan(bread(), 1),
               close(4),
               deliver() },
             { { 1, State::closed, 1, true },
               { 2, State::closed, 1, true },
               { 3, State::closed, 1, true },
               { 4, State::closed, 1, false } } };
}

// Points were spent, and both replies about them are lost at the first server.
[[nodiscard]] Story cancelled()
{
    return { QStringLiteral("cancel"),
             { openSale(1), scan(coffee(), 1), card(holder), request(), noFaults(), loseReply(first, subtraction),
               steps::points(100.0), noFaults(), loseReply(first, cancelling), cancel(1), noFaults(), openSale(2),
               scan(coffee(), 1), remove(1), noFaults(), loseReply(first, accrual), cancel(2), noFaults() },
             { { 1, State::cancelled, 1, true }, { 2, State::cancelled, 1, false } },
             true };
}

[[nodiscard]] Story noCard()
{
    return { QStringLiteral("no-card"),
             { openSale(1), scan(coffee(), 1), scan(bread(), 2), request(), payCertificate(100.0), payCash(), close(1),
               openSale(2), scan(tea(), 1), coupon(chequeCoupon), request(), payCash(), noFaults(),
               loseReply(first, accrual), loseReply(second, accrual), close(2), noFaults(), deliver() },
             { { 1, State::closed, 2, false }, { 2, State::closed, 1, false } } };
}

// At the service the cheque keeps its first number; it comes back under another one.
[[nodiscard]] Story setAside()
{
    return { QStringLiteral("set-aside"),
             { openSale(1), scan(tea(), 1), card(holder), coupon(chequeCoupon), request(), putOut(1), openSale(2),
               scan(bread(), 1), payCash(), close(2), reveal(1, 3), scan(coffee(), 2), request(), steps::points(50.0),
               payCash(), close(3) },
             { { 2, State::closed, 1, false }, { 3, State::closed, 2, true } } };
}

// One cheque is spent on and closed by a service whose replies are all lost; for one the line goes down before its
// close, for one before it begins. The replies to their delivery are lost at first, too.
[[nodiscard]] Story delivery()
{
    return { QStringLiteral("delivery"),
             { openSale(1),
               scan(coffee(), 1),
               card(holder),
               request(),
               noFaults(),
               loseReply(first, subtraction),
               loseReply(second, subtraction),
               steps::points(60.0),
               payCash(),
               close(1),
               noFaults(),
               openSale(2),
               scan(tea(), 1),
               card(holder),
               request(),
               steps::points(20.0),
               payCash(),
               stop(first),
               stop(second),
               close(2),
               openSale(3),
               scan(bread(), 1),
               payCash(),
               close(3),
               start(first),
               start(second),
               noFaults(),
               loseReply(first, lateAccrual),
               loseReply(second, lateAccrual),
               deliver(),
               noFaults() },
             { { 1, State::closed, 1, true }, { 2, State::closed, 1, true }, { 3, State::closed, 1, false } },
             true };
}

[[nodiscard]] Story firstStart()
{
    return { QStringLiteral("first-start"),
             { openSale(1), scan(tea(), 1), payCash(), close(1) },
             { { 1, State::closed, 1, false } },
             false,
             true };
}

} // namespace

const QList<Story>& stories()
{
    static const QList<Story> all { sale(),      points(), coupons(),  outage(),   failOver(),  goodsReturn(),
                                    cancelled(), noCard(), setAside(), delivery(), firstStart() };
    return all;
}

} // namespace crash
