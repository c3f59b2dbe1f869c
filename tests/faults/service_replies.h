#pragma once

#include "tests/support/loopback_message.h"

#include <QByteArray>

/// What a service in good health answers.
namespace faults {

/// The action of a request: "GetDiscounts".
[[nodiscard]] QByteArray actionOf(const vantiro_test::HttpRequest& request);

/// The envelope with the response to the operation: the card is valid and has 120.5 points, of which 50 can be spent;
/// no discount and no message; points are taken from position 1; an accrual brings a slip.
[[nodiscard]] QByteArray responseTo(const QByteArray& action);
/// An envelope with a fault of the text "Карта заблокирована", its elements under that prefix.
[[nodiscard]] QByteArray faultUnder(const QByteArray& prefix);

/// A whole HTTP reply with that status line, "200 OK", and these header lines besides the length of the body.
[[nodiscard]] QByteArray http(const QByteArray& status, const QByteArray& body, const QByteArray& headers = {});

}
