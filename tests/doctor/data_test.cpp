#include "tests/doctor/doctor_support.h"
#include "till/program/doctor_data.h"
#include "till/store/store.h"

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <gmock/gmock.h>

using namespace till::diagnosis;
using namespace vantiro_test;
using namespace Qt::StringLiterals;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
constexpr auto all = ownerOnly | QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;

class DoctorData : public testing::Test {
protected:
    ~DoctorData() override
    {
        till::store::close();
    }

    /// With FOLDER in place of the folder, and the line on free space left out: it differs from machine to machine.
    [[nodiscard]] std::string lines() const
    {
        QStringList kept;
        for (const QString& line : QString::fromStdString(linesOf(checkDataFolder(folder.path()))).split(u'\n')) {
            if (!line.contains(u"MiB are free"_s)) {
                kept.append(line);
            }
        }
        return kept.join(u'\n').replace(folder.path(), u"FOLDER"_s).toStdString();
    }

    [[nodiscard]] QString database() const
    {
        return folder.filePath(u"till.sqlite"_s);
    }

    void makeDatabase() const
    {
        till::store::open(folder.path());
    }

    static void queue(const QString& state)
    {
        QSqlQuery query = till::store::prepare(
            u"INSERT INTO queue (queue, message, extra, state, queued_at) VALUES ('q', '{}', '', ?, '2026-01-01T00:00:00Z')"_s);
        query.addBindValue(state);
        till::store::execute(query);
    }

    static void keep(const QString& identity, const QString& state)
    {
        QSqlQuery query = till::store::prepare(
            u"INSERT INTO documents (identity, body, extra, saved_at, state) VALUES (?, '{}', '', '', ?)"_s);
        query.addBindValue(identity);
        query.addBindValue(state);
        till::store::execute(query);
    }

    QTemporaryDir folder;
};

constexpr auto soundLog = "ok      The log FOLDER/till.log can be written.\n";

TEST_F(DoctorData, SoundFolder)
{
    makeDatabase();
    EXPECT_EQ(lines(),
              std::string("ok      The data folder is FOLDER.\nok      The database opens.\n"
                          "ok      No message waits for delivery.\n")
                  + soundLog);
}

TEST_F(DoctorData, NothingIsMadeInAnEmptyFolder)
{
    EXPECT_EQ(lines(),
              std::string("ok      The data folder is FOLDER.\n"
                          "ok      The database is not there yet; the till makes it when it starts.\n")
                  + soundLog);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).join(u' ').toStdString(), "");
}

TEST_F(DoctorData, MissingFolderIsNotMade)
{
    const QString missing = folder.filePath(u"a/b"_s);
    EXPECT_EQ(linesOf(checkDataFolder(missing)),
              ("ok      The data folder "_L1 + missing + " is not there yet; the till makes it when it starts.\n"_L1)
                  .toStdString());
    EXPECT_FALSE(QFile::exists(folder.filePath(u"a"_s)));
}

TEST_F(DoctorData, FolderBelowAFileCannotBeMade)
{
    EXPECT_EQ(
        linesOf(checkDataFolder(u"/dev/null/till"_s)),
        "FAILED  The data folder /dev/null/till cannot be made, as nothing can be written in /dev/null; name another "
        "with --data DIR.\n");
}

TEST_F(DoctorData, FileIsNoFolder)
{
    EXPECT_EQ(linesOf(checkDataFolder(u"/dev/null"_s)),
              "FAILED  The data folder /dev/null is no folder; name another with --data DIR.\n");
}

TEST_F(DoctorData, MessagesAreCountedByTheirState)
{
    makeDatabase();
    for (const QString& state :
         { u"pending"_s, u"pending"_s, u"held"_s, u"refused"_s, u"refused"_s, u"refused"_s, u"damaged"_s }) {
        queue(state);
    }
    EXPECT_THAT(
        lines(),
        HasSubstr("ok      Waiting for delivery: 2 messages.\n"
                  "warning Held back by a person: 1 message; let them go with vantiro-till queue release ID.\n"
                  "warning Refused by the service: 3 messages; see the reasons with vantiro-till queue list, and let "
                  "them go with queue release ID.\n"
                  "warning Damaged and never delivered: 1 message; look at them with vantiro-till queue list and "
                  "show ID.\n"));
}

