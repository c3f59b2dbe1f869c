#pragma once

#include "tests/disk/faults/child_program.h"
#include "tests/disk/faults/disk_books.h"

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>

/// Lives of a till on disks that fail. They have folders of their own, in memory.
class FailingDiskTest : public ::testing::Test {
protected:
    [[nodiscard]] ChildRun run(const QString& folder, const QStringList& job);
    /// A name for the folder of a till that has none yet.
    [[nodiscard]] QString freshFolder();

    /// What the books hold when the story is worked on a disk that does not fail.
    [[nodiscard]] DiskBooks soundBooks(const QString& story);
    /// The shapes of the books after so many steps of it, from none to all.
    [[nodiscard]] QStringList soundShapes(const QString& story);

    void TearDown() override;

private:
    QTemporaryDir place { QStringLiteral("/dev/shm/vantiro-faults-XXXXXX") };
    ChildProgram program;
    int folders = 0;
    int runs = 0;
};

/// Those of one story of the cashier.
class FailingDiskStory : public FailingDiskTest, public ::testing::WithParamInterface<const char*> {
protected:
    [[nodiscard]] QString story() const;
};

/// The name of a story for the name of a test.
[[nodiscard]] std::string storyName(const ::testing::TestParamInfo<const char*>& row);

/// The words of the child for a fault.
[[nodiscard]] QStringList fault(const QString& of, int number, const QString& error, const QString& howLong);
