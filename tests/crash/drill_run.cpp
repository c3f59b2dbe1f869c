#include "tests/crash/drill_run.h"

#include <QProcess>
#include <QProcessEnvironment>

namespace crash {

DrillRun runDrill(const std::vector<std::string>& options)
{
    constexpr int limit = 600'000; // milliseconds
    QStringList arguments { QStringLiteral("--sandbox"), QStringLiteral(VANTIRO_SANDBOX_PROGRAM),
                            QStringLiteral("--plugin"),  QStringLiteral(VANTIRO_PLUGIN),
                            QStringLiteral("--rules"),   QStringLiteral(VANTIRO_CRASH_RULES) };
    for (const std::string& option : options) {
        arguments.append(QString::fromStdString(option));
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("VANTIRO_FAULTS")); // the tests say themselves how much is drilled
    QProcess drill;
    drill.setProcessEnvironment(environment);
    drill.setProcessChannelMode(QProcess::MergedChannels);
    drill.start(QStringLiteral(VANTIRO_CRASH_TILL), arguments);
    DrillRun run;
    if (drill.waitForFinished(limit) && drill.exitStatus() == QProcess::NormalExit) {
        run.status = drill.exitCode();
    }
    run.output = drill.readAll().toStdString();
    return run;
}

} // namespace crash
