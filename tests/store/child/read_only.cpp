#include "host/framework/db_queue_broker.h"
#include "host/framework/save_to_file_logic.h"
#include "tests/store/child/jobs.h"
#include "tests/store/child/refusal.h"
#include "tests/store/numbered_records.h"
#include "till/store/store.h"

#include <QFile>

#include <fcntl.h>
#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <stdexcept>

namespace {

/// Modes of files hold for this process from now on, even when it is the superuser's.
void obeyModes()
{
    __user_cap_header_struct header { _LINUX_CAPABILITY_VERSION_3, 0 };
    __user_cap_data_struct data[_LINUX_CAPABILITY_U32S_3] {};
    ::syscall(SYS_capget, &header, data);
    data[0].effective &= ~(1U << CAP_DAC_OVERRIDE);
    ::syscall(SYS_capset, &header, data);
}

void setMode(const QByteArray& file, mode_t mode)
{
    if (::chmod(file.constData(), mode) != 0) {
        throw std::runtime_error("the mode of the file cannot be set");
    }
}

void enqueue(int number)
{
    DBQueueBroker().enqueue(QStringLiteral("vantiro"), numberedMessage(number), QString());
}

} // namespace

QJsonObject closeFile(const QString& folder)
{
    obeyModes();
    till::store::open(folder);
    enqueue(1);

    const QByteArray file = QFile::encodeName(folder + QStringLiteral("/till.sqlite"));
    setMode(file, 0400);
    if (::open(file.constData(), O_RDWR | O_CLOEXEC) >= 0) {
        throw std::runtime_error("modes of files do not hold here");
    }
    till::store::releaseConnection(); // a connection that stands goes on writing
    QJsonObject refusals;
    refusals.insert(QStringLiteral("enqueue"), refusalOf([] { enqueue(-1); }));
    refusals.insert(QStringLiteral("save"), refusalOf([] { SaveToFileLogic().save(numberedVersion(-1), QString()); }));
    refusals.insert(QStringLiteral("open"), refusalOf([&folder] { till::store::open(folder); }));

    setMode(file, 0600);
    till::store::open(folder);
    enqueue(2);
    return refusals;
}
