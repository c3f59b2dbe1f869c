#pragma once

#include "tests/disk/shim/disk_shim.h"

#include <optional>
#include <string>

/// What goes wrong with a disk. A plain value.
struct DiskFault {
    enum class Of {
        writes, // and whatever else changes the size of a file
        syncs,
        all, // the disk takes nothing more: no file opens for writing either
    };

    Of of = Of::writes;
    int number = 1; // of the operation that fails, from 1 on
    int error = 0; // errno
    bool lasts = false; // every later one fails as well
};

/// The disk below one folder: it fails as it is told, and has as much room as it is given. While none of these lives,
/// and until it is told, nothing fails. [any-thread]
class FailingDisk : public disk::Observer {
public:
    explicit FailingDisk(const std::string& folder);
    ~FailingDisk() override;

    /// From now on; operations are counted from here.
    void fail(const DiskFault& fault);
    /// So many bytes can be taken beyond what stands.
    void leaveRoom(std::int64_t bytes);
    /// Nothing fails any more.
    void heal();

    /// Whether what has failed would fail again.
    [[nodiscard]] bool failsOn() const;
    /// How many operations have failed, or for want of room have not been carried out whole.
    [[nodiscard]] int failures() const;

    [[nodiscard]] disk::Permission before(const disk::Call& call) override;
    [[nodiscard]] std::int64_t room() override;
    void after(const disk::Call& call) override;

private:
    FailingDisk(const FailingDisk&) = delete;
    FailingDisk& operator=(const FailingDisk&) = delete;

    [[nodiscard]] bool concerns(const disk::Call& call) const;

    std::optional<DiskFault> fault;
    std::optional<std::int64_t> left; // of the room
    std::int64_t growth = 0; // that the operation under way asks for
    int counted = 0;
    int failed = 0;
};
