#include "host/facilities/exceptions.h"
#include "host/framework/db_queue_broker.h"
#include "tests/disk/power/planted_store.h"
#include "tests/disk/power/recorder.h"
#include "tests/disk/power/story.h"
#include "till/store/queue_records.h"
#include "till/store/store.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

// Lives a story with the till's store, or with one that has a defect, while its operations on the disk are recorded.
// Arguments: story, its length, the seed, the root of the store's folder, the record, and the defect if there is one;
// or in its place "restart": the store that stands there is only opened.

namespace {

void perform(const Command& command, const QString& folder)
{
    namespace store = till::store;
    switch (command.kind) {
    case Command::Kind::enqueue:
        DBQueueBroker().enqueue(QStringLiteral("vantiro"), storyMessage(command.number), QString());
        break;
    case Command::Kind::save:
        store::saveAs(storyDocument(command.number, command.version), command.state);
        break;
    case Command::Kind::deliver:
        store::removeDelivered(command.number);
        break;
    case Command::Kind::postpone:
        store::postpone(command.number, 3, QStringLiteral("later"), QDateTime());
        break;
    case Command::Kind::setAside:
        store::setAside(command.number, store::RecordState::refused, 4, QStringLiteral("no such card"));
        break;
    case Command::Kind::release:
        store::release(command.number);
        break;
    case Command::Kind::reopen:
        store::close();
        store::open(folder);
        break;
    }
}

void live(const Story& story, const QString& root, Recorder& recorder)
{
    const QString folder = root + u'/' + story.folder;
    till::store::open(folder);
    for (const Command& command : story.commands) {
        recorder.note("begin");
        perform(command, folder);
        recorder.note("done");
    }
    till::store::close();
}

void restart(const Story& story, const QString& root)
{
    till::store::open(root + u'/' + story.folder);
    till::store::close();
}

void liveWithDefect(const Story& story, const QString& root, Recorder& recorder, const Defect& defect)
{
    PlantedStore store(root, story.folder, defect);
    for (const Command& command : story.commands) {
        recorder.note("begin");
        store.perform(command, [&recorder] { recorder.note("done"); });
    }
}

} // namespace

int main(int argc, char** argv)
try {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const std::vector<Story> all = stories(arguments.value(2).toInt(), arguments.value(3).toUInt());
    const auto story = std::ranges::find(all, arguments.value(1), &Story::name);
    const QString root = arguments.value(4);
    const QString manner = arguments.value(6);
    const auto defect = std::ranges::find(defects(), manner, &Defect::name);
    const bool restarts = manner == QStringLiteral("restart");
    if (story == all.end() || (!manner.isEmpty() && !restarts && defect == defects().end())) {
        std::fputs("no such story or defect\n", stderr);
        return 2;
    }
    Recorder recorder(root.toStdString(), arguments.value(5).toStdString());
    if (restarts) {
        restart(*story, root);
    } else if (!manner.isEmpty()) {
        liveWithDefect(*story, root, recorder, *defect);
    } else {
        live(*story, root, recorder);
    }
    return 0;
} catch (const BasicException& failure) {
    std::fprintf(stderr, "%s\n", qPrintable(failure.tr().ru()));
    return 1;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}
