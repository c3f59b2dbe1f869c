#pragma once

#include "tests/disk/power/record.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

/// The bytes of a file; those from the end of `bytes` up to `size` are zero.
struct Content {
    std::string bytes;
    std::int64_t size = 0;
};

/// What a loss of power leaves behind. Names are relative to the root. A plain value.
struct DiskImage {
    std::set<std::string> folders; // each behind the one that it is in
    std::map<std::string, Content> files;
};

/// An operation that no synchronisation has made to last yet.
struct Change {
    enum class Kind {
        write,
        resize,
        entry, // of a folder
    };

    Kind kind = Kind::write;
    std::size_t node = 0; // the file or the folder
    std::int64_t offset = 0; // of the write; the new size
    std::string data = {};
    std::string name = {}; // of the entry
    std::string formerName = {}; // the entry that a renaming takes away
    int target = -1; // what the name stands for from now on; -1: nothing
};

/// What has reached the disk of a change: nothing, all of it, or of a write these bytes.
struct Reached {
    bool any = true;
    std::size_t from = 0;
    std::size_t to = std::string::npos;
};

/// A disk with its cache, as the operations of a record leave it. Only a synchronisation promises anything: of a file,
/// its bytes and its size; of a folder, its entries. Everything else may have reached the disk or not, in any order,
/// and a write may have reached it in part. A renaming happens wholly or not at all.
class RecordedDisk {
public:
    /// An empty folder that lasts. Throws `std::runtime_error`, as `apply` does, when an operation does not fit what
    /// came before it: the record is not complete then.
    explicit RecordedDisk(const std::string& root);
    /// What the image holds, all of which lasts.
    RecordedDisk(const std::string& root, const DiskImage& image);

    void apply(const Operation& operation);

    [[nodiscard]] const std::vector<Change>& pending() const;
    /// One word for each pending change.
    [[nodiscard]] DiskImage image(const std::vector<Reached>& reached) const;
    /// With all changes.
    [[nodiscard]] DiskImage cached() const;

private:
    struct Node {
        bool isFolder = false;
        Content content;
        std::map<std::string, int> entries;
    };

    [[nodiscard]] std::size_t find(const std::string& path) const;
    [[nodiscard]] int entry(std::size_t folder, const std::string& name) const;
    [[nodiscard]] std::size_t nodeOf(const Operation& operation) const;
    [[nodiscard]] std::pair<std::size_t, std::string> place(const std::string& path) const;
    [[nodiscard]] int make(bool isFolder);
    void add(const Change& change);
    void synchronise(std::size_t node);
    static void carryOut(std::vector<Node>& nodes, const Change& change, const Reached& reached);
    static void collect(DiskImage& image, const std::vector<Node>& nodes, std::size_t folder,
                        const std::string& prefix);

    std::string root;
    std::vector<Node> lasting;
    std::vector<Node> current;
    std::vector<Change> changes;
    std::map<int, std::size_t> open; // node by descriptor
};
