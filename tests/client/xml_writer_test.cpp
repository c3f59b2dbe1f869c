#include "client/xml_writer.h"

#include <QElapsedTimer>
#include <QThread>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>

using vantiro::writeXml;
using namespace Qt::StringLiterals;

namespace {

/// Fills the empty element `r`, which is the only child of the document.
using Fill = std::function<void(QDomDocument& document, QDomElement& r)>;

struct Written {
    const char* rule;
    Fill fill;
    const char* expected;
};

void PrintTo(const Written& row, std::ostream* out)
{
    *out << row.expected;
}

QDomDocument filled(const Fill& fill)
{
    QDomDocument document;
    QDomElement root = document.createElement(u"r"_s);
    document.appendChild(root);
    fill(document, root);
    return document;
}

/// A node put before the root.
void prepend(QDomDocument& document, const QDomNode& node)
{
    document.insertBefore(node, document.firstChild());
}

int warnings = 0;

/// Counts what is logged while it lives, and keeps it off the terminal.
class CountedWarnings {
public:
    CountedWarnings()
    {
        warnings = 0;
        before = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) { ++warnings; });
    }

    ~CountedWarnings()
    {
        qInstallMessageHandler(before);
    }

    CountedWarnings(const CountedWarnings&) = delete;
    CountedWarnings& operator=(const CountedWarnings&) = delete;

private:
    QtMessageHandler before = nullptr;
};

class WriteXml : public testing::TestWithParam<Written> { };

}

INSTANTIATE_TEST_SUITE_P(
    Elements, WriteXml,
    testing::Values(Written { "EmptyElementIsOneTag", [](QDomDocument&, QDomElement&) {}, "<r/>\n" },
                    Written { "ChildStandsOneBlankDeeper",
                              [](QDomDocument& d, QDomElement& r) {
                                  QDomElement child = d.createElement(u"a"_s);
                                  child.appendChild(d.createElement(u"b"_s));
                                  r.appendChild(child);
                                  r.appendChild(d.createElement(u"c"_s));
                              },
                              "<r>\n <a>\n  <b/>\n </a>\n <c/>\n</r>\n" },
                    Written { "NameKeepsItsPrefix",
                              [](QDomDocument& d, QDomElement& r) {
                                  QDomElement child = d.createElement(u"tem:cheque"_s);
                                  child.setAttribute(u"xmlns:tem"_s, u"http://tempuri.org/"_s);
                                  r.appendChild(child);
                              },
                              "<r>\n <tem:cheque xmlns:tem=\"http://tempuri.org/\"/>\n</r>\n" },
                    Written { "ElementWithAttributesAndChildren",
                              [](QDomDocument& d, QDomElement& r) {
                                  r.setAttribute(u"k"_s, u"v"_s);
                                  r.appendChild(d.createElement(u"a"_s));
                              },
                              "<r k=\"v\">\n <a/>\n</r>\n" },
                    Written { "AttributeWithoutValueIsEmpty",
                              [](QDomDocument&, QDomElement& r) { r.setAttribute(u"k"_s, QString()); },
                              "<r k=\"\"/>\n" }),
    [](const auto& row) { return std::string(row.param.rule); });

