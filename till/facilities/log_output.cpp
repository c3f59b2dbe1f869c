#include "till/facilities/log_output.h"

#include "till/facilities/log_setup.h"
#include "till/facilities/redaction.h"

#include <QFile>

#include <fcntl.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <spdlog/spdlog.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <mutex>
#include <vector>

namespace till {

struct LogSubscription::Entry {
    LogObserver observer;
    std::recursive_mutex running; // an observer may end its own subscription
    bool ended = false; // guarded by `running`
};

namespace {

using Entry = LogSubscription::Entry;

[[nodiscard]] spdlog::level::level_enum spdlogLevel(LogLevel level)
{
    switch (level) {
    case LogLevel::trace:
        return spdlog::level::trace;
    case LogLevel::debug:
        return spdlog::level::debug;
    case LogLevel::info:
        return spdlog::level::info;
    case LogLevel::warn:
        return spdlog::level::warn;
    case LogLevel::error:
        break;
    }
    return spdlog::level::err;
}

/// A log belongs to its owner alone and does not pass to programs that the till starts. What is no file, `/dev/null`
/// say, belongs to everybody.
void guardFile(const spdlog::filename_t& /*name*/, std::FILE* file)
{
    const int descriptor = fileno(file);
    fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    struct stat state = {};
    if (fstat(descriptor, &state) == 0 && S_ISREG(state.st_mode)) {
        fchmod(descriptor, S_IRUSR | S_IWUSR);
    }
}

[[nodiscard]] spdlog::sink_ptr makeFileSink(const LogSettings& settings)
{
    spdlog::file_event_handlers handlers;
    handlers.after_open = guardFile;
    try {
        return std::make_shared<spdlog::sinks::rotating_file_sink_mt>(QFile::encodeName(settings.file).toStdString(),
                                                                      settings.maximumFileSize, settings.maximumFiles,
                                                                      false, handlers);
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "Журнал не пишется в файл: %s\n", exception.what());
        return nullptr;
    }
}

[[nodiscard]] std::shared_ptr<spdlog::logger> makeLogger(const LogSettings& settings)
{
    std::vector<spdlog::sink_ptr> sinks;
    if (!settings.file.isEmpty()) {
        if (auto file = makeFileSink(settings)) {
            sinks.push_back(std::move(file));
        }
    }
    const bool fileLost = !settings.file.isEmpty() && sinks.empty();
    if (settings.console || fileLost) {
        sinks.push_back(std::make_shared<spdlog::sinks::stderr_sink_mt>());
    }
    auto logger = std::make_shared<spdlog::logger>("till", sinks.begin(), sinks.end());
    logger->set_pattern("%Y-%m-%d %H:%M:%S.%e %l %v");
    logger->set_level(spdlogLevel(settings.threshold));
    logger->flush_on(spdlog::level::trace); // what has been logged must be there after a crash
    // A full disk must not bury the console under one complaint for each event.
    logger->set_error_handler([told = std::make_shared<std::atomic_flag>()](const std::string& reason) {
        if (!told->test_and_set()) {
            std::fprintf(stderr, "Журнал не пишется: %s\n", reason.c_str());
        }
    });
    return logger;
}

struct Output {
    std::mutex mutex;
    std::shared_ptr<spdlog::logger> logger = makeLogger({ .file = {}, .threshold = LogLevel::warn });
    std::vector<std::shared_ptr<Entry>> observers;
};

/// Never destroyed: objects of other libraries log until the very end of the process.
[[nodiscard]] Output& output()
{
    static Output* const instance = new Output;
    return *instance;
}

[[nodiscard]] std::shared_ptr<spdlog::logger> currentLogger()
{
    const std::lock_guard lock(output().mutex);
    return output().logger;
}

[[nodiscard]] std::vector<std::shared_ptr<Entry>> currentObservers()
{
    const std::lock_guard lock(output().mutex);
    return output().observers;
}

/// Whether this thread is inside an observer. Events of an observer go to none: it would be called without end, and two
/// that log on two threads would wait for each other.
thread_local bool observing = false;

void notify(const LogEvent& event)
{
    if (observing) {
        return;
    }
    const std::vector<std::shared_ptr<Entry>> entries = currentObservers();
    observing = true;
    for (const std::shared_ptr<Entry>& entry : entries) {
        const std::lock_guard lock(entry->running);
        try {
            if (!entry->ended) {
                entry->observer(event);
            }
        } catch (...) {
            std::fputs("Наблюдатель журнала бросил исключение\n", stderr);
        }
    }
    observing = false;
}

[[nodiscard]] bool breaksLine(QChar character)
{
    const char16_t code = character.unicode();
    return (code < 0x20 && code != u'\t') || (code >= 0x7F && code < 0xA0) || code == 0x2028 || code == 0x2029;
}

/// One event, one line, and nothing that steers a terminal; a reader can turn it back.
[[nodiscard]] QString escaped(const QString& text)
{
    const auto isEscaped = [](QChar character) { return character == u'\\' || breaksLine(character); };
    if (std::none_of(text.cbegin(), text.cend(), isEscaped)) { // nearly every line
        return text;
    }
    QString result;
    result.reserve(text.size());
    for (const QChar character : text) {
        if (character == u'\\') {
            result += QStringLiteral("\\\\");
        } else if (character == u'\n') {
            result += QStringLiteral("\\n");
        } else if (character == u'\r') {
            result += QStringLiteral("\\r");
        } else if (breaksLine(character)) {
            result += QStringLiteral("\\u") + QString::number(character.unicode(), 16).rightJustified(4, u'0');
        } else {
            result += character;
        }
    }
    return result;
}

/// What an event is written as.
struct WrittenEvent {
    QString logger;
    QString second;
    QString text;
    std::string line;

