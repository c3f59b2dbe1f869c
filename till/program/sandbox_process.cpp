#include "till/program/sandbox_process.h"

#include "till/program/surroundings.h"

#include <QFile>
#include <QFileInfo>

#include <csignal>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace till {

namespace {

    /// One line, without its end; empty at the end of the output.
    [[nodiscard]] QByteArray readLine(int descriptor)
    {
        QByteArray line;
        char c = '\0';
        while (::read(descriptor, &c, 1) == 1 && c != '\n') {
            line.append(c);
        }
        return line;
    }

    /// In the child, between fork and exec.
    [[noreturn]] void become(const std::vector<QByteArray>& words, int output, const QByteArray& log)
    {
        std::vector<char*> argv;
        for (const QByteArray& word : words) {
            argv.push_back(const_cast<char*>(word.constData())); // execv promises to leave them alone
        }
        argv.push_back(nullptr);
        ::dup2(output, STDOUT_FILENO);
        const int errors = ::open(log.constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
        if (errors >= 0) {
            ::dup2(errors, STDERR_FILENO);
        }
        ::execv(argv.front(), argv.data());
        ::_exit(127);
    }

} // namespace

SandboxProcess::SandboxProcess(const QString& program, const QStringList& arguments, const QString& name,
                               const QString& logFile)
{
    if (!QFileInfo(program).isExecutable()) {
        throw CommandError(
            QStringLiteral("there is no program %1; name the sandbox with --sandbox-program FILE").arg(program));
    }
    std::vector<QByteArray> words { QFile::encodeName(program) };
    for (const QString& argument : arguments) {
        words.push_back(argument.toUtf8());
    }
    const QByteArray log = QFile::encodeName(logFile);

    int ends[2] = { -1, -1 };
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        throw CommandError(QStringLiteral("the system gives no pipe"));
    }
    process = ::fork();
    if (process == 0) {
        become(words, ends[1], log);
    }
    ::close(ends[1]);
    output = ends[0];

    // "vantiro-sandbox NAME: service URL control URL"
    const QList<QByteArray> told = process < 0 ? QList<QByteArray>() : readLine(output).split(' ');
    constexpr qsizetype wordsOfLine = 6;
    if (told.size() != wordsOfLine || told.at(2) != "service" || told.at(4) != "control") {
        QFile errors(logFile);
        const QString reason
            = errors.open(QIODevice::ReadOnly) ? QString::fromUtf8(errors.readAll()).trimmed() : QString();
        ::close(output);
        if (process > 0) {
            ::kill(process, SIGTERM);
            ::waitpid(process, nullptr, 0);
        }
        throw CommandError(QStringLiteral("the sandbox does not start: %1").arg(reason));
    }
    addresses = { name, QUrl(QString::fromUtf8(told.at(3))), QUrl(QString::fromUtf8(told.at(5))) };
}

SandboxProcess::~SandboxProcess()
{
    ::kill(process, SIGTERM);
    ::waitpid(process, nullptr, 0);
    ::close(output);
}

const ControlledServer& SandboxProcess::server() const
{
    return addresses;
}

} // namespace till
