#include "till/program/commands.h"
#include "till/program/player_session.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>

namespace till {

namespace {

    void write(const QString& name, const QString& content)
    {
        QFile file(name);
        const QByteArray bytes = content.toUtf8();
        if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly) || file.write(bytes) != bytes.size()
            || !file.flush()) {
            throw CommandError(QStringLiteral("%1 cannot be written: %2").arg(name, file.errorString()));
        }
    }

    /// The line of the script, for a person.
    [[nodiscard]] QString lineOf(const Trace& trace, qsizetype step)
    {
        const QList<ScriptLine> script = parseScript(trace.script);
        if (step < 0 || step >= script.size()) {
            return QString();
        }
        return QStringLiteral("line %1, \"%2\"").arg(script.at(step).number).arg(script.at(step).text);
    }

} // namespace

int replay(const QString& file, const QString& plugin)
try {
    const Trace recorded = readTrace(file);
    const QTemporaryDir folder;
    if (!folder.isValid()) {
        throw CommandError(QStringLiteral("there is no place for a data folder: %1").arg(folder.errorString()));
    }
    PlayOptions options;
    options.places.plugin = plugin.isEmpty() ? plugin : QFileInfo(plugin).absoluteFilePath();
    options.places.data = folder.filePath(QStringLiteral("till"));
    options.places.config = folder.filePath(QStringLiteral("vantiro-till.ini"));
    options.script = folder.filePath(QStringLiteral("recorded.till"));
    options.trace = folder.filePath(QStringLiteral("repeated.trace"));
    options.answers = std::make_shared<TraceAnswers>(recorded);
    options.servers = recorded.servers;
    options.quiet = true;
    write(options.places.config, recorded.configuration);
    write(options.script, recorded.script);

    static_cast<void>(play(options)); // a script that has failed fails again, and the traces tell whether alike
    const Trace repeated = readTrace(options.trace);
    const QStringList difference = firstDifference(recorded, repeated);
    if (!difference.isEmpty()) {
        writeLine(QStringLiteral("It comes out otherwise at %1: %2")
                      .arg(lineOf(recorded, difference.constFirst().toLongLong()), difference.at(1)));
        for (const QString& line : difference.sliced(2)) {
            writeLine(QStringLiteral("  ") + line);
        }
        return 1;
    }
    const auto count = [&recorded](const QString& event) {
        return QString::number(std::ranges::count_if(recorded.events, [&event](const QJsonObject& one) {
            return one[QStringLiteral("event")].toString() == event;
        }));
    };
    writeLine(
        QStringLiteral("The same again: hooks %1, exchanges %2, savings %3")
            .arg(count(QStringLiteral("hook")), count(QStringLiteral("exchange")), count(QStringLiteral("save"))));
    return 0;
} catch (const ScriptError& error) {
    throw CommandError(error.text());
}

} // namespace till
