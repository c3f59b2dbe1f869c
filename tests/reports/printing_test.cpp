#include "front/vantiro.h"
#include "host/facilities/exceptions.h"
#include "host/framework/event.h"
#include "host/framework/text_printer.h"
#include "tests/support/cheque_service.h"
#include "tests/support/sample_cheque.h"
#include "tests/support/sorted_attributes.h"
#include "tests/reports/slip_client.h"
#include "tests/support/log_recorder.h"
#include "tests/support/scripted_config.h"
#include "till/log_events.h"

#include <gtest/gtest.h>

namespace {

/// A printer that keeps what it was to print. While one of these lives, it is what `MockFactory<TextPrinter>` gives
/// out.
class KeepingPrinter : public TextPrinter {
public:
    KeepingPrinter()
    {
        EXPECT_EQ(MockFactory<TextPrinter>::mocked, nullptr) << "two substitutes at once";
        MockFactory<TextPrinter>::mocked = this;
    }

    ~KeepingPrinter() override
    {
        MockFactory<TextPrinter>::mocked = nullptr;
    }

    void printText(const QString& text, int option) override
    {
        printed.append(QString::number(option) + QStringLiteral(": ") + sortedAttributes(text));
        if (broken) {
            throw BasicException(tr::Tr(QStringLiteral("нет бумаги")));
        }
    }

    QStringList printed; // "option: text"
    bool broken = false;
};

class ReportPrinting : public testing::Test {
protected:
    ReportPrinting()
    {
        config.set(QStringLiteral("Vantiro:hosts"), ScriptedService::address);
        EXPECT_TRUE(vantiro.init());
    }

    /// A cheque is closed whose reply holds the slip. The plug-in takes a slip as soon as the reply has been read, so
    /// whoever wants to find it waiting comes while it is being logged: `action` runs then, and must not log.
    void close(const QString& slip, const std::function<void()>& action)
    {
        service.answerText("Accrual", slip);
        int times = 0;
        const auto subscription = till::observeLog([&](const till::LogEvent& event) {
            if (event.text.startsWith(QStringLiteral("lastReport = "))) {
                ++times;
                action();
            }
        });
        const QSharedPointer<AbstractDocument> document = sample::cheque(EDocumentType::sale);
        vantiro.handleEvent(Event(EActivityListener::documentClosed,
                                  { { QStringLiteral("document"), QVariant::fromValue(document) } }));
        EXPECT_TRUE(service.take().body.contains("tem:Accrual"));
        EXPECT_EQ(times, 1);
    }

    ScriptedConfig config;
    ChequeService service;
    KeepingPrinter printer;
    Vantiro vantiro;
};

}

TEST_F(ReportPrinting, PrintsEachWaitingSlipInOrder)
{
    close(QStringLiteral("<docs><a><doc><br/></doc></a><a><doc/></a></docs>"), [&] { vantiro.printReports(); });

    EXPECT_EQ(readable(printer.printed), "-1: " + report(" <br/>\n") + "\n-1: " + report(""));
}

TEST_F(ReportPrinting, MakesNoPrinterWhenNothingWaits)
{
    const LogRecorder log;

    vantiro.printReports();

    EXPECT_EQ(readable(printer.printed), "");
    EXPECT_EQ(readable(log.lines()), "");
}

TEST_F(ReportPrinting, ReportsFailureOfThePrinterByThrowingOn)
{
    printer.broken = true;
    std::string text = "nothing";

    close(QStringLiteral("<docs><a><doc/></a><a><doc/></a></docs>"), [&] {
        try {
            vantiro.printReports();
        } catch (const BasicException& exception) {
            text = readable(exception.tr().ru());
        }
    });

    EXPECT_EQ(text, "нет бумаги");
    EXPECT_EQ(printer.printed.size(), 1) << "the second slip is not tried";
}