INSTANTIATE_TEST_SUITE_P(
    Escapes, WriteXml,
    testing::Values(
        Written { "TextEscapesMarkupAlone",
                  [](QDomDocument& d, QDomElement& r) { r.appendChild(d.createTextNode(u"<b> & \"q\" 'z'"_s)); },
                  "<r>&lt;b> &amp; \"q\" 'z'</r>\n" },
        Written { "AttributeEscapesItsQuotesToo",
                  [](QDomDocument&, QDomElement& r) { r.setAttribute(u"k"_s, u"<b> & \"q\" 'z'"_s); },
                  "<r k=\"&lt;b> &amp; &quot;q&quot; 'z'\"/>\n" },
        Written { "TextEscapesReturnAlone",
                  [](QDomDocument& d, QDomElement& r) { r.appendChild(d.createTextNode(u"a\r\n\tb"_s)); },
                  "<r>a&#xd;\n\tb</r>\n" },
        Written { "AttributeEscapesWhiteSpaceThatParsersTurnIntoBlanks",
                  [](QDomDocument&, QDomElement& r) { r.setAttribute(u"k"_s, u" a\r\n\tb "_s); },
                  "<r k=\" a&#xd;&#xa;&#x9;b \"/>\n" },
        Written { "TextEscapesTheEndOfASection",
                  [](QDomDocument& d, QDomElement& r) { r.appendChild(d.createTextNode(u"]]> ]> > ]]]> ]]>>"_s)); },
                  "<r>]]&gt; ]> > ]]]&gt; ]]&gt;></r>\n" },
        Written { "AttributeEscapesTheEndOfASection",
                  [](QDomDocument&, QDomElement& r) { r.setAttribute(u"k"_s, u"]]>]>"_s); }, "<r k=\"]]&gt;]>\"/>\n" },
        Written { "SectionEndOverTwoTextsIsNone",
                  [](QDomDocument& d, QDomElement& r) {
                      r.appendChild(d.createTextNode(u"]]"_s));
                      r.appendChild(d.createTextNode(u">"_s));
                  },
                  "<r>]]></r>\n" },
        Written { "EscapesAreEscapedAgain",
                  [](QDomDocument& d, QDomElement& r) { r.appendChild(d.createTextNode(u"&lt;&amp;&#xd;"_s)); },
                  "<r>&amp;lt;&amp;amp;&amp;#xd;</r>\n" },
        Written { "OtherLettersStay",
                  [](QDomDocument& d, QDomElement& r) {
                      r.setAttribute(u"k"_s, u"Сыр \U0001F9C0"_s);
                      r.appendChild(d.createTextNode(u"«\u00A0é» \U0001F600\u0001"_s));
                  },
                  "<r k=\"Сыр \U0001F9C0\">«\u00A0é» \U0001F600\u0001</r>\n" }),
    [](const auto& row) { return std::string(row.param.rule); });

INSTANTIATE_TEST_SUITE_P(
    Lines, WriteXml,
    testing::Values(
        Written { "TextStaysOnTheLineOfItsParent",
                  [](QDomDocument& d, QDomElement& r) { r.appendChild(d.createTextNode(u"t"_s)); }, "<r>t</r>\n" },
        Written { "EmptyTextKeepsBothTags",
                  [](QDomDocument& d, QDomElement& r) { r.appendChild(d.createTextNode(QString())); }, "<r></r>\n" },
        Written { "SectionIsNotEscapedAndStaysOnTheLine",
                  [](QDomDocument& d, QDomElement& r) { r.appendChild(d.createCDATASection(u"a]]&<\"\r\n>"_s)); },
                  "<r><![CDATA[a]]&<\"\r\n>]]></r>\n" },
        Written { "ElementBehindTextIsNotIndented",
                  [](QDomDocument& d, QDomElement& r) {
                      r.appendChild(d.createTextNode(u"t"_s));
                      r.appendChild(d.createElement(u"a"_s));
                      r.appendChild(d.createElement(u"b"_s));
                  },
                  "<r>t<a/>\n <b/>\n</r>\n" },
        Written { "ElementBeforeTextEndsNoLine",
                  [](QDomDocument& d, QDomElement& r) {
                      r.appendChild(d.createElement(u"a"_s));
                      r.appendChild(d.createElement(u"b"_s));
                      r.appendChild(d.createCDATASection(u"t"_s));
                  },
                  "<r>\n <a/>\n <b/><![CDATA[t]]></r>\n" },
        Written { "ParentOfTextBehindTextIsNotIndented",
                  [](QDomDocument& d, QDomElement& r) {
                      QDomElement child = d.createElement(u"a"_s);
                      child.appendChild(d.createElement(u"b"_s));
                      r.appendChild(d.createTextNode(u"t"_s));
                      r.appendChild(child);
                      r.appendChild(d.createTextNode(u"u"_s));
                  },
                  "<r>t<a>\n  <b/>\n </a>u</r>\n" }),
    [](const auto& row) { return std::string(row.param.rule); });

