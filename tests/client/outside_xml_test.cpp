#include "tests/client/xml_reading_checks.h"

#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <ctime>
#include <ostream>

using vantiro::readOutsideXml;
using vantiro::XmlReading;
using xml_reading_checks::expectRead;
using xml_reading_checks::expectRefused;
using namespace Qt::StringLiterals;
using namespace std::string_literals;

namespace {

struct Row {
    const char* rule;
    QString text;
    const char* errorText = nullptr;
    int line = 0;
    int column = 0;
};

void PrintTo(const Row& row, std::ostream* out)
{
    *out << row.text.left(200).toStdString();
}

const auto nameOf = [](const auto& info) { return std::string(info.param.rule); };

class ReadXml : public testing::TestWithParam<Row> { };
class RefusedXml : public testing::TestWithParam<Row> { };
class ParserRefusal : public testing::TestWithParam<Row> { };

constexpr int mebibyte = 1024 * 1024;
constexpr const char* documentType = "document type declaration is not allowed";
constexpr const char* declaration = "markup declaration is not allowed";
constexpr const char* malformedStart = "XML declaration is malformed";
constexpr const char* lateStart = "XML declaration is not at the start of the document";
constexpr const char* hyphens = "\"--\" is not allowed inside a comment";
constexpr const char* bracket = "\"<\" is not allowed inside a tag";
constexpr const char* malformedReference = "character reference is malformed";
constexpr const char* openTag = "tag is not closed";
constexpr const char* noElement = "document has no element";
constexpr const char* outsideText = "text is not allowed outside the root element";

[[nodiscard]] QString nested(int levels, const QString& innermost = QString())
{
    return u"<a>"_s.repeated(levels) + innermost + u"</a>"_s.repeated(levels);
}

[[nodiscard]] QString withAttributes(int count)
{
    QString element = u"<a"_s;
    for (int number = 0; number < count; ++number) {
        element += number % 2 == 0 ? u" b%1=\"\""_s.arg(number) : u" b%1='>'"_s.arg(number);
    }
    return element + u"/>"_s;
}

const QString mark = QString(QChar(0xFEFF));

constexpr const char* tooManyParts = "document has too many parts";

[[nodiscard]] QString withParts(const QString& part, int count, const QString& last = {})
{
    return u"<r>"_s + part.repeated(count) + last + u"</r>"_s;
}

}

INSTANTIATE_TEST_SUITE_P(
    Forms, ReadXml,
    testing::Values(
        Row { "Reply",
              u"<s:Envelope xmlns:s=\"http://schemas.xmlsoap.org/soap/envelope/\"><s:Body><A>1</A></s:Body>"
              "</s:Envelope>"_s },
        Row { "Declaration", u"<?xml version=\"1.0\" encoding=\"utf-8\" standalone='yes' ?>\n<a/>\n"_s },
        Row { "DeclarationAcrossLines", u"<?xml\tversion = '1.0'\r\n encoding\n=\n'utf-8'?><a/>"_s },
        Row { "Stylesheet", u"<?xml-stylesheet href=\"a>b\"?><a/>"_s },
        Row { "CyrillicNames", u"<Чек Сумма=\"1,50\">Скидка</Чек>"_s },
        Row { "WhiteSpaceBetweenElements", u"<a>\n <b> </b>\t<c>x</c>\r\n y </a>"_s },
        Row { "LineEnds", u"<a b='1\r\n2\n3\r4'>1\r\n2\n3\r4</a >\r\n"_s },
        Row { "References", u"<a b='&lt;&quot;&#x416;'>&amp;&lt;&gt;&apos;&quot;&#1046;&#x1F600;&#13;</a>"_s },
        Row { "LateInstructionAndComment", u"<a/><?p?> <!-- x -->\n"_s },
        Row { "AllowedCharacters", u"<a>\t\u007F\u0085\u2028\uD7FF\uE000\uFFFD\U00010000\U0010FFFF</a>"_s }),
    nameOf);

