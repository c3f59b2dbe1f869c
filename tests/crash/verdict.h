#pragma once

#include "tests/crash/story.h"
#include "till/money/kopecks.h"
#include "till/script/service_control.h"

namespace crash {

/// In how many cheques the books do not agree. A plain value, for memory that processes share.
struct Disagreement {
    int lost = 0;
    int doubled = 0;
    int phantom = 0;
    int different = 0; // of another value

    Disagreement& operator+=(const Disagreement& other);
};

/// The till's books and the service's agree as they stand, also while documents are under way: nothing lost, doubled,
/// of another value or a phantom. Otherwise throws `std::runtime_error` with the lines of the reconciliation, having
/// counted them. Gives the points that are in doubt.
[[nodiscard]] till::Kopecks requireBooks(const till::ServiceControl& service, Disagreement& disagreement);

/// The run has left the documents of its story, each once, in the state that it ends in, with its lines and its card
/// and paid in full, and nothing in the queue. Throws `std::runtime_error` otherwise.
void requireEndings(const Story& story, int base);

} // namespace crash
