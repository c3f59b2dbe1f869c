#include "tests/store/child/jobs.h"

#include <QCoreApplication>
#include <QJsonDocument>

#include <unistd.h>

#include <cstdio>
#include <exception>

void tell(int number)
{
    const QByteArray line = QByteArray::number(number) + '\n';
    if (::write(STDOUT_FILENO, line.constData(), static_cast<std::size_t>(line.size())) != line.size()) {
        ::_exit(3); // whoever listened is gone
    }
}

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString job = arguments.value(1);
    const QString folder = arguments.value(2);
    QJsonObject facts;
    try {
        if (job == QStringLiteral("enqueue")) {
            enqueueNumbered(folder, arguments.value(3).toInt(), arguments.value(4).toInt());
            return 0;
        }
        if (job == QStringLiteral("save")) {
            saveNumbered(folder, arguments.value(3).toInt());
            return 0;
        }
        if (job == QStringLiteral("read")) {
            facts = readDocument(folder, arguments.value(3));
        } else if (job == QStringLiteral("full-disk")) {
            facts = fillDisk(folder);
        } else if (job == QStringLiteral("read-only")) {
            facts = closeFile(folder);
        } else {
            std::fputs("no such job\n", stderr);
            return 2;
        }
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "%s\n", exception.what());
        return 1;
    }
    std::fputs(QJsonDocument(facts).toJson().constData(), stdout);
    return 0;
}
