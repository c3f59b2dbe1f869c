#pragma once

#include "tests/disk/power/disk_model.h"

#include <random>
#include <vector>

/// How thoroughly the losses of power at one moment are enumerated. A plain value.
struct Thoroughness {
    int shuffles = 6; // random choices among the pending changes, half of them by sector
    bool tornAlone = false; // torn writes also while nothing else has reached the disk
};

/// What can have reached the disk of the pending changes: nothing; all; each change missing, alone, and with all before
/// it; each write torn at every boundary of sectors, its head or its tail there; random choices.
[[nodiscard]] std::vector<std::vector<Reached>> powerLosses(const std::vector<Change>& pending,
                                                            const Thoroughness& thoroughness, std::mt19937& dice);