// Looks like markup, or like an end or a quote that is missing, and is nothing but data.
INSTANTIATE_TEST_SUITE_P(
    Disguises, ReadXml,
    testing::Values(Row { "DocumentTypeInComment", u"<!-- <!DOCTYPE a> --><a><!--<!DOCTYPE a>--></a>"_s },
                    Row { "DocumentTypeInData", u"<a><![CDATA[<!DOCTYPE a>]]></a>"_s },
                    Row { "DocumentTypeInInstruction", u"<?p <!DOCTYPE a> ?><a/>"_s },
                    Row { "DocumentTypeAsText", u"<a b=\"&lt;!DOCTYPE a>\">&lt;!DOCTYPE a></a>"_s },
                    Row { "CommentThatSeemsToEndAtOnce", u"<!--><!DOCTYPE a>--><a/>"_s },
                    Row { "CommentThatSeemsToEndAfterAHyphen", u"<!---><!DOCTYPE a>--><a/>"_s },
                    Row { "HyphensInComment", u"<a><!-- - -> <- ->--></a>"_s },
                    Row { "BracketsInData", u"<a><![CDATA[]] ]> <]]]]></a>"_s },
                    Row { "QuestionMarksInInstruction", u"<?p ? > \" ?\?><a/>"_s },
                    Row { "QuotesOutsideTags", u"<!-- \" --><a>'<b/>\"<![CDATA[']]><?p \"?></a>"_s },
                    Row { "QuotesInQuotes", u"<a b=\"'\" c='\"'><d e='/>'/><f g=\">\"></f></a>"_s },
                    Row { "ReferencesOutsideTexts", u"<?p &#x0x41;?><a><!--&#x0x41;--><![CDATA[&#x0x41;]]></a>"_s },
                    Row { "SlashBeforeTheEndOfAValue", u"<a b='/'><c d=\"/\"></c></a>"_s }),
    nameOf);

TEST_P(ReadXml, GivesWhatThePlainParserGives)
{
    QDomDocument plain;
    ASSERT_TRUE(static_cast<bool>(plain.setContent(GetParam().text)));

    for (const XmlReading& reading : { readOutsideXml(GetParam().text), readOutsideXml(GetParam().text.toUtf8()) }) {
        expectRead(reading);
        EXPECT_EQ(reading.document.toString(1).toStdString(), plain.toString(1).toStdString());
    }
}

INSTANTIATE_TEST_SUITE_P(
    DocumentTypes, RefusedXml,
    testing::Values(Row { "AtTheStart", u"<!DOCTYPE a><a/>"_s, documentType, 1, 1 },
                    Row { "AfterDeclaration", u"<?xml version='1.0'?>\r\n<!DOCTYPE a><a/>"_s, documentType, 2, 1 },
                    Row { "AfterTheRoot", u"<a/>\n\n  <!DOCTYPE a>"_s, documentType, 3, 3 },
                    Row { "AfterComment", u"<!----><!DOCTYPE a><a/>"_s, documentType, 1, 8 },
                    Row { "AfterInstructionWithQuote", u"<?p \"?><!DOCTYPE a>\"?><a/>"_s, documentType, 1, 8 },
                    Row { "AfterDataWithBrackets", u"<a><![CDATA[ ]]]]><!DOCTYPE a></a>"_s, documentType, 1, 19 },
                    Row { "AfterLooseEndOfData", u"<a>]]><!DOCTYPE a></a>"_s, documentType, 1, 7 },
                    Row { "AfterQuotesInQuotes", u"<a b='\"'\n><!DOCTYPE a></a>"_s, documentType, 2, 2 },
                    Row { "BetweenQuotesInText", u"<a>'\"<!DOCTYPE a>\"'</a>"_s, documentType, 1, 6 },
                    Row { "InLowerCase", u"<!doctype a><a/>"_s, declaration, 1, 1 },
                    Row { "WithBlank", u"<a>\r<! DOCTYPE a></a>"_s, declaration, 2, 1 },
                    Row { "Conditional", u"<a><![IGNORE[<!DOCTYPE a>]]></a>"_s, declaration, 1, 4 },
                    Row { "DataOutsideTheRoot", u"<![CDATA[<!DOCTYPE a>]]><a/>"_s, declaration, 1, 1 },
                    Row { "InAValue", u"<a b=\"<!DOCTYPE a>\"/>"_s, bracket, 1, 7 },
                    Row { "InAStartTag", u"<a <!DOCTYPE a>></a>"_s, bracket, 1, 4 },
                    Row { "InAnEndTag", u"<a></a <!DOCTYPE a>>"_s, bracket, 1, 8 },
                    Row { "BehindThreeHyphens", u"<!-- ---><!DOCTYPE a><a/>"_s, hyphens, 1, 6 }),
    nameOf);

