#pragma once

#include <functional>

/// The operations of a story, by number, that fail in turn, each in a run of its own. All of them take too long for
/// every build: there, tests that differ only in how an operation fails share them out. With VANTIRO_FAULTS=full in the
/// environment each test takes all.
class FaultNumbers {
public:
    /// Of the test with this index, from 0 on, among so many.
    FaultNumbers(int test, int tests);

    /// Calls `reaches` with one number after the other, until it says that the story has no such operation. Throws
    /// `std::runtime_error` when that comes so early that nothing has been tried.
    void forEach(const std::function<bool(int number)>& reaches) const;

private:
    int first;
    int step;
};
