#include "tests/faults/faulty_server.h"
#include "tests/faults/planted_client.h"
#include "tests/faults/service_replies.h"
#include "tests/faults/till_at_a_fault.h"
#include "tests/support/loopback_server.h"
#include "till/facilities/config_file.h"
#include "till/facilities/log_setup.h"
#include "till/store/store.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextStream>

#include <gtest/gtest.h>

#include <cstdlib>
#include <exception>

using namespace Qt::StringLiterals;
using namespace faults;
using vantiro_test::Answer;
using vantiro_test::HttpRequest;
using vantiro_test::LoopbackServer;

// A till whose first server has a fault, for tests that run many of them at once:
//
//     fault_till FAULT SERVERS TIMEOUT OPERATION...
//
// TIMEOUT is that of the plug-in, in seconds. SERVERS is One, Two (the second one is in good health) or Both (it has
// the same fault). Each operation is done by a plug-in of its own, and told in one line: operation, outcome, the server
// in use afterwards, how often the second one was asked for it, milliseconds, and what must never be. With FAULT
// "CutAfterEachByte" or "ResetAfterEachByte" each operation is told once for every byte of the reply. VANTIRO_PLANTED
// names a planted defect of the client.

namespace {

/// What no fault may ever lead to, and what would be seen nowhere else.
[[nodiscard]] QString scandal(const FaultyServer& first, const LoopbackServer& elsewhere, const QByteArray& action)
{
    if (elsewhere.connections() > 0) {
        return u"went where it was sent by a reply"_s;
    }
    return first.asked(action) > 1 ? u"sent to one server twice"_s : u"-"_s;
}

[[nodiscard]] int askedOf(const LoopbackServer& server, const QByteArray& action)
{
    int count = 0;
    for (const HttpRequest& request : server.requests()) {
        count += faults::actionOf(request) == action ? 1 : 0;
    }
    return count;
}

void configure(const QString& file, const QStringList& servers, const QString& timeout)
{
    QFile ini(file);
    if (!ini.open(QIODevice::WriteOnly)) {
        throw std::runtime_error("the configuration cannot be written");
    }
    ini.write("[Vantiro]\nuser=till\npassword=secret\ntimeout=" + timeout.toUtf8()
              + "\nhosts=" + servers.join(u',').toUtf8() + '\n');
    ini.close();
    till::setConfigFile(file);
}

void run(const QString& folder, const QString& fault, const QString& arrangement, const QString& timeout,
         const QString& operation)
{
    const QByteArray action = TillAtAFault::actionOf(operation);
    const LoopbackServer elsewhere(Answer::reply(200));
    const Order order { action, elsewhere.url().toEncoded() };
    const std::unique_ptr<FaultyServer> first = serverWith(fault, order);
    const LoopbackServer healthy(
        [](const HttpRequest& request) { return Answer::raw(http("200 OK", responseTo(faults::actionOf(request)))); });
    const std::unique_ptr<FaultyServer> alsoFaulty = arrangement == u"Both" ? serverWith(fault, order) : nullptr;

    QStringList servers { first->url().toString() };
    if (arrangement != u"One") {
        servers.append(alsoFaulty ? alsoFaulty->url().toString() : healthy.url().toString());
    }
    static int rows = 0; // a file of its own for each: one that is written twice within a tick is read but once
    configure(folder + u"/till-%1.ini"_s.arg(++rows), servers, timeout);
    const TillAtAFault::Outcome outcome = TillAtAFault(servers, timeout.toInt()).perform(operation);
    const int second = alsoFaulty ? alsoFaulty->asked(action) : askedOf(healthy, action);
    QTextStream(stdout) << QStringList { operation,
                                         outcome.text,
                                         QString::number(outcome.server),
                                         QString::number(second),
                                         QString::number(outcome.wait.count()),
                                         scandal(*first, elsewhere, action) }
                               .join(u'\t')
                        << Qt::endl;
}

void runAll(const QStringList& arguments)
{
    // In memory where there is a place for that: nothing here depends on the disk, and a row has many saves to wait
    // for.
    const QString memory = u"/dev/shm"_s;
    const QTemporaryDir folder((QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) + u"/fault_till-XXXXXX"_s);
    till::setUpLogging({ .file = folder.filePath(u"till.log"_s), .console = false });
    till::store::open(folder.path());
    const PlantedClient planted(qEnvironmentVariable("VANTIRO_PLANTED"));
    const QString& fault = arguments.at(1);
    for (const QString& operation : arguments.sliced(4)) {
        if (!fault.endsWith(u"AfterEachByte")) {
            run(folder.path(), fault, arguments.at(2), arguments.at(3), operation);
            continue;
        }
        const QString kind = fault.chopped(8); // "EachByte"
        for (qsizetype bytes = 0; bytes < sizeOfReply(TillAtAFault::actionOf(operation)); ++bytes) {
            run(folder.path(), kind + QString::number(bytes), arguments.at(2), arguments.at(3), operation);
        }
    }
    till::store::close();
}

}

int main(int argc, char** argv)
try {
    testing::InitGoogleTest(&argc, argv); // the servers tell their own failures that way
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 5) {
        QTextStream(stderr) << "fault_till FAULT SERVERS TIMEOUT OPERATION..." << Qt::endl;
        return EXIT_FAILURE;
    }
    runAll(arguments);
    return testing::UnitTest::GetInstance()->Failed() ? EXIT_FAILURE : EXIT_SUCCESS;
} catch (const std::exception& failure) {
    QTextStream(stderr) << "the till has ended: " << failure.what() << Qt::endl;
    return EXIT_FAILURE;
}
