#pragma once

#include "tests/disk/shim/disk_shim.h"

#include <string>
#include <vector>

/// One operation as the record keeps it. A plain value.
struct Operation {
    disk::Kind kind = disk::Kind::note;
    int descriptor = -1;
    int flags = 0;
    std::int64_t offset = 0;
    std::string data; // of a note, its text
    std::string path;
    std::string newPath;
};

/// How an operation stands in the record: this, then its data, its path and its new path.
struct RecordHead {
    disk::Kind kind = disk::Kind::note;
    std::int32_t descriptor = -1;
    std::int32_t flags = 0;
    std::int64_t offset = 0;
    std::uint64_t data = 0; // bytes of each part
    std::uint64_t path = 0;
    std::uint64_t newPath = 0;
};

/// Throws `std::runtime_error` when the record cannot be read whole.
[[nodiscard]] std::vector<Operation> readRecord(const std::string& file);
