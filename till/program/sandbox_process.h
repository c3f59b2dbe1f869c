#pragma once

#include "till/script/service_control.h"

#include <QString>
#include <QStringList>

#include <sys/types.h>

namespace till {

/// A sandbox service as a process of its own, for as long as this lives. Uses no part of Qt that owns a thread, so that
/// the program can fork afterwards. Throws `CommandError` when it does not start. [cheque-thread]
class SandboxProcess {
public:
    /// Blocks until it has told its addresses. What it logs goes to the file.
    SandboxProcess(const QString& program, const QStringList& arguments, const QString& name, const QString& logFile);
    ~SandboxProcess();
    SandboxProcess(const SandboxProcess&) = delete;
    SandboxProcess& operator=(const SandboxProcess&) = delete;

    [[nodiscard]] const ControlledServer& server() const;

private:
    pid_t process = -1;
    int output = -1;
    ControlledServer addresses;
};

} // namespace till
