#pragma once

#include "tests/front/till_at_work.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>

/// How a document comes through a stop of the till: it has stayed in memory, with the types that were stored, or the
/// store gives it back, with the types that the store knows.
enum class Road { memory, store };

void PrintTo(Road road, std::ostream* stream);

/// A till that stops in the midst of a cheque and starts again, once for each road. Coupons whose number begins with
/// "vantiro-c" are those of the cheque, others that begin with "vantiro" those of a position. [cheque-thread]
class RestartedTill : public testing::TestWithParam<Road> {
protected:
    explicit RestartedTill(const DocumentBuilder& document = TillAtWork::saleWithCard());

    /// Ends the till and starts it again, with a plug-in that knows nothing, and the document as the road gives it
    /// back. The points to spend are taken off its card.
    void restart();
    void restart(const TillAtWork::Settings& settings);
    /// The host asks for the state, by the event.
    void restore();

    /// Adds a coupon that the server takes; its request is looked at.
    void add(const QString& coupon);
    /// The coupons in memory, as the plug-in writes them out: "of the cheque | 1: of position 1".
    [[nodiscard]] std::string couponsInMemory();
    /// The cheque of the next request, which goes well.
    [[nodiscard]] QString nextCheque();

    std::optional<TillAtWork> till;
};

/// The name of the road, for the names of tests.
[[nodiscard]] std::string roadName(const testing::TestParamInfo<Road>& row);
