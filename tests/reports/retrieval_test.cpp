#include "tests/support/sorted_attributes.h"
#include "tests/reports/slip_client.h"
#include "tests/support/log_recorder.h"

#include <gtest/gtest.h>

namespace {

class SlipRetrieval : public testing::Test {
protected:
    [[nodiscard]] std::string takeReport()
    {
        return readable(sortedAttributes(client.getReport()));
    }

    [[nodiscard]] QList<std::string> takeReports()
    {
        QList<std::string> texts;
        for (const QString& text : client.getReports()) {
            texts.append(readable(sortedAttributes(text)));
        }
        return texts;
    }

    SlipClient client;
};

const std::string noted = "error vantiro: Ошибка преобразования отчёта от Vantiro";

}

TEST_F(SlipRetrieval, NothingWaitsAtFirst)
{
    const LogRecorder log;

    EXPECT_TRUE(client.lastReport.isNull());
    EXPECT_TRUE(client.getReport().isEmpty());
    EXPECT_TRUE(client.getReports().isEmpty());
    EXPECT_EQ(readable(log.lines()), "");
}

TEST_F(SlipRetrieval, SlipIsKeptUntransformedAndLogged)
{
    const LogRecorder log;

    client.fill(QStringLiteral("<doc><left>Спасибо</left><any/></doc>"));

    EXPECT_EQ(client.waiting(), "<doc>\n <left>Спасибо</left>\n <any/>\n</doc>\n");
    EXPECT_EQ(readable(log.lines()), "info vantiro: lastReport = <doc>\n <left>Спасибо</left>\n <any/>\n</doc>\n");
}

TEST_F(SlipRetrieval, SlipOfAnyRootIsKept)
{
    client.fill(QStringLiteral("<any><b>x</b></any>"));

    EXPECT_EQ(client.waiting(), "<any>\n <b>x</b>\n</any>\n");
}

TEST_F(SlipRetrieval, SlipMayBeEscapedOnceMore)
{
    client.fill(QStringLiteral("&lt;doc&gt;&lt;left a=&quot;1&quot; &gt;a&#xD;b&lt;/left&gt;&lt;/doc&gt;"));

    EXPECT_EQ(client.waiting(), "<doc>\n <left a=\"1\">ab</left>\n</doc>\n");
}

TEST_F(SlipRetrieval, SlipMayDeclareAnEncoding)
{
    for (const char* const encoding : { "utf-8", "utf-16", "windows-1251", "no-such-thing" }) {
        client.fill(QStringLiteral("<?xml version=\"1.0\" encoding=\"") + QLatin1String(encoding)
                    + QStringLiteral("\"?>\n<doc><left>Спасибо</left></doc>"));
        EXPECT_EQ(takeReport(), report(textLine("left", "smaller", "Спасибо"))) << encoding;
    }
}

TEST_F(SlipRetrieval, ResultMustStandOnce)
{
    client.fill(QStringLiteral("<doc/>"));
    const LogRecorder log;

    for (const char* const reply : { "<a/>", "<a><AccrualResult>x</AccrualResult><AccrualResult>y</AccrualResult></a>",
                                     "<a><AccrualResult>x</AccrualResult><b><AccrualResult>y</AccrualResult></b></a>",
                                     "<a><x:AccrualResult xmlns:x=\"urn:x\">x</x:AccrualResult></a>",
                                     "<OfflineAccrualResult>x</OfflineAccrualResult>" }) {
        client.fillReport(documentOf(QString::fromLatin1(reply)));
        EXPECT_EQ(client.waiting(), "<doc/>\n") << reply;
    }
    client.fillReport(QDomDocument());

    EXPECT_EQ(client.waiting(), "<doc/>\n");
    EXPECT_EQ(readable(log.lines()), "");
}

TEST_F(SlipRetrieval, ResultStandsAtAnyDepth)
{
    client.fillReport(documentOf(QStringLiteral("<a><b><AccrualResult>&lt;doc/&gt;</AccrualResult></b></a>")));

    EXPECT_EQ(client.waiting(), "<doc/>\n");
}

TEST_F(SlipRetrieval, EmptyResultLeavesWhatWaits)
{
    client.fill(QStringLiteral("<doc/>"));
    const LogRecorder log;

    client.fill(QString());

    EXPECT_EQ(client.waiting(), "<doc/>\n");
    EXPECT_EQ(readable(log.lines()), "");
}

TEST_F(SlipRetrieval, EmptyResultKeepsNothing)
{
    client.fill(QString());

    EXPECT_TRUE(client.lastReport.isNull());
    EXPECT_TRUE(client.getReport().isEmpty());
}

TEST_F(SlipRetrieval, SecondSlipReplacesTheFirst)
{
    client.fill(QStringLiteral("<doc><left>first</left></doc>"));
    client.fill(QStringLiteral("<doc><left>second</left></doc>"));

    EXPECT_EQ(takeReport(), report(textLine("left", "smaller", "second")));
    EXPECT_EQ(takeReport(), "");
}

TEST_F(SlipRetrieval, SlipIsTakenOnce)
{
    client.fill(QStringLiteral("<doc><br/></doc>"));

    EXPECT_EQ(takeReport(), report(" <br/>\n"));

    EXPECT_TRUE(client.lastReport.isNull());
    EXPECT_TRUE(client.getReport().isEmpty());
    EXPECT_TRUE(client.getReports().isEmpty());
}

TEST_F(SlipRetrieval, SlipsAreTakenOnceInOrder)
{
    client.fill(QStringLiteral("<docs><a><doc><br/></doc></a><a/><a><doc/></a></docs>"));

    EXPECT_EQ(takeReports(), (QList<std::string> { report(" <br/>\n"), "", report("") }));

    EXPECT_TRUE(client.lastReport.isNull());
    EXPECT_TRUE(client.getReports().isEmpty());
    EXPECT_TRUE(client.getReport().isEmpty());
}

TEST_F(SlipRetrieval, SlipsAskedForAsOneAreNotedAndGone)
{
    client.fill(QStringLiteral("<docs><a><doc/></a></docs>"));
    const LogRecorder log;

    EXPECT_EQ(takeReport(), "");

    EXPECT_EQ(readable(log.lines()), noted);
    EXPECT_TRUE(client.lastReport.isNull());
    EXPECT_TRUE(client.getReports().isEmpty());
}

TEST_F(SlipRetrieval, SlipAskedForAsSeveralIsNotedAndGone)
{
    client.fill(QStringLiteral("<doc><br/></doc>"));
    const LogRecorder log;

    EXPECT_TRUE(takeReports().isEmpty());

    EXPECT_EQ(readable(log.lines()), noted);
    EXPECT_TRUE(client.lastReport.isNull());
    EXPECT_TRUE(client.getReport().isEmpty());
}

TEST_F(SlipRetrieval, TakingLogsNothingElse)
{
    client.fill(QStringLiteral("<doc><br/></doc>"));
    const LogRecorder log;

    EXPECT_FALSE(client.getReport().isEmpty());

    EXPECT_EQ(readable(log.lines()), "");
}
