#include "client/outside_xml.h"
#include "client/xml_writer.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>

#include <gtest/gtest.h>

#include <iostream>
#include <random>

using vantiro::readOutsideXml;
using vantiro::writeXml;
using vantiro::XmlReading;
using namespace Qt::StringLiterals;

namespace {

constexpr unsigned seed = 20240311;
constexpr int trees = 3000;

/// Trees of all nodes and texts that a request or a reply can hold, in any mixture.
class TreeGenerator {
public:
    explicit TreeGenerator(unsigned start)
        : numbers(start)
    {
    }

    [[nodiscard]] QDomDocument next()
    {
        QDomDocument document;
        if (below(3) == 0) {
            document.appendChild(document.createProcessingInstruction(u"xml"_s, oneOf(declarations)));
        }
        appendAside(document, document);
        QDomElement root = document.createElement(oneOf(names));
        document.appendChild(root);
        pieceCount = static_cast<int>(pieces.size()) - below(2);
        nodesLeft = below(60);
        fill(document, root, 0);
        appendAside(document, document);
        return document;
    }

private:
    [[nodiscard]] int below(int count)
    {
        return std::uniform_int_distribution<int>(0, count - 1)(numbers);
    }

    [[nodiscard]] QString oneOf(const QStringList& list)
    {
        return list.at(below(static_cast<int>(list.size())));
    }

    [[nodiscard]] QString text()
    {
        QString result;
        for (int count = below(8); count > 0; --count) {
            result += pieces.at(below(pieceCount));
        }
        return result;
    }

    /// What may stand outside of the root, too.
    void appendAside(QDomDocument& document, QDomNode& parent)
    {
        for (int count = below(3); count > 0; --count) {
            if (below(2) == 0) {
                parent.appendChild(document.createComment(text().remove(u"--"_s)));
            } else {
                parent.appendChild(document.createProcessingInstruction(oneOf(names), text().remove(u"?>"_s)));
            }
        }
    }

    void fill(QDomDocument& document, QDomElement& element, int depth)
    {
        for (int count = below(3) == 0 ? below(64) : below(6); count > 0; --count) {
            element.setAttribute(below(2) == 0 ? oneOf(names) : u"k%1"_s.arg(below(100)), text());
        }
        for (int count = below(6); count > 0 && nodesLeft > 0; --count, --nodesLeft) {
            switch (below(8)) {
            case 0:
            case 1:
                element.appendChild(document.createTextNode(text()));
                break;
            case 2:
                element.appendChild(document.createCDATASection(text().remove(u"]]>"_s)));
                break;
            case 3:
                appendAside(document, element);
                break;
            default: {
                QDomElement child = document.createElement(oneOf(names));
                element.appendChild(child);
                if (depth < 40) {
                    fill(document, child, depth + 1);
                }
            }
            }
        }
    }

    const QStringList names { u"Cheque"_s, u"tem:cheque"_s, u"s:Fault"_s, u"x-y.z"_s, u"Скидка"_s, u"a"_s };
    const QStringList pieces {
        u"<"_s,    u">"_s,  u"&"_s,  u"\""_s,     u"'"_s,          u"]"_s,     u"]]>"_s,   u"\r"_s,
        u"\n"_s,   u"\t"_s, u" "_s,  u"-"_s,      u"\U0001F600"_s, u"&amp;"_s, u"%1"_s,    u"текст"_s,
        u"text"_s, u"0"_s,  u"?>"_s, u"\u00A0"_s, u"=\""_s,        u"<!--"_s,  u"\u0001"_s
    }; // the last one, which no parser reads, in half of the trees
    const QStringList declarations { u"version='1.0'"_s, u"version=\"1.0\" encoding=\"utf-8\""_s,
                                     u"version='1.0' encoding='windows-1251'"_s, u"version='1.0' encoding='UTF-16'"_s,
                                     u"version='1.0' encoding='unknown'"_s };
    std::mt19937 numbers;
    int nodesLeft = 0;
    int pieceCount = 1;
};

}

TEST(WriteXmlOfGeneratedTrees, GivesWhatToStringGives)
{
    std::cout << "seed " << seed << ", " << trees << " trees\n";
    const QtMessageHandler before // toString warns of encodings that it does not know
        = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    const auto restored = qScopeGuard([before] { qInstallMessageHandler(before); });
    TreeGenerator generator(seed);
    int readBack = 0;
    for (int i = 0; i < trees; ++i) {
        const QDomDocument document = generator.next();
        const QString expected = document.toString(1);
        ASSERT_EQ(writeXml(document).toStdString(), expected.toStdString()) << "tree " << i;

        // The parser makes trees that no builder makes: texts in pieces, none of white space alone.
        if (const XmlReading reading = readOutsideXml(expected); reading.ok) {
            ASSERT_EQ(writeXml(reading.document).toStdString(), reading.document.toString(1).toStdString())
                << "tree " << i << ", read back";
            ++readBack;
        }
    }
    EXPECT_GE(readBack, trees / 10);
}

TEST(WriteXmlOfGoldenCheques, GivesWhatToStringGives)
{
    const QDir folder(QFileInfo(QStringLiteral(__FILE__)).dir().filePath(u"../golden"_s));
    const QStringList files = folder.entryList({ u"*.xml"_s });
    ASSERT_GE(files.size(), 100);
    for (const QString& name : files) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        const XmlReading reading = readOutsideXml(file.readAll());
        ASSERT_TRUE(reading.ok) << name.toStdString() << ": " << reading.errorText.toStdString();

        EXPECT_TRUE(writeXml(reading.document) == reading.document.toString(1)) << name.toStdString();
    }
}
