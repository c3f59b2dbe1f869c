#include "front/vantiro.h"
#include "host/framework/activity_notifier.h"
#include "tests/support/client_under_test.h"
#include "tests/support/document_builder.h"
#include "tests/support/loopback_server.h"
#include "tests/support/scripted_config.h"
#include "till/delivery/delivery_worker.h"
#include "till/desk/cashier.h"
#include "till/desk/open_document.h"
#include "till/framework/action_dispatcher.h"
#include "till/framework/task_runner.h"
#include "till/store/queue_records.h"
#include "till/store/store.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <set>

using namespace Qt::StringLiterals;
using vantiro_test::Answer;
using vantiro_test::HttpRequest;
using vantiro_test::LoopbackServer;

// What runs beside the thread of cheque operations, with the real parts of the till: connections over loopback, the
// store, the thread pool, the delivery. The thread sanitizer watches.

namespace {

constexpr std::chrono::seconds patience { 60 };

[[nodiscard]] QByteArray actionOf(const HttpRequest& request)
{
    return request.header("SOAPAction").split('/').constLast();
}

[[nodiscard]] Answer answerTo(const QByteArray& action)
{
    const QByteArray result = action == "GetCardDiscountAmount" ? "50.00"
        : action == "SubtractBonus45"                           ? "&lt;C/>"
                                                                : "";
    return Answer::reply(200,
                         soap::reply('<' + action + R"(Response xmlns="http://tempuri.org/"><)" + action + "Result>"
                                     + result + "</" + action + "Result></" + action + "Response>"));
}

[[nodiscard]] QString uidOf(const HttpRequest& request)
{
    const QByteArray mark = "ChequeUID=\"";
    return QString::fromLatin1(request.body.mid(request.body.indexOf(mark) + mark.size(), 36));
}

class BesideTheCheque : public testing::Test {
protected:
    BesideTheCheque()
    {
        till::store::open(folder.filePath(u"till"_s));
        till::setCashier({ [](const QString&) {}, [](const QString&) { return std::nullopt; }, [](const QString&) {} });
    }

    ~BesideTheCheque() override
    {
        till::setOpenDocument(nullptr);
        till::store::close();
        till::setCashier(till::terminalCashier());
    }

    void start(const LoopbackServer& first, const LoopbackServer& second)
    {
        config.set(u"Vantiro:hosts"_s, QString(first.url().toString() + u',' + second.url().toString()));
        config.set(u"Vantiro:timeout"_s, 10);
        plugin = std::make_unique<Vantiro>();
        ASSERT_TRUE(plugin->init());
    }

    [[nodiscard]] static QSharedPointer<AbstractDocument> sale(int number)
    {
        return DocumentBuilder()
            .identity(QString::number(number))
            .number(number)
            .line(Goods(1, u"1042"_s, 89.90, 2.0))
            .card(u"9000000001"_s)
            .cash(179.80)
            .build();
    }

    QTemporaryDir folder;
    ScriptedConfig config;
    std::unique_ptr<Vantiro> plugin;
};

}

TEST_F(BesideTheCheque, PingsAreInFlightWhileHooksRun)
{
    std::atomic<bool> firstIsDown = false;
    const LoopbackServer first([&firstIsDown](const HttpRequest& request) {
        return firstIsDown ? Answer(Answer::nothing().hangUp()) : answerTo(actionOf(request));
    });
    const LoopbackServer second([](const HttpRequest& request) { return answerTo(actionOf(request)); });
    start(first, second);
    till::TaskRunner runner;

    int checks = 0;
    for (int number = 1; number <= 30; ++number) {
        const QSharedPointer<AbstractDocument> document = sale(number);
        till::setOpenDocument(document);
        firstIsDown = number % 3 == 0;

        // The host's check, and the plug-in's own at the end of the cheque before.
        control::Action action;
        action.appendArgument(u"Vantiro"_s, u"pluginName"_s);
        ASSERT_TRUE(Singleton<till::ActionDispatcher>::get()->carryOut(EContext::any, control::checkConnection, action,
                                                                       [](const control::Action&) { return true; }));
        const auto task = action.value(u"pingTask"_s, QVariant()).value<QSharedPointer<BasicTask>>();
        task->addTaskResultHandler([&checks](const QSharedPointer<TaskResult>& result) {
            checks += result->data.value(u"serverIndex"_s).toInt() >= 0 ? 1 : 0;
        });
        runner.run(task);

        ASSERT_TRUE(plugin->request(document)) << plugin->getLastErrorString().ru().toStdString();
        plugin->setPointsForSpend(document, 40.0);
        ASSERT_TRUE(plugin->spendPoints()) << plugin->getLastErrorString().ru().toStdString();
        ASSERT_TRUE(plugin->commit(document)) << plugin->getLastErrorString().ru().toStdString();
        Singleton<ActivityNotifier>::get()->notify(
            Event(EActivityListener::documentClosed).addArgument(u"document"_s, QVariant::fromValue(document)));
        if (number % 4 == 0) {
            ASSERT_TRUE(runner.waitForIdle(patience));
        }
    }
    ASSERT_TRUE(runner.waitForIdle(patience));
    EXPECT_EQ(checks, 30);
    EXPECT_EQ(till::store::queueRecords().size(), 0);
}

TEST_F(BesideTheCheque, DeliveryRunsWhileChequesClose)
{
    constexpr std::size_t cheques = 60;
    std::atomic<bool> down = false;
    std::atomic<int> asked = 0;
    const auto answer = [&](const HttpRequest& request) {
        // Deliveries fail at times as well, so that both sides write the queue at all times.
        const bool fails = actionOf(request) == "OfflineAccrual" ? ++asked % 5 == 0 : down.load();
        return fails ? Answer(Answer::nothing().hangUp()) : answerTo(actionOf(request));
    };
    const LoopbackServer first(answer);
    const LoopbackServer second(answer);
    start(first, second);
    {
        till::Delivery::Settings settings;
        settings.timeout = 10;
        settings.firstWait = std::chrono::milliseconds(1);
        settings.longestWait = std::chrono::milliseconds(5);
        till::DeliveryWorker worker(settings);
        for (int number = 1; number <= static_cast<int>(cheques); ++number) {
            down = number % 2 == 0; // every other cheque is queued
            const QSharedPointer<AbstractDocument> document = sale(number);
            till::setOpenDocument(document);
            ASSERT_TRUE(plugin->commit(document)) << plugin->getLastErrorString().ru().toStdString();
            worker.wake();
        }
        for (int round = 0; round < 100 && !till::store::queueRecords().isEmpty(); ++round) {
            worker.wake();
            ASSERT_TRUE(worker.waitUntilIdle(patience));
        }
    }
    EXPECT_EQ(till::store::queueRecords().size(), 0);

    std::set<QString> told; // the cheques that the service has been told of, and those late
    std::set<QString> late;
    for (const HttpRequest& request : first.requests() + second.requests()) {
        told.insert(uidOf(request));
        if (actionOf(request) == "OfflineAccrual") {
            late.insert(uidOf(request));
        }
    }
    EXPECT_EQ(told.size(), cheques);
    EXPECT_EQ(late.size(), cheques / 2) << "those that were closed without a server";
}
