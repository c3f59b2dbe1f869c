#pragma once

#include "host/framework/task.h"

/// What a ping has found: "serverIndex" in `data` is the index of the server that answered, or -1.
class PingTaskResult : public TaskResult {
public:
    /// "сервер доступен - true" or "сервер доступен - false".
    [[nodiscard]] QString toString() const override;

    bool interrupted = false; // a ping always runs to its end; hosts read the field of other results
    bool available = false; // a server answered
};
