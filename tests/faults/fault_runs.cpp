#include "tests/faults/fault_runs.h"

#include <QProcess>
#include <QProcessEnvironment>

#include <atomic>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace faults {

namespace {

constexpr int patience = 300'000; // milliseconds

[[nodiscard]] Told toldBy(const QString& line)
{
    const QStringList parts = line.split(u'\t');
    if (parts.size() != 6) {
        return { line, "a line that is none", 0 };
    }
    return { parts[0],
             u"%1 | server in use %2 | second server asked %3 | %4"_s.arg(parts[1], parts[2], parts[3], parts[5])
                 .toStdString(),
             parts[4].toInt() };
}

[[nodiscard]] RunOfABatch run(const Batch& batch, const QString& planted)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"VANTIRO_PLANTED"_s, planted);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(VANTIRO_FAULT_TILL),
                  QStringList { batch.fault, batch.arrangement, QString::number(batch.timeout) } + batch.operations);
    RunOfABatch result;
    if (!process.waitForFinished(patience)) {
        process.kill();
        process.waitForFinished();
        result.errors = "it does not end";
    }
    result.well = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    result.errors += process.readAllStandardError().toStdString();
    const QStringList lines = QString::fromUtf8(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        result.told.append(toldBy(line));
    }
    return result;
}

}

QList<RunOfABatch> runAll(const QList<Batch>& batches, int processesAtATime, const QString& planted)
{
    std::vector<RunOfABatch> results(static_cast<std::size_t>(batches.size()));
    std::atomic<qsizetype> next = 0;
    std::vector<std::thread> threads;
    for (int number = 0; number < processesAtATime; ++number) {
        threads.emplace_back([&] {
            for (qsizetype at = next++; at < batches.size(); at = next++) {
                results[static_cast<std::size_t>(at)] = run(batches[at], planted);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return QList<RunOfABatch>(results.cbegin(), results.cend());
}

}
