#pragma once

#include "tests/disk/shim/disk_shim.h"

#include <string>

/// Writes down every operation on the folder, and the notes between them, in a file outside of it. Whatever has been
/// told is in that file, also when the process dies. [cheque-thread]
class Recorder : public disk::Observer {
public:
    /// Throws `std::runtime_error` when the file cannot be made.
    Recorder(const std::string& folder, const std::string& file);
    ~Recorder() override;

    void note(const std::string& text);
    void after(const disk::Call& call) override;

private:
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    int record = -1;
};
