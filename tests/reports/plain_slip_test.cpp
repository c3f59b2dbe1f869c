#include "tests/support/sorted_attributes.h"
#include "tests/reports/slip_client.h"
#include "tests/support/log_recorder.h"

#include <QXmlStreamReader>

#include <gtest/gtest.h>

namespace {

/// The texts of the print form, each element `text` one; a failure of the test when there is anything else in it.
QStringList textsOf(const QString& printForm)
{
    QStringList texts;
    QXmlStreamReader reader(printForm);
    EXPECT_TRUE(reader.readNextStartElement()) << readable(printForm);
    EXPECT_EQ(readable(reader.name().toString()), "report");
    while (reader.readNextStartElement()) {
        EXPECT_EQ(readable(reader.name().toString()), "text");
        EXPECT_TRUE(reader.attributes().isEmpty());
        texts.append(reader.readElementText());
    }
    EXPECT_FALSE(reader.hasError()) << readable(reader.errorString());
    return texts;
}

const QString wholeSlip = QStringLiteral(R"(<?xml version="1.0" encoding="utf-8"?>
<!-- чек № 5 -->
<doc>
 <center><f2>Магазин «Вантиро»</f2></center>
 <line symbols="-="/>
 <pair left="Списано" right="10.00"/>
 <left>Баланс: <f1>123.45</f1> баллов &gt; 100</left>
 <br/>
 <barcode>4600051000057</barcode>
 <qrcode><![CDATA[https://vantiro.example/?a=1&b=2]]></qrcode>
 <noformat>Спасибо &#8212; ждём!</noformat>
</doc>)");

}

TEST(PlainSlip, PrintsAsItCame)
{
    SlipClient client;
    const LogRecorder log;

    client.fill(QStringLiteral("Спасибо за покупку!"));

    EXPECT_EQ(client.waiting(), "<doc>\n <noformat>Спасибо за покупку!</noformat>\n</doc>\n");
    EXPECT_EQ(readable(sortedAttributes(client.getReport())), report(" <text>Спасибо за покупку!</text>\n"));
    EXPECT_EQ(readable(log.lines()),
              "info vantiro: lastReport = <doc>\n <noformat>Спасибо за покупку!</noformat>\n</doc>\n");
}

TEST(PlainSlip, KeepsItsEscapesAndLines)
{
    SlipClient client;

    client.fill(QStringLiteral("Tom &amp; Jerry &lt;3\n  100% %1 &#xD; конец"));

    EXPECT_EQ(textsOf(client.getReport()),
              QStringList { QStringLiteral("Tom &amp; Jerry &lt;3\n  100% %1 &#xD; конец") });
}

TEST(PlainSlip, IsNotGivenOutAsSeveral)
{
    SlipClient client;
    client.fill(QStringLiteral("Спасибо"));
    const LogRecorder log;

    EXPECT_TRUE(client.getReports().isEmpty());

    EXPECT_EQ(readable(log.lines()), "error vantiro: Ошибка преобразования отчёта от Vantiro");
    EXPECT_TRUE(client.lastReport.isNull());
}

// Unescaping takes away the one escape that the ampersand needs, so such a slip is no XML.
TEST(PlainSlip, SlipWithAnAmpersandPrintsAsItCame)
{
    SlipClient client;

    client.fill(QStringLiteral("<doc><left>Том &amp; Ко</left></doc>"));

    EXPECT_EQ(textsOf(client.getReport()), QStringList { QStringLiteral("<doc><left>Том &amp; Ко</left></doc>") });
}

TEST(DamagedSlip, WholeOneIsNoPlainText)
{
    SlipClient client;

    client.fill(wholeSlip);

    EXPECT_EQ(readable(sortedAttributes(client.getReport())),
              report(textLine("center", "enlarge", "Магазин «Вантиро»")
                     + " <text fillsymbol=\"-=\" maxwidth=\"all\"/>\n" + textLine("center", "smaller", "Списано 10.00")
                     + textLine("left", "smaller", "Баланс: ") + textLine("left", "normal", "123.45")
                     + textLine("left", "smaller", " баллов > 100") + " <br/>\n"
                     + " <printer barcode=\"4600051000057\" height=\"255\" op=\"barcode\" showmode=\"SHOW_DOWN\""
                       " type=\"EAN13\" width=\"2\"/>\n <br/>\n"
                       " <printer barcode=\"https://vantiro.example/?a=1&amp;b=2\" op=\"barcode\" type=\"QR\"/>\n"
                       " <br/>\n"
                       " <text>Спасибо — ждём!</text>\n"));
}

TEST(DamagedSlip, CutAnywherePrintsAsThePlainTextThatCame)
{
    SlipClient client;

    for (qsizetype length = 1; length < wholeSlip.size(); ++length) {
        const QString cut = wholeSlip.left(length);
        client.fill(cut);
        const QString printed = client.getReport();
        ASSERT_EQ(readable(textsOf(printed)), readable(cut)) << "cut after " << length << " characters";
    }
}

TEST(DamagedSlip, WithOneCharacterGoneIsEitherReadOrPrintedWhole)
{
    SlipClient client;
    int printedWhole = 0;

    for (qsizetype at = 0; at < wholeSlip.size(); ++at) {
        const QString damaged = QString(wholeSlip).remove(at, 1);
        client.fill(damaged);
        const bool plain = client.waiting().find("<noformat>&lt;") != std::string::npos;
        const QString printed = client.getReport();
        if (plain) {
            ++printedWhole;
            ASSERT_EQ(readable(textsOf(printed)), readable(damaged)) << "without the character at " << at;
        } else {
            ASSERT_FALSE(printed.contains(QStringLiteral("<text>&lt;"))) << "without the character at " << at;
        }
    }

    EXPECT_GT(printedWhole, 100);
}

// What a failed reading leaves behind in a document must not get between the plain text.
TEST(DamagedSlip, LeavesNothingOfItsReadablePart)
{
    SlipClient client;

    client.fill(QStringLiteral("<doc><left>half</left>"));

    EXPECT_EQ(client.waiting(), "<doc>\n <noformat>&lt;doc>&lt;left>half&lt;/left></noformat>\n</doc>\n");
}

TEST(DamagedSlip, LeavesNothingOfTheSlipBeforeIt)
{
    SlipClient client;

    client.fill(QStringLiteral("<docs><a><doc><left>before</left></doc></a></docs>"));
    client.fill(QStringLiteral("<doc><left>half</left>"));

    EXPECT_EQ(client.waiting(), "<doc>\n <noformat>&lt;doc>&lt;left>half&lt;/left></noformat>\n</doc>\n");
}

TEST(HostileSlip, WithDocumentTypePrintsAsPlainText)
{
    SlipClient client;
    const QString slip = QStringLiteral(
        "<!DOCTYPE doc [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;\">]><doc><left>&b;</left></doc>");

    client.fill(slip);

    EXPECT_EQ(textsOf(client.getReport()), QStringList { slip });
}

TEST(HostileSlip, WithEmptyDocumentTypePrintsAsPlainText)
{
    SlipClient client;
    const QString slip = QStringLiteral("<!DOCTYPE doc><doc><left>a</left></doc>");

    client.fill(slip);

    EXPECT_EQ(textsOf(client.getReport()), QStringList { slip });
}

// The log and the print form are written recursively: a slip of some thousand levels would end the till.
TEST(HostileSlip, NestedWithoutEndPrintsAsPlainText)
{
    SlipClient client;
    const QString slip = QStringLiteral("<doc>").repeated(20000) + QStringLiteral("</doc>").repeated(20000);

    client.fill(slip);

    EXPECT_EQ(textsOf(client.getReport()), QStringList { slip });
}
