#include "host/facilities/log_manager.h"
#include "host/facilities/tr.h"
#include "till/facilities/log_output.h"

#include <cstdio>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

using till::LogLevel;

namespace till {

namespace {

/// The log of one pair of names.
class NamedLogger final : public Log4Qt::Logger {
public:
    NamedLogger(const QString& first, const QString& second)
        : names(first, second)
    {
    }

    void write(LogLevel level, const QString& text) const noexcept
    {
        writeMade(level, [&text] { return text; });
    }

    /// Arguments are filled in one step, by the rule of all texts for people.
    template <class... Arguments>
    void format(LogLevel level, const char* format, const Arguments&... arguments) const noexcept
    {
        writeMade(level, [&] {
            tr::Tr text(QString::fromUtf8(format));
            (text.arg(tr::Tr(asText(arguments))), ...);
            return text.ru();
        });
    }

private:
    [[nodiscard]] static QString asText(const QString& argument)
    {
        return argument;
    }

    [[nodiscard]] static QString asText(int argument)
    {
        return QString::number(argument);
    }

    template <class MakeText>
    void writeMade(LogLevel level, const MakeText& makeText) const noexcept
    {
        try {
            if (isLogged(level)) {
                writeLog({ level, names.first, names.second, makeText() });
            }
        } catch (...) {
            std::fputs("Событие журнала потеряно\n", stderr);
        }
    }

    std::pair<QString, QString> names;
};

struct Loggers {
    std::mutex mutex;
    std::map<std::pair<QString, QString>, std::unique_ptr<NamedLogger>> byNames;
};

/// Never destroyed: the loggers stay valid for the life of the process.
[[nodiscard]] Loggers& loggers()
{
    static Loggers* const instance = new Loggers;
    return *instance;
}

/// Every logger is made by the manager below.
[[nodiscard]] const NamedLogger& named(const Log4Qt::Logger* logger)
{
    return static_cast<const NamedLogger&>(*logger);
}

} // namespace

} // namespace till

namespace Log4Qt {

Logger::Logger() = default;
Logger::~Logger() = default;

void Logger::trace(const char* format, const QString& argument) const
{
    till::named(this).format(LogLevel::trace, format, argument);
}

void Logger::debug(const QString& text) const
{
    till::named(this).write(LogLevel::debug, text);
}

void Logger::info(const char* text) const
{
    till::named(this).format(LogLevel::info, text);
}

void Logger::info(const char* format, const QString& argument) const
{
    till::named(this).format(LogLevel::info, format, argument);
}

void Logger::info(const char* format, int first, const QString& second) const
{
    till::named(this).format(LogLevel::info, format, first, second);
}

void Logger::warn(const char* text) const
{
    till::named(this).format(LogLevel::warn, text);
}

void Logger::error(const char* text) const
{
    till::named(this).format(LogLevel::error, text);
}

void Logger::error(const QString& text) const
{
    till::named(this).write(LogLevel::error, text);
}

void Logger::error(const char* format, const QString& argument) const
{
    till::named(this).format(LogLevel::error, format, argument);
}

void Logger::error(const char* format, int first, int second, const QString& third) const
{
    till::named(this).format(LogLevel::error, format, first, second, third);
}

void Logger::error(const char* format, const QString& first, int second, int third) const
{
    till::named(this).format(LogLevel::error, format, first, second, third);
}

Logger* LogManager::logger(const QString& name, const QString& second)
{
    till::Loggers& loggers = till::loggers();
    const std::lock_guard lock(loggers.mutex);
    std::unique_ptr<till::NamedLogger>& logger = loggers.byNames[{ name, second }];
    if (logger == nullptr) {
        logger = std::make_unique<till::NamedLogger>(name, second);
    }
    return logger.get();
}

} // namespace Log4Qt
