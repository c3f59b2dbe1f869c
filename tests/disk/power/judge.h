#pragma once

#include "tests/disk/power/disk_model.h"
#include "tests/disk/power/story.h"

#include <QString>

#include <optional>
#include <string>

/// What a store that is opened after a loss of power may hold.
struct Expected {
    Holdings acknowledged;
    std::optional<Holdings> inFlight = {}; // with the call that had not returned
};

/// Makes the folder hold this image and nothing else. Throws `std::runtime_error` when that cannot be done.
void writeImage(const DiskImage& image, const std::string& folder);

/// Opens the store in the folder, as the next start of the till does, looks at all of it and goes on with it. Gives
/// what is wrong, in one line; empty when nothing is.
[[nodiscard]] std::string faultOf(const QString& folder, const Expected& expected);
