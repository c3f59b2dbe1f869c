#include "tests/disk/power/explorer.h"

#include <QProcess>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace {

[[nodiscard]] std::uint64_t mixed(std::uint64_t hash, std::uint64_t value)
{
    return (hash ^ value) * 0x9E3779B97F4A7C15U + (hash >> 29U);
}

/// Of the image and of what is expected of it.
[[nodiscard]] std::uint64_t hashOf(const DiskImage& image, const Expected& expected)
{
    const std::hash<std::string> hash;
    std::uint64_t sum
        = mixed(qHash(expected.acknowledged.text()), expected.inFlight ? qHash(expected.inFlight->text()) : 0U);
    for (const std::string& folder : image.folders) {
        sum = mixed(sum, hash(folder));
    }
    for (const auto& [name, content] : image.files) {
        sum = mixed(sum, hash(name));
        sum = mixed(sum, hash(content.bytes));
        sum = mixed(sum, static_cast<std::uint64_t>(content.size));
    }
    return sum;
}

/// The disk as the child has left it, without what the database shares between processes in memory.
[[nodiscard]] DiskImage imageOf(const std::string& folder)
{
    DiskImage image;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const std::string name = entry.path().string().substr(folder.size() + 1);
        if (entry.is_directory()) {
            image.folders.insert(name);
            continue;
        }
        std::ifstream stream(entry.path(), std::ios::binary);
        const std::string bytes { std::istreambuf_iterator<char>(stream), {} };
        image.files.emplace(name, Content { bytes, static_cast<std::int64_t>(bytes.size()) });
    }
    return image;
}

[[nodiscard]] bool sameFiles(DiskImage recorded, const DiskImage& real)
{
    std::erase_if(recorded.files, [](const auto& file) { return file.first.ends_with("-shm"); });
    if (recorded.folders != real.folders || recorded.files.size() != real.files.size()) {
        return false;
    }
    for (auto& [name, content] : recorded.files) {
        content.bytes.resize(static_cast<std::size_t>(content.size));
        const auto found = real.files.find(name);
        if (found == real.files.end() || found->second.bytes != content.bytes) {
            return false;
        }
    }
    return true;
}

/// The database finds it when it is opened, and undoes what it tells of.
[[nodiscard]] bool hasUnfinishedTransaction(const DiskImage& image)
{
    return std::ranges::any_of(image.files, [](const auto& file) {
        return file.first.ends_with("-journal") && !file.second.bytes.empty() && file.second.bytes.front() != '\0';
    });
}

const QString livedFolder = QStringLiteral("/lived");
}

Explorer::Explorer(const Settings& explorerSettings)
    : settings(explorerSettings)
    , dice(explorerSettings.seed)
{
}

bool Explorer::stopsAtFault() const
{
    return settings.stopsAtFault;
}

bool Explorer::isEnough(const Losses& losses) const
{
    return settings.stopsAtFault && losses.wrong > 0;
}

std::vector<Operation> Explorer::live(const Story& story, const QString& manner) const
{
    const QString record = settings.place + QStringLiteral("/record");
    QProcess process;
    process.start(settings.child,
                  { story.name, QString::number(settings.length), QString::number(settings.seed),
                    settings.place + livedFolder, record, manner });
    constexpr int patience = 60'000; // milliseconds
    if (!process.waitForFinished(patience) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        throw std::runtime_error("the child has failed: " + process.readAllStandardError().toStdString());
    }
    return readRecord(record.toStdString());
}

/// Gives the states in which the till is to be started once more.
std::vector<DiskImage> Explorer::exploreMoment(const RecordedDisk& disk, const Story& story, const Expected& expected,
                                               Losses& losses)
{
    std::vector<DiskImage> restarts;
    const std::string state = settings.place.toStdString() + "/state";
    for (const std::vector<Reached>& reached : powerLosses(disk.pending(), settings.thoroughness, dice)) {
        const DiskImage image = disk.image(reached);
        if (!seen.insert(hashOf(image, expected)).second) {
            continue;
        }
        writeImage(image, state);
        const std::string fault = faultOf(settings.place + QStringLiteral("/state/") + story.folder, expected);
        ++losses.states;
        if (!fault.empty()) {
            ++losses.wrong;
            if (losses.firstFault.empty()) {
                losses.firstFault = fault;
            }
            if (isEnough(losses)) {
                break;
            }
        }
        if (settings.statesPerRestart > 0 && hasUnfinishedTransaction(image)
            && unfinished++ % settings.statesPerRestart == 0) {
            restarts.push_back(image);
        }
    }
    return restarts;
}

void Explorer::exploreRestart(const DiskImage& image, const Story& story, const Expected& expected, Losses& losses)
{
    const std::string lived = (settings.place + livedFolder).toStdString();
    writeImage(image, lived);
    const std::vector<Operation> operations = live(story, QStringLiteral("restart"));
    RecordedDisk disk(lived, image);
    ++losses.restarts;
    for (const Operation& operation : operations) {
        disk.apply(operation);
        static_cast<void>(exploreMoment(disk, story, expected, losses));
    }
    if (!sameFiles(disk.cached(), imageOf(lived))) {
        throw std::runtime_error("the record does not account for what a restart has left on the disk");
    }
}

Losses Explorer::explore(const Story& story, const std::optional<Defect>& defect)
{
    const std::string lived = (settings.place + livedFolder).toStdString();
    writeImage({}, lived);
    const std::vector<Operation> operations = live(story, defect ? defect->name : QString());
    const DiskImage left = imageOf(lived);
    RecordedDisk disk(lived);
    Losses losses;
    Expected expected;
    auto command = story.commands.cbegin();
    for (const Operation& operation : operations) {
        disk.apply(operation);
        if (operation.kind != disk::Kind::note) {
            ++losses.operations;
        } else if (operation.data == "begin") {
            expected.inFlight = expected.acknowledged;
            expected.inFlight->apply(*command++);
        } else {
            expected.acknowledged = *std::exchange(expected.inFlight, std::nullopt);
        }
        for (const DiskImage& image : exploreMoment(disk, story, expected, losses)) {
            exploreRestart(image, story, expected, losses);
        }
        if (isEnough(losses)) {
            return losses;
        }
    }
    if (command != story.commands.cend() || !sameFiles(disk.cached(), left)) {
        throw std::runtime_error("the record does not account for what is on the disk");
    }
    return losses;
}
