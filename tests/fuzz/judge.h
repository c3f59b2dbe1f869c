#pragma once

#include "tests/fuzz/target.h"

#include <string>
#include <string_view>

namespace fuzz {

/// Runs the target on the input. Throws `BrokenPromise` when the target does, when it throws anything else, and when it
/// keeps the processor busy for longer than a text of that size may, three times over. [cheque-thread]
void judge(const Target& target, std::string_view input);

/// Seconds of the processor that so many bytes of text, read and made, may take: 250 ms for each MiB, times what
/// sanitizers cost, and the noise of a machine that does other things besides.
[[nodiscard]] double patience(std::size_t bytes);

/// The input with a piece of its middle repeated until it has about that size: what grows with the square of the text
/// shows here and hides in small texts. The piece is chosen by `choice`, between signs that begin or end something. An
/// input without two such signs stays as it is.
[[nodiscard]] std::string swollen(std::string_view input, std::size_t bytes, std::size_t choice);

} // namespace fuzz
