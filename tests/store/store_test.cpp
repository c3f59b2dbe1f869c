#include "tests/store/store_test.h"

#include "host/facilities/exceptions.h"
#include "host/framework/db_queue_broker.h"
#include "till/store/store.h"

#include <QFile>
#include <QSqlQuery>

#include <sys/stat.h>

StoreTest::StoreTest() = default;

StoreTest::~StoreTest()
{
    till::store::close();
}

QString StoreTest::path(const QString& name) const
{
    return place.filePath(name);
}

QString StoreTest::folder() const
{
    return path(QStringLiteral("till"));
}

QString StoreTest::file() const
{
    return folder() + QStringLiteral("/till.sqlite");
}

QString StoreTest::journal() const
{
    return file() + QStringLiteral("-journal");
}

std::string refusal(const std::function<void()>& call)
{
    try {
        call();
    } catch (const BasicException& exception) {
        return exception.tr().ru().toStdString();
    }
    return "(none)";
}

void runInStore(const QString& statement)
{
    QSqlQuery query = till::store::prepare(statement);
    till::store::execute(query);
}

void enqueueText(const QString& text)
{
    DBQueueBroker().enqueue(QStringLiteral("vantiro"), { { QStringLiteral("body"), text } }, QString());
}

int modeOf(const QString& path)
{
    struct stat status { };
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? static_cast<int>(status.st_mode & 07777) : -1;
}

void setMode(const QString& path, unsigned int mode)
{
    ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), mode), 0) << path.toStdString();
}

QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

void writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    ASSERT_EQ(file.write(bytes), bytes.size());
}
