#include "tests/reports/slip_client.h"
#include "tests/support/log_recorder.h"

#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <ostream>

// A slip is money on paper: what cannot be read as XML is printed as it came, to the last character.

namespace {

struct Damage {
    const char* name;
    QString slip;
};

void PrintTo(const Damage& damage, std::ostream* out)
{
    *out << damage.slip.toStdString();
}

/// A slip with this between its lines.
QString around(const char16_t* middle)
{
    return QStringLiteral("<doc><left>Спасибо</left>") + QString::fromUtf16(middle)
        + QStringLiteral("<left>10.00</left></doc>");
}

/// A slip behind this declaration.
QString declared(const char* declaration)
{
    return QLatin1String(declaration) + QStringLiteral("<doc><left>Спасибо</left></doc>");
}

/// The text of the one element `text` of the print form, which must hold nothing else.
QString printedText(const QString& printForm)
{
    QXmlStreamReader reader(printForm);
    EXPECT_TRUE(reader.readNextStartElement());
    EXPECT_EQ(readable(reader.name().toString()), "report");
    EXPECT_TRUE(reader.readNextStartElement());
    EXPECT_EQ(readable(reader.name().toString()), "text");
    const QString text = reader.readElementText();
    EXPECT_FALSE(reader.readNextStartElement());
    EXPECT_FALSE(reader.hasError()) << readable(reader.errorString());
    return text;
}

class SlipDamage : public testing::TestWithParam<Damage> { };

}

TEST_P(SlipDamage, PrintsWhole)
{
    const LogRecorder log;
    SlipClient client;
    client.fill(QStringLiteral("<doc><left>a slip that nobody took</left></doc>"));

    client.fill(GetParam().slip);

    EXPECT_EQ(readable(printedText(client.getReport())), readable(GetParam().slip));
    EXPECT_TRUE(log.lines().filter(QStringLiteral("error ")).isEmpty()) << "a plain slip is no failure";
}

