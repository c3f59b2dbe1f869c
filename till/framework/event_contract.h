#pragma once

#include "host/export.h"
#include "host/framework/event.h"
#include "till/framework/contract.h"

namespace till {

/// The side that sends events of the code; the host where the contract names neither.
[[nodiscard]] VANTIRO_HOST_API Side senderOf(EActivityListener::Event code);

/// Throws `ContractBreach` of the sender when the event lacks an argument that its receivers rely on.
VANTIRO_HOST_API void requireArguments(const Event& event);

}
