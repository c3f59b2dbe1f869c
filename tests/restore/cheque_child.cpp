#include "tests/restore/cheque_host.h"
#include "till/desk/cashier.h"
#include "till/facilities/config_file.h"
#include "till/facilities/log_setup.h"
#include "till/store/store.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>

using namespace Qt::StringLiterals;

// One till with one cheque, for tests that kill it. It tells on standard output what it does:
//
//     cheque_child --folder FOLDER --road ROAD [--resume N [--without-restoring]] [--stop-after N]
//
//     resumed after 3            the document has come back from the store
//     step 4 cheque-coupon: …    a step has ended, and all of it is on disk
//     slip …, shown …            what the cashier was given meanwhile
//     document …, queued for …   behind the last step: what is on disk
//
// The folder holds the configuration, `till.ini`, and gets the store and the log. After the step that it is to stop
// after it waits to be killed; it ends by itself when its standard input does.

namespace {

void tell(const QString& line)
{
    QTextStream(stdout) << line << Qt::endl;
}

[[noreturn]] void waitForTheEnd()
{
    char byte = 0;
    while (::read(STDIN_FILENO, &byte, 1) > 0) { }
    std::_Exit(EXIT_FAILURE);
}

void run(const QCommandLineParser& arguments)
{
    const QString folder = arguments.value(u"folder"_s);
    till::setUpLogging({ .file = folder + u"/till.log"_s, .console = false });
    till::setConfigFile(folder + u"/till.ini"_s);
    till::setCashier({ [](const QString& text) { tell(u"shown "_s + text); },
                       [](const QString&) { return std::nullopt; },
                       [](const QString& text) { tell(u"slip "_s + QString(text).replace(u'\n', u'|')); } });
    till::store::open(folder);

    ChequeHost host;
    const int resumed = arguments.value(u"resume"_s).toInt();
    if (resumed > 0) {
        host.resume(!arguments.isSet(u"without-restoring"_s));
        tell(u"resumed after %1"_s.arg(resumed));
    }
    const QStringList road = ChequeHost::road(arguments.value(u"road"_s));
    for (int number = resumed + 1; number <= road.size(); ++number) {
        const QString& step = road[number - 1];
        tell(u"step %1 %2: "_s.arg(QString::number(number), step) + host.perform(step));
        if (number == arguments.value(u"stop-after"_s).toInt()) {
            waitForTheEnd();
        }
    }
    for (const QString& line : ChequeHost::onDisk()) {
        tell(line);
    }
}

} // namespace

int main(int argc, char** argv)
try {
    const QCoreApplication application(argc, argv);
    QCommandLineParser arguments;
    for (const QString& name : { u"folder"_s, u"road"_s, u"resume"_s, u"stop-after"_s }) {
        arguments.addOption(QCommandLineOption(name, QString(), name));
    }
    arguments.addOption(QCommandLineOption(u"without-restoring"_s));
    arguments.process(application);
    run(arguments);
    till::store::close();
    return EXIT_SUCCESS;
} catch (const std::exception& failure) {
    QTextStream(stderr) << "the till has ended: " << failure.what() << Qt::endl;
    return EXIT_FAILURE;
}
