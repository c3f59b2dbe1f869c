#pragma once

#include "host/export.h"

#include <QString>

#include <functional>
#include <optional>

namespace till {

/// The cashier, as the dialogs and the printer reach him: the terminal, or a script that stands in for it.
struct Cashier {
    /// Shows a text.
    std::function<void(const QString&)> show;
    /// Shows the prompt and waits for a line; none means that he gave up.
    std::function<std::optional<QString>(const QString& prompt)> ask;
    /// Takes a slip, ready to be read: lines of text.
    std::function<void(const QString&)> handOver;
};

/// The cashier at the terminal: standard output and standard input.
[[nodiscard]] VANTIRO_HOST_API Cashier terminalCashier();

/// Replaces the cashier; each function must be set. The first one is the terminal's. [cheque-thread]
VANTIRO_HOST_API void setCashier(const Cashier& cashier);
[[nodiscard]] VANTIRO_HOST_API const Cashier& cashier();

} // namespace till
