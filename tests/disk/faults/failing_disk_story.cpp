#include "tests/disk/faults/failing_disk_story.h"

#include <iostream>

using namespace Qt::StringLiterals;

ChildRun FailingDiskTest::run(const QString& folder, const QStringList& job)
{
    ++runs;
    return program.run(folder, job);
}

QString FailingDiskTest::freshFolder()
{
    return place.filePath(u"till-%1"_s.arg(++folders));
}

DiskBooks FailingDiskTest::soundBooks(const QString& story)
{
    const QString folder = freshFolder();
    EXPECT_EQ(run(folder, { u"work"_s, story }).failures, 0);
    return readBooks(folder);
}

QStringList FailingDiskTest::soundShapes(const QString& story)
{
    const qsizetype steps = run(freshFolder(), { u"work"_s, story }).attempts.size();
    QStringList shapes;
    for (int done = 0; done <= steps; ++done) {
        const QString folder = freshFolder();
        static_cast<void>(run(folder, { u"work-until"_s, story, QString::number(done) }));
        shapes.append(readBooks(folder).shapes.join(u", "_s));
    }
    return shapes;
}

void FailingDiskTest::TearDown()
{
    std::cout << "runs of the till: " << runs << '\n';
}

QString FailingDiskStory::story() const
{
    return QString::fromLatin1(GetParam());
}

std::string storyName(const ::testing::TestParamInfo<const char*>& row)
{
    std::string name = row.param;
    std::erase(name, '-');
    return name;
}

QStringList fault(const QString& of, int number, const QString& error, const QString& howLong)
{
    return { of, QString::number(number), error, howLong };
}
