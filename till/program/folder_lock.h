#pragma once

#include <QString>

namespace till {

/// The data folder, held by one till at a time: two that work on the same cheque would each tell the service its own
/// end of it. The kernel gives it free when the process ends, however it ends. [cheque-thread]
class FolderLock {
public:
    /// The folder is there. Throws `CommandError` when another process holds it.
    explicit FolderLock(const QString& folder);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

private:
    int file = -1;
};

} // namespace till
