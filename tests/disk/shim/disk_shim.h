#pragma once

#include <cstddef>
#include <cstdint>

// A program that is linked with this library sees its own operations on the files of one folder before and after they
// are made, those of the libraries that it uses as well. The calls go on to the system directly.

namespace disk {

enum class Kind : std::uint8_t {
    open,
    close,
    write,
    truncate,
    allocate, // of space, the size of the file with it
    sync, // of a file, or of a folder
    rename,
    unlink,
    makeFolder,
    note, // none of the disk: a word of the program itself
};

/// One operation. What a kind does not have stays empty; paths are absolute. Valid during the call only.
struct Call {
    Kind kind = Kind::note;
    int descriptor = -1;
    int flags = 0; // of `open`
    std::int64_t offset = 0; // bytes; the new size of `truncate` and `allocate`
    const void* data = nullptr;
    std::size_t length = 0; // bytes of the data
    const char* path = "";
    const char* newPath = ""; // of `rename`
};

/// What becomes of a call: it fails with an error, or a write takes so many bytes only.
struct Permission {
    int error = 0; // 0: it is made
    std::size_t length = 0;
};

/// Whoever looks on. Calls of several threads come one at a time. What it does to files outside of the folder is not
/// seen; it must not touch those within. [any-thread]
class Observer {
public:
    virtual ~Observer() = default;

    [[nodiscard]] virtual Permission before(const Call& call)
    {
        return { 0, call.length };
    }
    /// The room that the disk tells of, in bytes; less than nothing: what there really is.
    [[nodiscard]] virtual std::int64_t room()
    {
        return -1;
    }
    /// Only what has been made; `length` is what was taken of a write, `descriptor` what `open` has given.
    virtual void after(const Call& call) = 0;
};

/// From now on the observer sees what is done below the folder, an absolute path without a slash at its end, and on the
/// folder itself. Null: nobody looks any more. Files that are open already stay unseen. The observer is not owned.
[[gnu::visibility("default")]] void observe(const char* folder, Observer* observer);

} // namespace disk
