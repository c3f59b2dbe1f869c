#include "tests/reports/slip_client.h"
#include "tests/support/log_recorder.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

struct Written {
    const char* name;
    QString content; // of `doc`
    std::string commands; // of `report`, attributes in the order of their names
};

void PrintTo(const Written& written, std::ostream* out)
{
    *out << written.content.toStdString();
}

class SlipText : public testing::TestWithParam<Written> { };

}

// A data section is text like any other, and so is what stands deeper than the element that is printed.
TEST_P(SlipText, IsPrintedHoweverItIsWritten)
{
    const SlipClient client;

    EXPECT_EQ(client.printForm(QStringLiteral("<doc>") + GetParam().content + QStringLiteral("</doc>")),
              report(GetParam().commands));
}

INSTANTIATE_TEST_SUITE_P(
    Forms, SlipText,
    testing::Values(
        Written { "DataInABlock", QStringLiteral("<left><![CDATA[1 < 2]]></left>"),
                  textLine("left", "smaller", "1 &lt; 2") },
        Written { "DataBesideText", QStringLiteral("<right>a<![CDATA[b]]><f2>c</f2></right>"),
                  textLine("right", "smaller", "a") + textLine("right", "smaller", "b")
                      + textLine("right", "enlarge", "c") },
        Written { "DataInASize", QStringLiteral("<center><f1>a<![CDATA[&]]>b</f1></center>"),
                  textLine("center", "normal", "a&amp;b") },
        Written { "DataOfTheDocument", QStringLiteral("<![CDATA[not printed]]><br/>"), " <br/>\n" },
        Written { "DataWithoutFormat", QStringLiteral("<noformat><![CDATA[a  <b>]]></noformat>"),
                  " <text>a  &lt;b></text>\n" },
        Written { "DataInABarcode", QStringLiteral("<barcode><![CDATA[46]]>00</barcode>"),
                  " <printer barcode=\"4600\" height=\"255\" op=\"barcode\" showmode=\"SHOW_DOWN\""
                  " type=\"EAN13\" width=\"2\"/>\n <br/>\n" },
        Written { "DeeperText", QStringLiteral("<f0>a<b>b<i>c</i></b>d</f0>"), textLine("left", "smaller", "abcd") },
        Written { "DeeperTextOfASize", QStringLiteral("<left><f2>a<b>b</b></f2></left>"),
                  textLine("left", "enlarge", "ab") },
        Written { "CommentWithinText", QStringLiteral("<noformat>a<!-- x -->b</noformat>"), " <text>ab</text>\n" },
        Written { "EmptyNoFormat", QStringLiteral("<noformat/>"), " <text></text>\n" },
        Written { "EmptySizeOfTheDocument", QStringLiteral("<f2/>"), textLine("left", "enlarge", "") },
        Written { "EmptyQrCode", QStringLiteral("<qrcode/>"),
                  " <printer barcode=\"\" op=\"barcode\" type=\"QR\"/>\n <br/>\n" }),
    [](const testing::TestParamInfo<Written>& row) { return row.param.name; });

// An argument of a log line is no format.
TEST(SlipLog, KeepsPlaceMarkersOfTheServer)
{
    SlipClient client;
    const LogRecorder log;

    client.fill(QStringLiteral("<doc><left>%1 %2 100%</left></doc>"));

    EXPECT_EQ(readable(log.lines()), "info vantiro: lastReport = <doc>\n <left>%1 %2 100%</left>\n</doc>\n");
}
