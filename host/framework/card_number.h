#pragma once

#include "host/facilities/tr.h"

#include <QString>

namespace loyalty {

/// What the cashier entered to find a card. A plain value.
struct CardNumberInputData {
    static constexpr int phone = 1; // a telephone number; other types are the host's

    int type = 0;
    QString value;
};

} // namespace loyalty

/// The answer to `CardNumberInputData`. A plain value.
struct CardNumberResult {
    bool ok = false; // false when the look-up failed; a cashier who gave up is no failure
    QString cardNumber; // empty on failure and when the cashier gave up
    tr::Tr error; // the empty text when `ok`
};
