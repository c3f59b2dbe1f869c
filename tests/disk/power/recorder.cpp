#include "tests/disk/power/recorder.h"

#include "tests/disk/power/record.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>
#include <stdexcept>

Recorder::Recorder(const std::string& folder, const std::string& file)
    : record(::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0600))
{
    if (record < 0) {
        throw std::runtime_error("the record cannot be made");
    }
    disk::observe(folder.c_str(), this);
}

Recorder::~Recorder()
{
    disk::observe("", nullptr);
    static_cast<void>(::close(record));
}

void Recorder::note(const std::string& text)
{
    after({ .data = text.data(), .length = text.size() });
}

void Recorder::after(const disk::Call& call)
{
    const std::string path = call.path;
    const std::string newPath = call.newPath;
    const RecordHead head { call.kind,   call.descriptor, call.flags,    call.offset,
                            call.length, path.size(),     newPath.size() };
    std::string entry(reinterpret_cast<const char*>(&head), sizeof head);
    entry.append(static_cast<const char*>(call.data), call.length);
    entry += path + newPath;
    // Not through `write`, which this may have been called from.
    if (::syscall(SYS_write, record, entry.data(), entry.size()) != static_cast<long>(entry.size())) {
        std::fputs("the record cannot be written\n", stderr);
        ::_exit(4);
    }
}