INSTANTIATE_TEST_SUITE_P(
    Tags, SlipDamage,
    testing::Values(Damage { "StartTagAlone", around(u"<left>") }, Damage { "EndTagAlone", around(u"</left>") },
                    Damage { "EndTagOfAnother", around(u"<left>a</right>") },
                    Damage { "EndTagInOtherCase", around(u"<left>a</Left>") },
                    Damage { "Crossed", around(u"<left><f1>a</left></f1>") }, Damage { "NotClosed", around(u"<br") },
                    Damage { "Nameless", around(u"<>a</>") }, Damage { "BlankBeforeTheName", around(u"< br/>") },
                    Damage { "SlashApart", around(u"<br / >") }, Damage { "NameFromADigit", around(u"<1br/>") },
                    Damage { "NameFromAHyphen", around(u"<-br/>") },
                    Damage { "AttributeInAnEndTag", around(u"<left>a</left b=\"c\">") },
                    Damage { "BareBracket", around(u"<left>1 < 2</left>") }),
    [](const testing::TestParamInfo<Damage>& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(Attributes, SlipDamage,
                         testing::Values(Damage { "Twice", around(u"<pair left=\"a\" left=\"b\"/>") },
                                         Damage { "WithoutQuotes", around(u"<pair left=a/>") },
                                         Damage { "WithoutValue", around(u"<pair left/>") },
                                         Damage { "WithoutEqualsSign", around(u"<pair left \"a\"/>") },
                                         Damage { "WithoutBlankBetween", around(u"<pair left=\"a\"right=\"b\"/>") },
                                         Damage { "WithOtherQuoteAtTheEnd", around(u"<pair left=\"a'/>") },
                                         Damage { "WithABracket", around(u"<pair left=\"<\"/>") },
                                         Damage { "WithABareAmpersand", around(u"<pair left=\"a & b\"/>") },
                                         Damage { "WithAnUnknownEntity", around(u"<pair left=\"&nbsp;\"/>") },
                                         Damage { "PartedByAHardBlank",
                                                  around(u"<pair left=\"a\"\u00A0right=\"b\"/>") }),
                         [](const testing::TestParamInfo<Damage>& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(References, SlipDamage,
                         testing::Values(Damage { "BareAmpersand", around(u"<left>Том & Ко</left>") },
                                         Damage { "UnknownEntity", around(u"<left>&nbsp;</left>") },
                                         Damage { "WithoutSemicolon", around(u"<left>&#65 </left>") },
                                         Damage { "WithoutNumber", around(u"<left>&#;</left>") },
                                         Damage { "WithACapitalX", around(u"<left>&#X41;</left>") },
                                         Damage { "OfNul", around(u"<left>&#0;</left>") },
                                         Damage { "OfAControlCharacter", around(u"<left>&#1;</left>") },
                                         Damage { "OfASurrogate", around(u"<left>&#xD800;</left>") },
                                         Damage { "OfNoCharacter", around(u"<left>&#xFFFE;</left>") },
                                         Damage { "BeyondTheLastCharacter", around(u"<left>&#x110000;</left>") }),
                         [](const testing::TestParamInfo<Damage>& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(Sections, SlipDamage,
                         testing::Values(Damage { "EndOfDataInText", around(u"<left>]]></left>") },
                                         Damage { "DataNotClosed", around(u"<![CDATA[a") },
                                         Damage { "DataInLowerCase", around(u"<![cdata[a]]>") },
                                         Damage { "DataBehindTheRoot", QStringLiteral("<doc/><![CDATA[a]]>") },
                                         Damage { "CommentNotClosed", around(u"<!-- a") },
                                         Damage { "HyphensInAComment", around(u"<!-- a -- b -->") },
                                         Damage { "HyphenBeforeTheEndOfAComment", around(u"<!-- a --->") },
                                         Damage { "InstructionNotClosed", around(u"<?p a") },
                                         Damage { "InstructionWithoutName", around(u"<? a?>") },
                                         Damage { "ConditionalSection", around(u"<![INCLUDE[a]]>") }),
                         [](const testing::TestParamInfo<Damage>& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Roots, SlipDamage,
    testing::Values(Damage { "Two", QStringLiteral("<doc><left>a</left></doc><doc><left>b</left></doc>") },
                    Damage { "WithTextBefore", QStringLiteral("Чек <doc><left>a</left></doc>") },
                    Damage { "WithTextBehind", QStringLiteral("<doc><left>a</left></doc> конец") },
                    Damage { "WithAReferenceBehind", QStringLiteral("<doc><left>a</left></doc>&#32;") },
                    Damage { "OnlyAComment", QStringLiteral("<!-- a -->") },
                    Damage { "OnlyADeclaration", QStringLiteral("<?xml version=\"1.0\"?>") }),
    [](const testing::TestParamInfo<Damage>& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Declarations, SlipDamage,
    testing::Values(
        Damage { "BehindABlank", declared(" <?xml version=\"1.0\"?>") },
        Damage { "Second", declared("<?xml version=\"1.0\"?><?xml version=\"1.0\"?>") },
        Damage { "Within", around(u"<?xml version=\"1.0\"?>") },
        Damage { "InCapitals", declared("<?XML version=\"1.0\"?>") },
        Damage { "WithoutVersion", declared("<?xml encoding=\"utf-8\"?>") },
        Damage { "OfAnotherVersion", declared("<?xml version=\"2.0\"?>") },
        Damage { "WithEncodingBeforeVersion", declared("<?xml encoding=\"utf-8\" version=\"1.0\"?>") },
        Damage { "WithEncodingTwice", declared("<?xml version=\"1.0\" encoding=\"utf-8\" encoding=\"utf-8\"?>") },
        Damage { "WithEncodingLast", declared("<?xml version=\"1.0\" standalone=\"no\" encoding=\"utf-8\"?>") },
        Damage { "WithStandaloneTwice", declared("<?xml version=\"1.0\" standalone=\"no\" standalone=\"no\"?>") },
        Damage { "WithStandaloneOfNeither", declared("<?xml version=\"1.0\" standalone=\"maybe\"?>") },
        Damage { "WithSomethingElse", declared("<?xml version=\"1.0\" charset=\"utf-8\"?>") },
        Damage { "WithoutBlankBetween", declared("<?xml version=\"1.0\"encoding=\"utf-8\"?>") }),
    [](const testing::TestParamInfo<Damage>& row) { return row.param.name; });
