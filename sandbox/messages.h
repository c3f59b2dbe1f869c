#pragma once

#include "sandbox/cheque.h"
#include "sandbox/rules.h"

#include <string>

namespace sandbox {

/// The document with the messages that the rules have for the cheque; empty when there are none. [any-thread]
[[nodiscard]] std::string messagesText(const Cheque& cheque, const Rules& rules, Kopecks balance);

}