// To the parser the prefix that C++ writes before a hexadecimal number is part of the digits.
INSTANTIATE_TEST_SUITE_P(
    References, RefusedXml,
    testing::Values(Row { "PrefixInText", u"<a>1\n&#x0x41;</a>"_s, malformedReference, 2, 1 },
                    Row { "UpperCasePrefix", u"<a>&lt;&#x0X41;</a>"_s, malformedReference, 1, 8 },
                    Row { "PrefixInAValue", u"<a b='&#x30;' c=\"-&#x0x41;\"/>"_s, malformedReference, 1, 19 },
                    Row { "PrefixBehindAnElement", u"<a><b/>&#x0xA;</a>"_s, malformedReference, 1, 8 }),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Declarations, RefusedXml,
    testing::Values(
        // The parser reads quoted values here, so the first "?>" is not the end.
        Row { "EndInAValue", u"<?xml version=\"?><!-- \"?><!DOCTYPE a> --><a/>"_s, malformedStart, 1, 1 },
        Row { "EndInALateValue", u"<a><?xml version=\"?><!-- \"?></a>"_s, lateStart, 1, 4 },
        Row { "BlankBefore", u" <?xml version='1.0'?><a/>"_s, lateStart, 1, 2 },
        Row { "UpperCase", u"<?XML version='1.0'?><a/>"_s, lateStart, 1, 1 },
        Row { "LateWithoutContent", u"<a><?xml?></a>"_s, lateStart, 1, 4 },
        Row { "Second", u"<?xml version='1.0'?><?xml version='1.0'?><a/>"_s, lateStart, 1, 22 },
        Row { "Reference", u"<?xml version='1.0' encoding='&#x75;tf-8'?><a/>"_s, malformedStart, 1, 1 },
        Row { "NoBlankBetween", u"<?xml version='1.0'encoding='utf-8'?><a/>"_s, malformedStart, 1, 1 },
        Row { "MarkerForEncoding", u"<?xml version='1.0' encoding='%1'?><a/>"_s, "%1 is an invalid encoding name.", 1,
              35 },
        Row { "NotClosed", u"<?xml version='1.0'"_s, malformedStart, 1, 1 }),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Unfinished, RefusedXml,
    testing::Values(Row { "Empty", u""_s, noElement, 1, 1 }, Row { "Null", QString(), noElement, 1, 1 },
                    Row { "WhiteSpace", u" \r\n\t"_s, noElement, 2, 2 }, Row { "MarkAlone", mark, noElement, 1, 1 },
                    Row { "PlainSentence", u"Спасибо"_s, outsideText, 1, 1 },
                    Row { "TextAfterTheRoot", u"<a/>\nx"_s, outsideText, 2, 1 },
                    Row { "Element", u"<a>\n<b></b>"_s, "document ends inside an element", 2, 8 },
                    Row { "ElementAtAReturn", u"<a>\r"_s, "document ends inside an element", 2, 1 },
                    Row { "Comment", u"<a>\n <!-- x --"_s, hyphens, 2, 9 },
                    Row { "CommentWithoutHyphens", u"<a>\n <!-- x"_s, "comment is not closed", 2, 2 },
                    Row { "CommentOfHalfAnEnd", u"<a><!--->"_s, "comment is not closed", 1, 4 },
                    Row { "Data", u"<a><![CDATA[ x ]]"_s, "CDATA section is not closed", 1, 4 },
                    Row { "Instruction", u"<a><?p x ?"_s, "processing instruction is not closed", 1, 4 },
                    Row { "InstructionOfOneMark", u"<?>"_s, "processing instruction is not closed", 1, 1 },
                    Row { "StartTag", u"<a><b c='d' "_s, openTag, 1, 4 },
                    Row { "Value", u"<a><b c='d\">"_s, openTag, 1, 4 }, Row { "EndTag", u"<a></a"_s, openTag, 1, 4 },
                    Row { "EndTagTooMany", u"<a></a></a>"_s, "end tag without a start tag", 1, 8 }),
    nameOf);

