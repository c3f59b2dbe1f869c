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

/// What a till has done towards the outside: what it has sent and what it has put on the disk.
struct Recording {
    std::vector<WireRequest> requests;
    std::vector<CommittedRow> commits;
};

/// Does the work in the shop and tells what came of it. The shop's store is not to be timed afterwards: it is watched
/// from within. Throws `std::runtime_error` when a commit was made that is no writing of a document. [cheque-thread]
[[nodiscard]] Recording record(Shop& shop, const std::function<void()>& work);
