#include "tests/reports/slip_client.h"
#include "tests/support/log_recorder.h"

#include <gtest/gtest.h>

namespace {

const std::string noted = "error vantiro: Ошибка преобразования отчёта от Vantiro";

}

TEST(SlipRoot, IsTheFirstElementWhateverStandsBeforeIt)
{
    const SlipClient client;
    const LogRecorder log;

    EXPECT_EQ(client.printForm(QStringLiteral("<?xml version=\"1.0\"?><!-- x --><?x y?><doc><br/></doc>")),
              report(" <br/>\n"));
    EXPECT_EQ(readable(log.lines()), "");
}

TEST(SlipRoot, MayBeAnyNodeAroundTheSlip)
{
    const SlipClient client;
    const QDomDocument source
        = documentOf(QStringLiteral("<any>text<!-- x --><doc><br/></doc><doc><f0>2</f0></doc></any>"));

    const QDomDocument form = client.transformReport(source.documentElement());

    EXPECT_EQ(readable(form.documentElement().tagName()), "report");
    ASSERT_EQ(form.documentElement().childNodes().length(), 1);
    EXPECT_EQ(readable(form.documentElement().firstChildElement().tagName()), "br");
}

TEST(SlipRoot, OfAnotherTagIsNotedAndGivesAnEmptyDocument)
{
    const SlipClient client;
    for (const char* const slip : { "<docs><a><doc/></a></docs>", "<Doc/>", "<report/>", "<x:doc xmlns:x=\"urn:x\"/>",
                                    "<!-- x --><other><doc/></other>" }) {
        const LogRecorder log;
        EXPECT_EQ(client.printForm(QString::fromLatin1(slip)), "") << slip;
        EXPECT_EQ(readable(log.lines()), noted) << slip;
    }
}

TEST(SlipRoot, ThatIsMissingIsNotedAndGivesAnEmptyDocument)
{
    const SlipClient client;
    const LogRecorder log;

    EXPECT_TRUE(client.transformReport(QDomDocument()).firstChild().isNull());
    EXPECT_EQ(readable(log.lines()), noted);
}

TEST(SlipRoot, OnlyTheFirstElementCounts)
{
    const SlipClient client;
    const LogRecorder log;
    const QDomDocument source = documentOf(QStringLiteral("<any><other/><doc/></any>"));

    EXPECT_TRUE(client.transformReport(source.documentElement()).firstChild().isNull());
    EXPECT_EQ(readable(log.lines()), noted);
}

TEST(SlipRoot, TransformationLeavesTheSlipAsItIs)
{
    const SlipClient client;
    const QDomDocument source = documentOf(QStringLiteral("<doc><left>a<f1>b</f1></left><br/></doc>"));

    EXPECT_FALSE(client.transformReport(source).isNull());

    EXPECT_EQ(readable(source.toString(-1)), "<doc><left>a<f1>b</f1></left><br/></doc>");
}

TEST(SlipsRoot, WrapsEachSlip)
{
    const SlipClient client;
    const LogRecorder log;

    EXPECT_EQ(client.printForms(QStringLiteral("<docs><a><doc><br/></doc></a><b><doc/></b></docs>")),
              (QList<std::string> { report(" <br/>\n"), report("") }));
    EXPECT_EQ(readable(log.lines()), "");
}

TEST(SlipsRoot, EmptyWrapperGivesAnEmptyDocument)
{
    const SlipClient client;
    const LogRecorder log;

    EXPECT_EQ(client.printForms(QStringLiteral("<docs><a><doc><br/></doc></a><a/></docs>")),
              (QList<std::string> { report(" <br/>\n"), "" }));
    EXPECT_EQ(readable(log.lines()), noted);
}

TEST(SlipsRoot, SlipWithoutItsWrapperGivesAnEmptyDocument)
{
    const SlipClient client;
    const LogRecorder log;

    EXPECT_EQ(client.printForms(QStringLiteral("<docs><doc><br/></doc><a><doc/></a></docs>")),
              (QList<std::string> { "", report("") }));
    EXPECT_EQ(readable(log.lines()), noted);
}

// Each child node is a slip, of whatever kind it is.
TEST(SlipsRoot, CommentBetweenSlipsIsASlipThatCannotBeRead)
{
    const SlipClient client;
    const LogRecorder log;

    EXPECT_EQ(client.printForms(QStringLiteral("<docs><!-- x --><a><doc/></a>text</docs>")),
              (QList<std::string> { "", report(""), "" }));
    EXPECT_EQ(readable(log.lines()), noted + '\n' + noted);
}

TEST(SlipsRoot, WithoutSlipsIsAnEmptyList)
{
    const SlipClient client;
    const LogRecorder log;

    EXPECT_TRUE(client.printForms(QStringLiteral("<docs/>")).isEmpty());
    EXPECT_EQ(readable(log.lines()), "");
}

TEST(SlipsRoot, IsTheFirstElementWhateverStandsBeforeIt)
{
    const SlipClient client;

    EXPECT_EQ(client.printForms(QStringLiteral("<?xml version=\"1.0\"?><!-- x --><docs><a><doc/></a></docs>")),
              (QList<std::string> { report("") }));
}

TEST(SlipsRoot, OfAnotherTagIsNotedAndGivesAnEmptyList)
{
    const SlipClient client;
    for (const char* const slips : { "<doc><docs/></doc>", "<Docs/>", "<other/>" }) {
        const LogRecorder log;
        EXPECT_TRUE(client.printForms(QString::fromLatin1(slips)).isEmpty()) << slips;
        EXPECT_EQ(readable(log.lines()), noted) << slips;
    }
    const LogRecorder log;
    EXPECT_TRUE(client.transformReports(QDomDocument()).isEmpty());
    EXPECT_EQ(readable(log.lines()), noted);
}
