#pragma once

#include "bench/cheque_forms.h"
#include "bench/plain_tree.h"

#include <functional>
#include <memory>

/// Makes a cheque into what writes its text; what it does before it returns is not timed.
using PlainWriter = std::function<TextMaker(const std::shared_ptr<const PlainTree>&)>;

/// The peer `name` of a form: the same cheque, read back into plain values, through the writer. Preparing it throws
/// `std::runtime_error` when what the writer has written is not the same tree.
[[nodiscard]] ChequeForm peerOf(const ChequeForm& form, const char* name, const PlainWriter& writer);
