#pragma once

#include <mutex>
#include <ostream>
#include <string>

namespace sandbox {

/// One line per request, for the person at the terminal. [any-thread]
class RequestJournal {
public:
    /// Null writes nothing.
    RequestJournal(std::ostream* output, std::string serverName);

    void write(const std::string& line);

private:
    std::mutex mutex;
    std::ostream* const stream;
    const std::string name;
};

}
