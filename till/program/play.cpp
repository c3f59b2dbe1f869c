#include "till/program/commands.h"
#include "till/program/player_session.h"
#include "till/script/script_line.h"

#include "host/facilities/exceptions.h"

#include <QFile>
#include <QGuiApplication>

#include <csignal>
#include <cstdio>
#include <optional>

#include <sys/wait.h>
#include <unistd.h>

// A script is played by a child process, so that its verb `crash` can be what it says: the child dies by SIGKILL, and
// the next child goes on behind that line with nothing but what is on disk. Nothing of Qt that owns a thread or a
// descriptor may be made before the fork.

namespace till {

namespace {

    struct Script {
        QString text;
        QList<ScriptLine> lines;
    };

    [[nodiscard]] Script readScript(const QString& name)
    {
        QFile file;
        const bool opened = name == u"-" ? file.open(stdin, QIODevice::ReadOnly)
                                         : (file.setFileName(name), file.open(QIODevice::ReadOnly));
        if (!opened) {
            throw CommandError(QStringLiteral("the script %1 cannot be read: %2").arg(name, file.errorString()));
        }
        try {
            const QString text = QString::fromUtf8(file.readAll());
            return { text, parseScript(text) };
        } catch (const ScriptError& error) {
            throw CommandError(QStringLiteral("%1, %2").arg(name, error.text()));
        }
    }

    [[noreturn]] void die()
    {
        std::fflush(stdout);
        ::kill(::getpid(), SIGKILL);
        ::pause();
        std::abort();
    }

    void beginTrace(const PlayOptions& options, const QString& script)
    {
        QFile configuration(options.places.configFile());
        try {
            TraceRecorder::begin(
                options.trace,
                { script,
                  configuration.open(QIODevice::ReadOnly) ? QString::fromUtf8(configuration.readAll()) : QString(),
                  options.servers,
                  {} });
        } catch (const ScriptError& error) {
            throw CommandError(error.text());
        }
    }

    /// Plays from that line on. The lines carried out are told through the pipe, for whoever goes on after a crash.
    [[nodiscard]] int playFrom(const QList<ScriptLine>& script, qsizetype first, const PlayOptions& options, int pipe)
    {
        const ScriptLine* current = nullptr;
        const auto fail = [&](const QString& text, int line = 0) {
            const int number = line > 0 || current == nullptr ? line : current->number;
            const QString place = number > 0 ? QStringLiteral(":%1").arg(number) : QString();
            if (!options.quiet) {
                std::fprintf(stderr, "vantiro-till: %s%s: %s\n", qPrintable(options.script), qPrintable(place),
                             qPrintable(text));
            }
            return 1;
        };
        try {
            int argc = 1;
            char name[] = "vantiro-till";
            char* argv[] = { name, nullptr };
            const QGuiApplication application(argc, argv); // for the pictures of slips
            PlayerSession session(options, {}, die, first);
            for (qsizetype i = first; i < script.size(); ++i) {
                current = &script.at(i);
                if (::write(pipe, &i, sizeof i) != sizeof i) {
                    return fail(QStringLiteral("the process that watches is gone"));
                }
                session.play(*current, i);
            }
            session.player().end();
        } catch (const ScriptError& error) {
            return fail(error.text(), error.line());
        } catch (const BasicException& failure) {
            return fail(failure.tr().ru());
        } catch (const std::exception& failure) {
            current = nullptr;
            return fail(QString::fromUtf8(failure.what()));
        }
        return 0;
    }

    /// The line that the child has told last.
    [[nodiscard]] std::optional<qsizetype> lastTold(int pipe)
    {
        std::optional<qsizetype> last;
        qsizetype index = 0;
        while (::read(pipe, &index, sizeof index) == sizeof index) {
            last = index;
        }
        return last;
    }

} // namespace

int play(const PlayOptions& options)
{
    const auto [text, script] = readScript(options.script);
    if (!options.trace.isEmpty()) {
        beginTrace(options, text);
    }
    for (qsizetype first = 0;;) {
        int ends[2] = { -1, -1 };
        if (::pipe(ends) != 0) {
            throw CommandError(QStringLiteral("the system gives no pipe"));
        }
        std::fflush(stdout);
        const pid_t child = ::fork();
        if (child < 0) {
            throw CommandError(QStringLiteral("the system gives no process"));
        }
        if (child == 0) {
            ::close(ends[0]);
            const int status = playFrom(script, first, options, ends[1]);
            std::fflush(stdout);
            ::_exit(status); // what the parent has made is the parent's to end
        }
        ::close(ends[1]);
        const std::optional<qsizetype> last = lastTold(ends[0]);
        ::close(ends[0]);
        int status = 0;
        ::waitpid(child, &status, 0);
        if (WIFEXITED(status)) {
            return WEXITSTATUS(status);
        }
        const bool asked = last && script.at(*last).words.constFirst() == u"crash";
        if (!asked || WTERMSIG(status) != SIGKILL) {
            std::fprintf(stderr, "vantiro-till: %s: the till has died by signal %d\n", qPrintable(options.script),
                         WTERMSIG(status));
            return 1;
        }
        if (!options.quiet) {
            writeLine(QStringLiteral("    the till was killed and starts again"));
        }
        first = *last + 1;
    }
}

} // namespace till
