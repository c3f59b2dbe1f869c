#pragma once

#include "bench/common/canned_server.h"

#include <QByteArray>

#include <functional>
#include <vector>

class Shop;

/// A row of the store's table of documents as one commit has left it.
struct CommittedRow {
    QByteArray body;
    QByteArray extra;
    QByteArray savedAt;
    QByteArray state;
    int type = 0;
    int number = 0;
};

/// A commit, and the requests that were sent since the one before it.
struct RecordedStep {
    std::vector<WireRequest> requests;
    CommittedRow row;
};

/// What a till has done towards the outside, in its order: what it has sent and what it has put on the disk.
struct Recording {
    std::vector<RecordedStep> steps;
    std::vector<WireRequest> last; // behind the last commit
};

/// Does the work in the shop and tells what came of it. The shop's store is not to be timed afterwards: it is watched
/// from within. Throws `std::runtime_error` when a commit was made that is no writing of a document. [cheque-thread]
[[nodiscard]] Recording record(Shop& shop, const std::function<void()>& work);
