#include "sandbox/request_journal.h"

#include "sandbox/request_log.h"

namespace sandbox {

RequestJournal::RequestJournal(std::ostream* output, std::string serverName)
    : stream(output)
    , name(std::move(serverName))
{
}

void RequestJournal::write(const std::string& line)
{
    if (stream == nullptr) {
        return;
    }
    const std::lock_guard lock(mutex);
    *stream << currentTimeText() << ' ' << name << ": " << line << std::endl;
}

}
