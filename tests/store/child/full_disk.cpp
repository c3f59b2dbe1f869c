#include "host/framework/db_queue_broker.h"
#include "host/framework/save_to_file_logic.h"
#include "tests/store/child/jobs.h"
#include "tests/store/child/refusal.h"
#include "tests/store/numbered_records.h"
#include "till/store/store.h"

#include <QFileInfo>
#include <QJsonArray>

#include <sys/resource.h>

#include <csignal>

namespace {

/// While it lives, no file of this process grows beyond the size: a write there fails as it does on a full disk.
class SizeLimit {
public:
    explicit SizeLimit(rlim_t bytes)
    {
        ::getrlimit(RLIMIT_FSIZE, &former);
        const rlimit limit { bytes, former.rlim_max };
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }

    ~SizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &former);
    }

private:
    Q_DISABLE_COPY_MOVE(SizeLimit)

    rlimit former {};
};

void enqueue(const QJsonObject& message)
{
    DBQueueBroker().enqueue(QStringLiteral("vantiro"), message, QString());
}

void save(const QSharedPointer<till::Cheque>& document)
{
    SaveToFileLogic().save(document, QString());
}

[[nodiscard]] QSharedPointer<till::Cheque> largeVersion(int number)
{
    const auto document = numberedVersion(number);
    document->setPluginDataJson(QString(1'000'000, u'x'));
    return document;
}

} // namespace

QJsonObject fillDisk(const QString& folder)
{
    std::signal(SIGXFSZ, SIG_IGN); // the write shall fail, and not the process
    till::store::open(folder);
    enqueue(numberedMessage(1));
    save(numberedVersion(1));

    QJsonArray ofQueue;
    QJsonArray ofDocument;
    for (int step = 0; step < 6; ++step) {
        const auto size = static_cast<rlim_t>(QFileInfo(folder + QStringLiteral("/till.sqlite")).size());
        const rlim_t limits[] { 0, 1000, 6000, size, size + 5000, size + 100'000 };
        {
            const SizeLimit limit(limits[step]);
            ofQueue.append(refusalOf([] {
                enqueue({ { QStringLiteral("number"), -1 }, { QStringLiteral("body"), QString(1'000'000, u'x') } });
            }));
            ofDocument.append(refusalOf([] { save(largeVersion(-1)); }));
        }
        enqueue(numberedMessage(step + 2));
        if (step == 2) {
            save(numberedVersion(2));
        }
    }
    return { { QStringLiteral("queue"), ofQueue }, { QStringLiteral("document"), ofDocument } };
}
