#include "till/program/commands.h"
#include "till/program/player_session.h"
#include "till/script/script_line.h"

#include "host/facilities/exceptions.h"

#include <QDir>
#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <sys/stat.h>
#include <unistd.h>

// After <cstdio>, which they need and do not include.
#include <readline/history.h>
#include <readline/readline.h>

namespace till {

namespace {

    struct FreeLine {
        void operator()(char* line) const
        {
            std::free(line);
        }
    };

    [[nodiscard]] std::optional<QString> readLine(const QString& prompt)
    {
        const std::unique_ptr<char, FreeLine> line(::readline((prompt + u' ').toUtf8().constData()));
        return line ? std::optional(QString::fromUtf8(line.get())) : std::nullopt;
    }

    /// The candidates for the word under the cursor, one at each call.
    char* nextCandidate(const char* text, int state)
    {
        static QStringList candidates;
        if (state == 0) {
            const QString before = QString::fromUtf8(rl_line_buffer).left(rl_point);
            QStringList words = before.split(u' ', Qt::SkipEmptyParts);
            if (before.isEmpty() || before.endsWith(u' ')) {
                words.append(QString());
            }
            words.last() = QString::fromUtf8(text);
            candidates = Player::completions(words);
        }
        return candidates.isEmpty() ? nullptr : ::strdup(candidates.takeFirst().toUtf8().constData());
    }

    char** complete(const char* text, int /*start*/, int /*end*/)
    {
        rl_attempted_completion_over = 1; // never names of files
        return rl_completion_matches(text, nextCandidate);
    }

    void showHelp()
    {
        const QList<VerbHelp> verbs = Player::verbs();
        for (const VerbHelp& verb : verbs) {
            writeLine(QStringLiteral("  %1\n      %2").arg(verb.usage, verb.meaning));
        }
        writeLine(QStringLiteral("  help; quit"));
    }

    /// Carries the line out; false at the end.
    [[nodiscard]] bool carryOut(Player& player, const QString& text, int number)
    {
        try {
            const QStringList words = wordsOf(text);
            if (words.isEmpty()) {
                return true;
            }
            if (words.constFirst() == u"quit") {
                return false;
            }
            if (words.constFirst() == u"help") {
                showHelp();
                return true;
            }
            player.play({ number, words, text.trimmed() });
            if (words.constFirst() != u"expect") {
                player.end(); // a person sees a refusal at once
            }
        } catch (const ScriptError& error) {
            writeLine(QStringLiteral("  ! ") + error.text());
        } catch (const BasicException& failure) {
            writeLine(QStringLiteral("  ! ") + failure.tr().ru());
        }
        return true;
    }

} // namespace

int shell(const PlayOptions& options)
{
    PlayerSession session(options, readLine, {});
    session.deliverBeside();
    const QByteArray history = QFile::encodeName(QDir(options.places.dataFolder()).filePath(QStringLiteral("history")));
    using_history();
    read_history(history.constData());
    rl_attempted_completion_function = complete;
    if (::isatty(STDIN_FILENO) != 0) {
        writeLine(QStringLiteral("vantiro-till: \"help\" lists the verbs, Tab completes them, \"quit\" ends"));
    }
    for (int number = 1;; ++number) {
        const std::optional<QString> line = readLine(QStringLiteral("till>"));
        if (!line) {
            break;
        }
        if (!line->trimmed().isEmpty()) {
            add_history(line->toUtf8().constData());
        }
        if (!carryOut(session.player(), *line, number)) {
            break;
        }
        session.wakeDelivery();
    }
    const mode_t mask = ::umask(0077); // card and telephone numbers were typed
    write_history(history.constData());
    ::umask(mask);
    return 0;
}

} // namespace till
