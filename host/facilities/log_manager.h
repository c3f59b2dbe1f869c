#pragma once

#include "host/export.h"
#include "host/facilities/logger.h"

namespace Log4Qt {

class VANTIRO_HOST_API LogManager {
public:
    LogManager() = delete;

    /// The log of the pair of names; the second may be empty. The same pair gives the same object, which stays valid
    /// for the life of the process and is not owned by the caller. Never null. [any-thread]
    [[nodiscard]] static Logger* logger(const QString& name, const QString& second);
};

} // namespace Log4Qt
