#include "tests/restore/child_run.h"

#include "tests/support/sorted_attributes.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 20'000; // milliseconds

/// The moments are those of the clock, and the order of attributes that of a hash: no two runs share them.
[[nodiscard]] QStringList comparable(const QByteArray& output)
{
    static const QRegularExpression moment(uR"("dateTime":"[^"]*")"_s);
    QString text = sortedAttributes(output);
    text.replace(moment, u"\"dateTime\":\"…\""_s);
    return text.split(u'\n', Qt::SkipEmptyParts);
}

/// What a killed process has written outlives it in memory too, where it does not wait for a disk.
[[nodiscard]] QString placeForFolders()
{
    const QString inMemory = u"/dev/shm"_s;
    return (QFileInfo(inMemory).isWritable() ? inMemory : QDir::tempPath()) + u"/vantiro-restore-XXXXXX"_s;
}

}

TillOnDisk::TillOnDisk(const LoyaltyService& service, const QString& settings)
    : folder(placeForFolders())
{
    QFile file(folder.filePath(u"till.ini"_s));
    EXPECT_TRUE(file.open(QFile::WriteOnly));
    file.write((u"[Vantiro]\nhosts="_s + service.address()
                + u"\ntimeout=20\ncheckCouponPrefix=vantiro-c\npositionCouponPrefix=vantiro-p\n"_s + settings)
                   .toUtf8());
}

QStringList TillOnDisk::toTheEnd(const QString& road, int resumed)
{
    start({ u"--road"_s, road, u"--resume"_s, QString::number(resumed) });
    return endedWell();
}

QStringList TillOnDisk::toTheEndWithoutRestoring(const QString& road, int resumed)
{
    start({ u"--road"_s, road, u"--resume"_s, QString::number(resumed), u"--without-restoring"_s });
    return endedWell();
}

QStringList TillOnDisk::killedAfter(const QString& road, int step)
{
    start({ u"--road"_s, road, u"--stop-after"_s, QString::number(step) });
    const QByteArray last = "step " + QByteArray::number(step) + ' ';
    const QDeadlineTimer deadline(patience);
    QByteArray output;
    while (!output.contains(last) && !deadline.hasExpired() && process.waitForReadyRead(patience)) {
        output = process.peek(process.bytesAvailable());
    }
    EXPECT_TRUE(output.contains(last)) << output.toStdString() << log();
    return killed();
}

QStringList TillOnDisk::killedInRequest(const QString& road, LoyaltyService& service, qsizetype request)
{
    service.keepSilentAt(request);
    start({ u"--road"_s, road });
    const QDeadlineTimer deadline(patience);
    while (service.count() <= request && !deadline.hasExpired() && process.state() == QProcess::Running) {
        static_cast<void>(process.waitForReadyRead(2));
    }
    EXPECT_EQ(service.count(), request + 1) << log();
    return killed();
}

void TillOnDisk::start(const QStringList& arguments)
{
    process.setStandardErrorFile(folder.filePath(u"errors"_s));
    process.start(QStringLiteral(VANTIRO_CHEQUE_CHILD), QStringList { u"--folder"_s, folder.path() } + arguments);
    EXPECT_TRUE(process.waitForStarted(patience)) << process.errorString().toStdString();
}

QStringList TillOnDisk::endedWell()
{
    EXPECT_TRUE(process.waitForFinished(patience)) << log();
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << log();
    EXPECT_EQ(process.exitCode(), 0) << log();
    return comparable(process.readAllStandardOutput());
}

QStringList TillOnDisk::killed()
{
    process.kill();
    EXPECT_TRUE(process.waitForFinished(patience));
    EXPECT_EQ(process.exitStatus(), QProcess::CrashExit) << "it has ended by itself" << log();
    return comparable(process.readAllStandardOutput());
}

std::string TillOnDisk::log() const
{
    std::string text;
    for (const QString& name : { u"errors"_s, u"till.log"_s }) {
        QFile file(folder.filePath(name));
        if (file.open(QFile::ReadOnly)) {
            text += '\n' + file.readAll().right(4000).toStdString();
        }
    }
    return text;
}

int stepsIn(const QStringList& lines)
{
    return static_cast<int>(lines.filter(QRegularExpression(u"^step "_s)).size());
}
