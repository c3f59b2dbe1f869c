#include "tests/reports/slip_client.h"
#include "tests/support/log_recorder.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

struct Transformed {
    std::string name;
    QString content; // of `doc`
    std::string commands; // of `report`, attributes in the order of their names
};

void PrintTo(const Transformed& transformed, std::ostream* out)
{
    *out << transformed.content.toStdString();
}

class Transformation : public testing::TestWithParam<Transformed> { };

}

TEST_P(Transformation, GivesTheCommands)
{
    const SlipClient client;
    const LogRecorder log;

    EXPECT_EQ(client.printForm(QStringLiteral("<doc>") + GetParam().content + QStringLiteral("</doc>")),
              report(GetParam().commands));
    EXPECT_EQ(readable(log.lines()), "");
}

INSTANTIATE_TEST_SUITE_P(
    Blocks, Transformation,
    testing::Values(
        Transformed { "LeftText", QStringLiteral("<left>abc</left>"), textLine("left", "smaller", "abc") },
        Transformed { "RightText", QStringLiteral("<right>abc</right>"), textLine("right", "smaller", "abc") },
        Transformed { "CenterText", QStringLiteral("<center>abc</center>"), textLine("center", "smaller", "abc") },
        Transformed { "TextAndEnlarged", QStringLiteral("<right>abc<f2>def</f2></right>"),
                      textLine("right", "smaller", "abc") + textLine("right", "enlarge", "def") },
        Transformed { "AllSizes", QStringLiteral("<center><f0>a</f0><f1>b</f1><f2>c</f2></center>"),
                      textLine("center", "smaller", "a") + textLine("center", "normal", "b")
                          + textLine("center", "enlarge", "c") },
        Transformed { "MixedInOrder", QStringLiteral("<left>a<f1>b</f1>c<f0>d</f0>e</left>"),
                      textLine("left", "smaller", "a") + textLine("left", "normal", "b")
                          + textLine("left", "smaller", "c") + textLine("left", "smaller", "d")
                          + textLine("left", "smaller", "e") },
        Transformed { "OtherElementsSkipped", QStringLiteral("<left><b>x</b><br/><F1>x</F1><line/>a</left>"),
                      textLine("left", "smaller", "a") },
        Transformed { "OtherNodesSkipped", QStringLiteral("<left><!-- x --><?x y?>a</left>"),
                      textLine("left", "smaller", "a") },
        Transformed { "EmptyBlock", QStringLiteral("<left/>"), "" },
        Transformed { "EmptySize", QStringLiteral("<left><f1/></left>"),
                      " <printer op=\"setfont\" size=\"normal\"/>\n <text align=\"left\" maxwidth=\"all\"></text>\n"
                      " <printer op=\"resetfont\"/>\n" },
        Transformed { "BlanksKept", QStringLiteral("<left>  a  b  </left>"), textLine("left", "smaller", "  a  b  ") },
        Transformed { "MarkupOfTextKept", QStringLiteral("<left>a &lt;b&gt; &amp;amp; %1</left>"),
                      textLine("left", "smaller", "a &lt;b> &amp;amp; %1") },
        Transformed { "Russian", QStringLiteral("<left>Спасибо — «Вантиро» ₽</left>"),
                      textLine("left", "smaller", "Спасибо — «Вантиро» ₽") }),
    [](const testing::TestParamInfo<Transformed>& tested) { return tested.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Lines, Transformation,
    testing::Values(
        Transformed { "Pair", QStringLiteral(R"(<pair left="Сумма" right="10.00"/>)"),
                      textLine("center", "smaller", "Сумма 10.00") },
        Transformed { "PairWithLeftAlone", QStringLiteral(R"(<pair left="A"/>)"), textLine("center", "smaller", "A ") },
        Transformed { "PairWithRightAlone", QStringLiteral(R"(<pair right="B"/>)"),
                      textLine("center", "smaller", " B") },
        Transformed { "PairWithNeither", QStringLiteral("<pair/>"), textLine("center", "smaller", " ") },
        Transformed { "PairIsNoFormat", QStringLiteral(R"(<pair left="50%2" right="%1"/>)"),
                      textLine("center", "smaller", "50%2 %1") },
        Transformed { "PairIgnoresItsText", QStringLiteral(R"(<pair left="A" right="B">x</pair>)"),
                      textLine("center", "smaller", "A B") },
        Transformed { "Rule", QStringLiteral(R"(<line symbols="-="/>)"),
                      " <text fillsymbol=\"-=\" maxwidth=\"all\"/>\n" },
        Transformed { "RuleOfBlanks", QStringLiteral("<line/>"), " <text fillsymbol=\" \" maxwidth=\"all\"/>\n" },
        Transformed { "RuleOfNothing", QStringLiteral(R"(<line symbols=""/>)"),
                      " <text fillsymbol=\"\" maxwidth=\"all\"/>\n" },
        Transformed { "Break", QStringLiteral("<br/>"), " <br/>\n" },
        Transformed { "Smaller", QStringLiteral("<f0>a</f0>"), textLine("left", "smaller", "a") },
        Transformed { "Normal", QStringLiteral("<f1>a</f1>"), textLine("left", "normal", "a") },
        Transformed { "Enlarged", QStringLiteral("<f2>a</f2>"), textLine("left", "enlarge", "a") },
        Transformed { "NoFormat", QStringLiteral("<noformat>a  b\nc</noformat>"), " <text>a  b\nc</text>\n" },
        Transformed { "Barcode", QStringLiteral("<barcode>4600051000057</barcode>"),
                      " <printer barcode=\"4600051000057\" height=\"255\" op=\"barcode\" showmode=\"SHOW_DOWN\""
                      " type=\"EAN13\" width=\"2\"/>\n <br/>\n" },
        Transformed { "QrCode", QStringLiteral("<qrcode>https://vantiro.example/?a=1&amp;b=2</qrcode>"),
                      " <printer barcode=\"https://vantiro.example/?a=1&amp;b=2\" op=\"barcode\" type=\"QR\"/>\n"
                      " <br/>\n" }),
    [](const testing::TestParamInfo<Transformed>& tested) { return tested.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Whole, Transformation,
    testing::Values(
        Transformed { "Nothing", QString(), "" },
        Transformed { "TextOfTheDocument", QStringLiteral("not printed<br/>nor this"), " <br/>\n" },
        Transformed { "UnknownElements", QStringLiteral("<b>x</b><doc><br/></doc><report/><text>y</text><printer/>"),
                      "" },
        Transformed { "TagsInOtherCase", QStringLiteral("<LEFT>x</LEFT><Br/><QRCode>1</QRCode><noFormat>x</noFormat>"),
                      "" },
        Transformed { "AttributesInOtherCase", QStringLiteral(R"(<pair Left="A" RIGHT="B"/><line Symbols="-"/>)"),
                      textLine("center", "smaller", " ") + " <text fillsymbol=\" \" maxwidth=\"all\"/>\n" },
        Transformed { "OtherNodes", QStringLiteral("<!-- x --><?x y?><br/>"), " <br/>\n" },
        Transformed {
            "EverythingInOrder",
            QStringLiteral("<center><f2>Магазин</f2></center><line symbols=\"-\"/><pair left=\"Баллы\" right=\"5\"/>"
                           "<br/><barcode>1</barcode><qrcode>2</qrcode><noformat>конец</noformat>"),
            textLine("center", "enlarge", "Магазин") + " <text fillsymbol=\"-\" maxwidth=\"all\"/>\n"
                + textLine("center", "smaller", "Баллы 5") + " <br/>\n"
                + " <printer barcode=\"1\" height=\"255\" op=\"barcode\" showmode=\"SHOW_DOWN\" type=\"EAN13\""
                  " width=\"2\"/>\n <br/>\n <printer barcode=\"2\" op=\"barcode\" type=\"QR\"/>\n <br/>\n"
                  " <text>конец</text>\n" }),
    [](const testing::TestParamInfo<Transformed>& tested) { return tested.param.name; });

TEST(TextLine, IsAppendedBehindWhatIsThere)
{
    const SlipClient client;
    QDomDocument document;
    QDomNode parent = document.appendChild(document.createElement(QStringLiteral("report")));
    parent.appendChild(document.createElement(QStringLiteral("br")));

    client.processXmlTextNode(document, parent, QStringLiteral("any"), QStringLiteral("anywhere"),
                              QStringLiteral("huge"));

    EXPECT_EQ(readable(document.toString(1)),
              "<report>\n <br/>\n" + textLine("anywhere", "huge", "any") + "</report>\n");
}

TEST(AlignedBlock, TakesItsTagForTheAlignment)
{
    const SlipClient client;
    QDomDocument document;
    QDomNode parent = document.appendChild(document.createElement(QStringLiteral("report")));
    const QDomDocument block = documentOf(QStringLiteral("<justify>a<f2>b</f2></justify>"));

    client.processXmlAlignNode(document, parent, block.documentElement());

    EXPECT_EQ(readable(document.toString(1)),
              "<report>\n" + textLine("justify", "smaller", "a") + textLine("justify", "enlarge", "b") + "</report>\n");
    EXPECT_EQ(readable(block.toString(-1)), "<justify>a<f2>b</f2></justify>");
}
