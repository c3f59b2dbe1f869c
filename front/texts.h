#pragma once

#include "host/facilities/tr.h"

namespace vantiro {

/// A reason with a remark behind it; an empty remark adds nothing.
[[nodiscard]] tr::Tr withRemark(const tr::Tr& reason, const tr::Tr& remark);

/// What remains possible for a cheque with a card when no server can be reached.
[[nodiscard]] tr::Tr onlyEarn();

} // namespace vantiro
