#pragma once

#include "tests/store/child_process.h"

#include <QThread>

#include <random>
#include <string>

/// Random moments at which a child is killed: at most 25 ms after it has told none, some or several of its records. The
/// same ones in every run. A value.
class KillMoments {
public:
    static constexpr unsigned int seed = 20240305;

    void killAtOne(ChildProcess& child)
    {
        child.waitFor(std::uniform_int_distribution(0, 4)(generator));
        QThread::usleep(std::uniform_int_distribution(0UL, 25'000UL)(generator));
        child.kill();
    }

    [[nodiscard]] static std::string printed()
    {
        return "seed of the moments: " + std::to_string(seed);
    }

private:
    std::mt19937 generator { seed };
};
