#include "tests/disk/power/judge.h"

#include "host/facilities/exceptions.h"
#include "host/framework/db_queue_broker.h"
#include "till/store/queue_records.h"
#include "till/store/store.h"

#include <QSqlQuery>
#include <QVariant>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

[[nodiscard]] std::string valueOf(const QString& pragma)
{
    QSqlQuery query = till::store::prepare(u"PRAGMA "_s + pragma);
    till::store::execute(query);
    return query.next() ? query.value(0).toString().toStdString() : std::string("(none)");
}

/// Where two texts part, for whoever has to find out why.
[[nodiscard]] std::string difference(const QString& found, const QString& expected)
{
    const QStringList left = found.split(u'\n');
    const QStringList right = expected.split(u'\n');
    for (qsizetype i = 0; i < std::max(left.size(), right.size()); ++i) {
        if (left.value(i) != right.value(i)) {
            constexpr int enough = 60;
            return "found \"" + left.value(i).left(enough).toStdString() + "\" where there should be \""
                + right.value(i).left(enough).toStdString() + '"';
        }
    }
    return "no difference";
}

[[nodiscard]] std::string faultOfOpenStore(const Expected& expected)
{
    if (const std::string answer = valueOf(u"integrity_check"_s); answer != "ok") {
        return "damaged: " + answer.substr(0, answer.find('\n'));
    }
    if (const std::string version = valueOf(u"user_version"_s); version != "1") {
        return "schema version " + version;
    }
    const QString found = storedHoldings();
    const bool former = found == expected.acknowledged.text();
    const bool later = expected.inFlight && found == expected.inFlight->text();
    if (!former && !later) {
        return difference(found, expected.acknowledged.text());
    }
    // The till goes on, and never gives a record a number that one had before, also one that is gone.
    DBQueueBroker().enqueue(u"vantiro"_s, storyMessage(0), QString());
    const int next = static_cast<int>(till::store::queueRecords().constLast().id);
    const bool expectedNext
        = (former && next == expected.acknowledged.nextRecord()) || (later && next == expected.inFlight->nextRecord());
    return expectedNext ? std::string() : "the next record gets the number " + std::to_string(next);
}

} // namespace

void writeImage(const DiskImage& image, const std::string& folder)
{
    std::filesystem::remove_all(folder);
    std::filesystem::create_directory(folder);
    for (const std::string& name : image.folders) {
        std::filesystem::create_directory(folder + '/' + name);
    }
    for (const auto& [name, content] : image.files) {
        const int descriptor = ::open((folder + '/' + name).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        const bool written = descriptor >= 0
            && ::write(descriptor, content.bytes.data(), content.bytes.size())
                == static_cast<ssize_t>(content.bytes.size())
            && ::ftruncate(descriptor, content.size) == 0;
        if (!written) {
            throw std::runtime_error("the image cannot be written: " + name);
        }
        ::close(descriptor);
    }
}

std::string faultOf(const QString& folder, const Expected& expected)
{
    std::string fault;
    try {
        till::store::open(folder);
        fault = faultOfOpenStore(expected);
    } catch (const BasicException& failure) {
        fault = failure.tr().ru().toStdString();
    }
    till::store::close();
    return fault;
}