    [[nodiscard]] bool isLike(const LogEvent& event) const
    {
        return text == event.text && second == event.second && logger == event.logger;
    }
};

/// The last event that held nothing to mask; none before the first.
struct LastHarmless {
    std::mutex mutex;
    std::shared_ptr<const WrittenEvent> event;
};

/// Never destroyed, as the output is not.
[[nodiscard]] LastHarmless& lastHarmless()
{
    static LastHarmless* const instance = new LastHarmless;
    return *instance;
}

[[nodiscard]] std::string makeLine(const LogEvent& event)
{
    const QString name = event.second.isEmpty() ? event.logger : event.logger + u'/' + event.second;
    return escaped(u'[' + name + QStringLiteral("] ") + event.text).toStdString();
}

/// Masks the secrets of the event; what is written of it. One bad reply makes thousands of the same event, and looking
/// for secrets takes most of the time of each, so a short one that was found to hold none is known when it comes again.
[[nodiscard]] std::shared_ptr<const WrittenEvent> redacted(LogEvent& event)
{
    constexpr qsizetype longestKept = 1024;
    LastHarmless& last = lastHarmless();
    {
        const std::lock_guard lock(last.mutex);
        if (last.event != nullptr && last.event->isLike(event)) {
            return last.event;
        }
    }
    QString text = redact(event.text);
    const bool isKept = text == event.text && text.size() <= longestKept;
    event.text = std::move(text);
    auto written = std::make_shared<const WrittenEvent>(
        WrittenEvent { event.logger, event.second, event.text, makeLine(event) });
    if (isKept) {
        const std::lock_guard lock(last.mutex);
        last.event = written;
    }
    return written;
}

} // namespace

bool isLogged(LogLevel level)
{
    const std::lock_guard lock(output().mutex);
    return !output().observers.empty() || output().logger->should_log(spdlogLevel(level));
}

void writeLog(LogEvent event)
{
    const std::shared_ptr<const WrittenEvent> written = redacted(event);
    // As a view it is written as it stands; a std::string alone could be taken for a format.
    currentLogger()->log(spdlogLevel(event.level), spdlog::string_view_t(written->line.data(), written->line.size()));
    notify(event);
}

void setUpLogging(const LogSettings& settings)
{
    auto logger = makeLogger(settings);
    const std::lock_guard lock(output().mutex);
    output().logger.swap(logger);
}

LogSubscription::LogSubscription(std::shared_ptr<Entry> entryToKeep)
    : entry(std::move(entryToKeep))
{
}

LogSubscription::~LogSubscription()
{
    end();
}

LogSubscription::LogSubscription(LogSubscription&& other) noexcept = default;

LogSubscription& LogSubscription::operator=(LogSubscription&& other) noexcept
{
    if (this != &other) {
        end();
        entry = std::move(other.entry);
    }
    return *this;
}

void LogSubscription::end() noexcept
{
    if (entry == nullptr) {
        return;
    }
    {
        const std::lock_guard lock(entry->running);
        entry->ended = true;
    }
    {
        const std::lock_guard lock(output().mutex);
        std::erase(output().observers, entry);
    }
    entry.reset();
}

LogSubscription observeLog(LogObserver observer)
{
    auto entry = std::make_shared<Entry>();
    entry->observer = std::move(observer);
    const std::lock_guard lock(output().mutex);
    output().observers.push_back(entry);
    return LogSubscription(std::move(entry));
}

} // namespace till