INSTANTIATE_TEST_SUITE_P(Limits, RefusedXml,
                         testing::Values(Row { "LevelTooMany", nested(257), "elements are nested too deeply", 1, 769 },
                                         Row { "EmptyElementTooDeep", nested(256, u"\n<b/>"_s),
                                               "elements are nested too deeply", 2, 1 },
                                         Row { "AttributeTooMany", u"<r>\n"_s + withAttributes(65) + u"</r>"_s,
                                               "element has too many attributes", 2, 478 }),
                         nameOf);

// The root and 199,998 parts within it, then the element that makes the next two.
INSTANTIATE_TEST_SUITE_P(
    Parts, RefusedXml,
    testing::Values(Row { "ElementTooMany", withParts(u"<a/>"_s, 199'999, u"<b/>"_s), tooManyParts, 1, 800'000 },
                    Row { "ChildTooMany", withParts(u"<a/>"_s, 199'998, u"<b><c/></b>"_s), tooManyParts, 1, 799'999 },
                    Row { "AttributeOneTooMany", withParts(u"<a/>"_s, 199'998, u"<b c='d'/>"_s), tooManyParts, 1, 800'001 },
                    Row { "CommentTooMany", withParts(u"<!---->"_s, 199'999, u"<!---->"_s), tooManyParts, 1, 1'399'997 },
                    Row { "InstructionTooMany", withParts(u"<?p?>"_s, 199'999, u"<?p?>"_s), tooManyParts, 1, 999'999 },
                    Row { "DataTooMany", withParts(u"<![CDATA[]]>"_s, 199'999, u"<![CDATA[]]>"_s), tooManyParts, 1,
                          2'399'992 }),
    nameOf);

TEST(OutsideXml, AsManyPartsAsAllowedAreRead)
{
    expectRead(readOutsideXml(withParts(u"<a/>"_s, 199'999)));
    expectRead(readOutsideXml(withParts(u"<a/>"_s, 199'997, u"<b c='d'/>"_s)));
}

TEST_P(RefusedXml, IsReportedWhereItStands)
{
    expectRefused(readOutsideXml(GetParam().text), GetParam().errorText, GetParam().line, GetParam().column);
}

TEST(OutsideXml, LimitsThemselvesAreAllowed)
{
    expectRead(readOutsideXml(nested(255)));
    expectRead(readOutsideXml(nested(256)));
    expectRead(readOutsideXml(nested(255, u"<b/><b/>"_s)));
    expectRead(readOutsideXml(withAttributes(63)));
    expectRead(readOutsideXml(withAttributes(64)));
    expectRead(readOutsideXml(u"<a>ж</a>"_s.leftJustified(8 * mebibyte, u' ')));
    expectRead(readOutsideXml(QByteArray("<a>\xD0\xB6</a>").leftJustified(8 * mebibyte, ' ')));
    expectRead(readOutsideXml(QByteArray("<a>\xD0\xB6</a>").leftJustified(8 * mebibyte - 1, ' ')));
}

TEST(OutsideXml, TextTooLongIsRefused)
{
    expectRefused(readOutsideXml(u"<a>ж</a>"_s.leftJustified(8 * mebibyte + 1, u' ')), "document is too large");
    expectRefused(readOutsideXml(QByteArray("<a>\xD0\xB6</a>").leftJustified(8 * mebibyte + 1, ' ')),
                  "document is too large");
}

// The tree is part of what the callers rest on: no text of nothing but white space, names with their prefixes.
TEST(OutsideXml, TreeIsThatOfAPlainParse)
{
    const QByteArray bytes = "<s:A>\r\n <B c='&lt;\r\n'> x\r\ny<![CDATA[<&]]></B>\n\t<B> </B>\n</s:A>";
    const XmlReading reading = readOutsideXml(bytes);
    expectRead(reading);
    const QDomElement root = reading.document.documentElement();
    EXPECT_EQ(root.tagName(), u"s:A"_s);
    EXPECT_EQ(root.childNodes().size(), 2);
    EXPECT_EQ(root.firstChildElement(u"B"_s).attribute(u"c"_s), u"< "_s);
    EXPECT_EQ(root.firstChildElement(u"B"_s).text(), u" x\ny<&"_s);
    EXPECT_FALSE(root.lastChildElement(u"B"_s).hasChildNodes());
}

TEST(OutsideXml, LimitsCountPerElementAndPath)
{
    const QString wide = withAttributes(64).repeated(3) + nested(200).repeated(3);
    expectRead(readOutsideXml(u"<r>"_s + wide + u"</r>"_s));
}

TEST(OutsideXml, ForbiddenCharacterIsRefusedEverywhere)
{
    const QStringList places {
        u"<a>%1</a>"_s, u"<a b='%1'/>"_s,  u"<a><!--%1--></a>"_s, u"<a><?p %1?></a>"_s, u"<a%1 b='c'/>"_s,
        u"<a></a%1>"_s, u"<a %1b='c'/>"_s, u"<a b='c' %1/>"_s,    u"<a b%1='c'></a>"_s, u"<a><![CDATA[%1]]></a>"_s
    };
    QStringList forbidden;
    for (const std::u16string& alone :
         { u"\xFFFE"s, u"\xFFFF"s, u"\xD800"s, u"\xDC00"s, u"\xDBFF\xDBFF"s, u"\xDC00\xD800"s }) {
        forbidden.append(QStringView(alone).toString());
    }
    for (ushort code = 0; code < 0x20; ++code) {
        if (code != 0x09 && code != 0x0A && code != 0x0D) {
            forbidden.append(QString(QChar(code)));
        }
    }
    ASSERT_EQ(forbidden.size(), 35);
    expectRefused(readOutsideXml(QByteArray("<a>\r\n1\0002</a>", 11)), "character U+0000 is not allowed", 2, 2);
    for (const QString& place : places) {
        for (const QString& character : forbidden) {
            const QString code = QString::number(character.at(0).unicode(), 16).toUpper().rightJustified(4, u'0');
            SCOPED_TRACE(place.toStdString() + code.toStdString());
            expectRefused(readOutsideXml(QString(place).replace(u"%1"_s, character)),
                          u"character U+"_s + code + u" is not allowed"_s, 1, place.indexOf(u"%1"_s) + 1);
        }
    }
}

// To the parser an unpaired surrogate becomes a question mark, and the tag an instruction.
TEST(OutsideXml, SurrogateCannotMakeAnInstruction)
{
    const QString text = u"<"_s + QChar(0xD800) + u"p x='?><!DOCTYPE a><a b='/>"_s;
    expectRefused(readOutsideXml(text), "character U+D800 is not allowed", 1, 2);
}

INSTANTIATE_TEST_SUITE_P(
    Faults, ParserRefusal,
    testing::Values(Row { "WrongEndTag", u"<a>\n<b>x</b><c></a></c>"_s }, Row { "SecondRoot", u"<a/><b/>"_s },
                    Row { "AttributeTwice", u"<a b='1' b='2'/>"_s }, Row { "MarkerInTag", u"<a %1='2'/>"_s },
                    Row { "MarkerInEndTag", u"<a>%1</a%1>"_s }, Row { "UnknownEntity", u"<a>1&nbsp;000</a>"_s },
                    Row { "NulReference", u"<a>&#0;</a>"_s }, Row { "SurrogateReference", u"<a>&#xD800;</a>"_s },
                    Row { "ReferenceTooHigh", u"<a>&#x110000;</a>"_s },
                    Row { "ReferenceOf33Bits", u"<a>&#4294967361;</a>"_s },
                    Row { "ReferenceToNoCharacter", u"<a>&#xFFFE;</a>"_s },
                    Row { "ReferenceToAControlCharacter", u"<a b='&#x1F;'/>"_s },
                    Row { "ReferenceWithASign", u"<a>&#+65;</a>"_s },
                    Row { "ReferenceWithABlank", u"<a>&#x 41;</a>"_s },
                    Row { "ReferenceInUpperCase", u"<a>&#X41;</a>"_s },
                    Row { "ReferenceWithoutDigits", u"<a>&#x;</a>"_s }, Row { "EndOfData", u"<a>]]></a>"_s },
                    Row { "BareValue", u"<a b=1/>"_s }, Row { "QuoteInEndTag", u"<r><a></a '>'></r>"_s },
                    Row { "SlashApart", u"<a / >x</a>"_s }, Row { "OtherVersion", u"<?xml version='1.1'?><a/>"_s }),
    nameOf);

TEST_P(ParserRefusal, IsToldInTheParsersWords)
{
    QXmlStreamReader parser(GetParam().text);
    parser.setNamespaceProcessing(false);
    while (!parser.atEnd()) {
        parser.readNext();
    }
    ASSERT_TRUE(parser.hasError());

    expectRefused(readOutsideXml(GetParam().text), parser.errorString(), parser.lineNumber(), parser.columnNumber());
}

TEST(OutsideXml, ErrorTextStaysShort)
{
    const QString name = QString(1'000'000, u'b');
    const QString text = u"<?xml version='1.0' encoding='%1%'?><a/>"_s.arg(name);
    expectRefused(readOutsideXml(text.toUtf8()), u"encoding is not supported: "_s + name.left(229), 1, 1);
    EXPECT_EQ(readOutsideXml(text).errorText, name.left(256));
}

TEST(OutsideXml, HostileTextIsRefusedWithinASecond)
{
    const QString growing = u"<!DOCTYPE a [<!ENTITY e '%1'>]><a>%2</a>"_s;
    const QStringList attacks { u"<a>"_s + QString(50'000'000, u'x') + u"</a>"_s,
                                nested(100'000),
                                withAttributes(50'000),
                                growing.arg(QString(4000, u'x'), u"&e;"_s.repeated(400'000)),
                                u"<a/>"_s + QString(2'000'000, u'\n') + u"<!DOCTYPE a>"_s,
                                u"<!--"_s + u" -"_s.repeated(1'000'000),
                                u"<a><![CDATA["_s + QString(2'000'000, u']'),
                                u"<?p"_s + QString(2'000'000, u'?'),
                                u"<?xml"_s + QString(2'000'000, u' ') };
    for (const QString& attack : attacks) {
        SCOPED_TRACE(attack.left(50).toStdString());
        const QByteArray bytes = attack.toUtf8();
        const std::clock_t start = std::clock(); // processor time: other work on the machine does not count
        const XmlReading fromText = readOutsideXml(attack);
        const XmlReading fromBytes = readOutsideXml(bytes);
        const std::clock_t duration = std::clock() - start;
        EXPECT_FALSE(fromText.ok || fromBytes.ok);
        EXPECT_TRUE(fromText.document.isNull() && fromBytes.document.isNull());
        EXPECT_LT(duration, CLOCKS_PER_SEC);
    }
}