INSTANTIATE_TEST_SUITE_P(
    OtherNodes, WriteXml,
    testing::Values(
        Written { "CommentHasALineOfItsOwn",
                  [](QDomDocument& d, QDomElement& r) {
                      r.appendChild(d.createComment(u" a & <b> "_s));
                      r.appendChild(d.createElement(u"a"_s));
                  },
                  "<r>\n <!-- a & <b> -->\n <a/>\n</r>\n" },
        Written { "CommentBesideTextStaysOnItsLine",
                  [](QDomDocument& d, QDomElement& r) {
                      r.appendChild(d.createComment(u"a"_s));
                      r.appendChild(d.createTextNode(u"t"_s));
                      r.appendChild(d.createComment(u"b"_s));
                  },
                  "<r>\n <!--a-->t<!--b-->\n</r>\n" },
        Written { "CommentDoesNotEndInThreeHyphens",
                  [](QDomDocument& d, QDomElement& r) { r.appendChild(d.createComment(u"a-"_s)); },
                  "<r>\n <!--a- -->\n</r>\n" },
        Written { "InstructionIsNeverIndentedAndEndsItsLine",
                  [](QDomDocument& d, QDomElement& r) {
                      r.appendChild(d.createElement(u"a"_s));
                      r.appendChild(d.createProcessingInstruction(u"p"_s, u"x=\"<&\""_s));
                      r.appendChild(d.createTextNode(u"t"_s));
                      r.appendChild(d.createProcessingInstruction(u"q"_s, QString()));
                  },
                  "<r>\n <a/>\n<?p x=\"<&\"?>\nt<?q ?>\n</r>\n" },
        Written { "CommentsStandBesideTheRoot",
                  [](QDomDocument& d, QDomElement&) {
                      prepend(d, d.createComment(u"a"_s));
                      d.appendChild(d.createComment(u"b"_s));
                  },
                  "<!--a-->\n<r/>\n<!--b-->\n" },
        Written { "DeclarationStaysAsItIs",
                  [](QDomDocument& d, QDomElement&) {
                      prepend(d, d.createProcessingInstruction(u"xml"_s, u"version='1.0' encoding=\"UTF-8\""_s));
                  },
                  "<?xml version='1.0' encoding=\"UTF-8\"?>\n<r/>\n" },
        Written { "DeclaredEncodingChangesNoLetter",
                  [](QDomDocument& d, QDomElement& r) {
                      prepend(d, d.createProcessingInstruction(u"xml"_s, u"version='1.0' encoding='ISO-8859-1'"_s));
                      r.appendChild(d.createTextNode(u"Сыр"_s));
                  },
                  "<?xml version='1.0' encoding='ISO-8859-1'?>\n<r>Сыр</r>\n" }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(WriteXml, GivesTheText)
{
    const QDomDocument document = filled(GetParam().fill);

    EXPECT_EQ(writeXml(document).toStdString(), GetParam().expected);
    EXPECT_EQ(document.toString(1).toStdString(), GetParam().expected);
}

TEST(WriteXmlOfNothing, IsTheNullText)
{
    EXPECT_TRUE(writeXml(QDomDocument()).isNull());
}

TEST(WriteXmlDeclaration, OfAnUnknownEncodingIsWrittenInSilence)
{
    const QDomDocument document = filled([](QDomDocument& d, QDomElement&) {
        prepend(d, d.createProcessingInstruction(u"xml"_s, u"version='1.0' encoding='x-own'"_s));
    });
    const CountedWarnings counted;

    EXPECT_EQ(writeXml(document).toStdString(), "<?xml version='1.0' encoding='x-own'?>\n<r/>\n");
    EXPECT_EQ(warnings, 0);
    EXPECT_EQ(document.toString(1).toStdString(), writeXml(document).toStdString());
    EXPECT_EQ(warnings, 1); // so a warning would have been seen
}

TEST(WriteXmlDepth, IsNotForTheStackToDecide)
{
    constexpr int depth = 3000;
    QDomDocument document;
    QDomElement parent = document.createElement(u"e"_s);
    document.appendChild(parent);
    for (int level = 1; level < depth; ++level) {
        const QDomElement child = document.createElement(u"e"_s);
        parent.appendChild(child);
        parent = child;
    }
    QString expected;
    for (int level = 0; level < depth - 1; ++level) {
        expected += QString(level, u' ') + u"<e>\n"_s;
    }
    expected += QString(depth - 1, u' ') + u"<e/>\n"_s;
    for (int level = depth - 2; level >= 0; --level) {
        expected += QString(level, u' ') + u"</e>\n"_s;
    }

    QString text;
    const std::unique_ptr<QThread> thread(QThread::create([&] { text = writeXml(document); }));
    thread->setStackSize(256 * 1024); // toString needs some 6 MiB
    thread->start();
    thread->wait();

    EXPECT_TRUE(text == expected) << text.size() << " characters for " << expected.size();
}

TEST(WriteXmlTime, GrowsWithTheEscapesAndNotWithTheirSquare)
{
    constexpr qsizetype mebibyte = 1024 * 1024;
    constexpr int longest = 10'000; // ms; a square would take minutes, and the sanitizers do not take seconds
    const QDomDocument document = filled([](QDomDocument& d, QDomElement& r) {
        r.setAttribute(u"k"_s, QString(4 * mebibyte, u'\n'));
        r.appendChild(d.createTextNode(QString(4 * mebibyte, u'<')));
    });
    QElapsedTimer timer;
    timer.start();

    const QString text = writeXml(document);

    EXPECT_LT(timer.elapsed(), longest);
    EXPECT_EQ(text.size(), u"<r k=\"\"></r>\n"_s.size() + 4 * mebibyte * (5 + 4));
    EXPECT_EQ(text.count(u"&#xa;"_s), 4 * mebibyte);
    EXPECT_EQ(text.count(u"&lt;"_s), 4 * mebibyte);
}

TEST(WriteXmlOfElementsAlike, GivesWhatToStringGives)
{
    const QDomDocument document = filled([](QDomDocument& d, QDomElement& r) {
        const auto add = [&](const QString& element, const QStringList& attributes) {
            QDomElement child = d.createElement(element);
            for (const QString& name : attributes) {
                child.setAttribute(name, name + QString::number(r.childNodes().size()));
            }
            r.appendChild(child);
        };
        add(u"line"_s, { u"no"_s, u"price"_s, u"sum"_s, u"points"_s });
        add(u"line"_s, { u"no"_s, u"price"_s, u"sum"_s, u"points"_s });
        add(u"line"_s, { u"no"_s, u"price"_s, u"sum"_s, u"bonus"_s }); // as many, and not the same
        add(u"card"_s, { u"no"_s, u"price"_s, u"sum"_s, u"points"_s });
        add(u"line"_s, { u"no"_s, u"price"_s, u"sum"_s, u"points"_s, u"bonus"_s });
        add(u"line"_s, { u"no"_s, u"price"_s });
    });
    const QString text = writeXml(document);

    EXPECT_EQ(text.toStdString(), document.toString(1).toStdString());
    EXPECT_EQ(text.count(u"<line "_s), 5);
    EXPECT_EQ(text.count(u" points=\"points"_s), 4);
    EXPECT_EQ(text.count(u" bonus=\"bonus"_s), 2);
}

TEST(WriteXmlOfElementsAlike, GivesEachItsOwnValuesHoweverManyKindsThereAre)
{
    constexpr int kinds = 40;
    const QDomDocument document = filled([](QDomDocument& d, QDomElement& r) {
        for (int i = 0; i < 2 * kinds; ++i) {
            QDomElement child = d.createElement(u"e"_s + QString::number(i % kinds));
            for (const QString& name : { u"a"_s, u"b"_s, u"c"_s, u"d"_s }) {
                child.setAttribute(name, i);
            }
            r.appendChild(child);
        }
    });
    const QString text = writeXml(document);

    EXPECT_EQ(text.toStdString(), document.toString(1).toStdString());
    EXPECT_EQ(text.count(u"=\"79\""_s), 4);
}
