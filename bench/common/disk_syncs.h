#pragma once

/// How often this process has made the disk write out a file or a folder, through whichever library: the program stands
/// before the C library for `fsync` and `fdatasync`. [any-thread]
[[nodiscard]] long diskSyncs();