TEST_F(DoctorData, DocumentsThatTheServiceWasNotToldOfAreCounted)
{
    makeDatabase();
    keep(u"1"_s, u"open"_s);
    keep(u"2"_s, u"closed"_s);
    keep(u"3"_s, u"closing"_s);
    keep(u"4"_s, u"cancelling"_s);
    keep(u"5"_s, u"cancelling"_s);
    keep(u"6"_s, u"aside"_s);
    EXPECT_THAT(
        lines(),
        HasSubstr("ok      No message waits for delivery.\n"
                  "warning Paid, but not told to the service yet: 1 document; start vantiro-till shell, which goes on "
                  "with that.\n"
                  "warning Cancelled, but not told to the service yet: 2 documents; start vantiro-till shell, which "
                  "goes on with that.\n"
                  "ok      The log"));
}

TEST_F(DoctorData, WhatOthersCouldLookIntoIsClosedAndTold)
{
    makeDatabase();
    ASSERT_TRUE(QFile::setPermissions(folder.path(), all));
    ASSERT_TRUE(QFile::setPermissions(database(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
    EXPECT_THAT(
        lines(),
        HasSubstr("warning Others could look into FOLDER, which may hold credentials, and it was closed to them now; "
                  "change the password if others use this machine.\n"
                  "warning Others could look into FOLDER/till.sqlite, which may hold credentials, and it was closed "
                  "to them now; change the password if others use this machine.\n"));
    EXPECT_THAT(lines(), Not(HasSubstr("Others")));
}

TEST_F(DoctorData, WhatIsNoDatabaseFailsAndStaysAsItIs)
{
    const QByteArray content(4096, 'x');
    QFile file(database());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    EXPECT_THAT(lines(),
                HasSubstr("FAILED  The database FOLDER/till.sqlite cannot be used (Ошибка базы данных кассы: "));
    EXPECT_THAT(lines(), HasSubstr("); move it aside, or name another folder with --data DIR.\n"));
    EXPECT_THAT(lines(), EndsWith(soundLog));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), content);
}

TEST_F(DoctorData, DatabaseOfANewerTillFails)
{
    makeDatabase();
    QSqlQuery query(till::store::connection());
    ASSERT_TRUE(query.exec(u"PRAGMA user_version=99"_s));
    query.clear();
    till::store::close();
    EXPECT_THAT(
        lines(),
        HasSubstr("FAILED  The database FOLDER/till.sqlite cannot be used (Ошибка базы данных кассы: the database was "
                  "written by a newer till); move it aside, or name another folder with --data DIR.\n"));
}

TEST_F(DoctorData, LogThatCannotBeWrittenFails)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"till.log"_s));
    EXPECT_THAT(
        lines(),
        EndsWith("FAILED  The log FOLDER/till.log cannot be written (Is a directory); give this user the right to "
                 "write it.\n"));
}

TEST_F(DoctorData, LogIsLeftAsItIs)
{
    QFile log(folder.filePath(u"till.log"_s));
    ASSERT_TRUE(log.open(QIODevice::WriteOnly));
    log.write("line\n");
    log.close();
    EXPECT_THAT(lines(), EndsWith(soundLog));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_EQ(log.readAll(), "line\n");
}

TEST_F(DoctorData, RealSpaceIsTold)
{
    EXPECT_THAT(linesOf(checkDataFolder(folder.path())), HasSubstr(" MiB are free for the data folder "));
}

TEST(DoctorFreeSpace, IsJudged)
{
    constexpr qint64 mebibyte = 1048576;
    const auto line = [](qint64 bytes) { return lineOf(checkFreeSpace(u"/d"_s, bytes)).toStdString(); };
    EXPECT_EQ(line(200 * mebibyte), "ok      200 MiB are free for the data folder /d.");
    EXPECT_EQ(line(200 * mebibyte - 1),
              "warning 199 MiB are free for the data folder /d, and on a full disk no cheque can be kept; make room.");
    EXPECT_EQ(line(10 * mebibyte),
              "warning 10 MiB are free for the data folder /d, and on a full disk no cheque can be kept; make room.");
    EXPECT_EQ(line(10 * mebibyte - 1),
              "FAILED  9 MiB are free for the data folder /d, and on a full disk no cheque can be kept; make room.");
}

}
