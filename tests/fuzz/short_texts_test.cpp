#include "client/outside_xml.h"
#include "sandbox/xml_check.h"
#include "tests/fuzz/other_xml.h"
#include "tests/fuzz/replies.h"
#include "tests/fuzz/short_texts.h"
#include "till/delivery/verdict.h"

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>

// A fuzzer comes upon a fault of a few signs by chance. Here every text of a few pieces is read, at each kind of place
// in a reply: what our readers take for XML must be XML to the other parser, and the same.

namespace {

using fuzz::Pieces;

const Pieces references { "#", "x", "0", "4", "A", "-", " ", ";", "&", "lt" };
const Pieces digits { "x", "X", "0", "A", "+", "-", " ", ";" };
const Pieces tags { "a", "b", "=", "\"", "'", " ", "/", ">", "<", "0", "&", "xmlns" };
const Pieces sections { "<", ">", "/", "a", "!", "--", "-", "[CDATA[", "]]", "?", " ", "\"" };
const Pieces prologs { "<?", "?>", "xml", " ", "<!--", "-->", "-", "p", "x", "\xEF\xBB\xBF" };
const Pieces declarations {
    " version=\"1.0\"", " encoding=\"utf-8\"", " standalone='yes'", "encoding", " ", "=", "\"", "x", "?", ">"
};

/// A kind of place: what stands before the text and behind it, within the response or around the envelope.
struct Place {
    const char* name;
    const char* before;
    const char* behind;
    const Pieces* pieces;
    int most;
    bool outside = false; // around it, and "^" is where it stands
};

void PrintTo(const Place& place, std::ostream* out)
{
    *out << place.name;
}

const std::string opening = "<s:Envelope xmlns:s=\"http://schemas.xmlsoap.org/soap/envelope/\"><s:Body>"
                            "<OfflineAccrualResponse>";
const std::string closing = "</OfflineAccrualResponse></s:Body></s:Envelope>";

class ShortTexts : public testing::TestWithParam<Place> {
protected:
    /// Every reply of the place.
    static void eachReply(const std::function<void(const std::string&)>& call)
    {
        const Place& place = GetParam();
        fuzz::eachText(*place.pieces, place.most, [&](const std::string& text) {
            const std::string within = place.before + text + place.behind;
            const std::string envelope = opening + closing;
            call(place.outside ? within.substr(0, within.find('^')) + envelope + within.substr(within.find('^') + 1)
                               : opening + within + closing);
        });
    }

    /// What is taken must be XML to the other parser, and so many of the replies at least must be taken.
    static void expectXml(int least, fuzz::XmlEncoding encoding, const std::function<bool(const std::string&)>& takes)
    {
        int taken = 0;
        std::string problems;
        eachReply([&](const std::string& text) {
            if (takes(text)) {
                problems += fuzz::readOtherwise(text, encoding) ? "" : text + '\n';
                ++taken;
            }
        });
        EXPECT_EQ(problems, "");
        EXPECT_GE(taken, least);
    }
};

constexpr int few = 1; // of each place some text is XML

} // namespace

TEST_P(ShortTexts, ReadByTheClientAreXmlAndTheSame)
{
    int read = 0;
    std::string problems;
    eachReply([&](const std::string& text) {
        const vantiro::XmlReading reading = vantiro::readOutsideXml(QByteArray::fromStdString(text));
        if (reading.ok) {
            const std::optional<fuzz::XmlElement> other = fuzz::readOtherwise(text, fuzz::XmlEncoding::fromTheText);
            const std::string problem
                = other ? fuzz::difference(fuzz::asRead(reading.document.documentElement()), *other) : "it is no XML";
            problems += problem.empty() ? problem : text + "\n  " + problem + '\n';
            ++read;
        }
    });
    EXPECT_EQ(problems, "");
    EXPECT_GE(read, few);
}

TEST_P(ShortTexts, TakenForAnAnswerByTheQueueAreXml)
{
    expectXml(few, fuzz::XmlEncoding::fromTheText, [](const std::string& text) {
        fuzz::HostileServer server({ { 200, QByteArray::fromStdString(text) } });
        server.post(QUrl(QStringLiteral("http://server/")), "<e/>", {});
        return till::verdictOn(server, QStringLiteral("OfflineAccrual")).kind == till::Verdict::Kind::delivered;
    });
}

TEST_P(ShortTexts, TakenByTheSandboxAreXml)
{
    const bool isForbidden = GetParam().name == std::string("Instruction"); // SOAP has none
    expectXml(isForbidden ? 0 : few, fuzz::XmlEncoding::utf8,
              [](const std::string& text) { return sandbox::findXmlDefect(text, {}).empty(); });
}

INSTANTIATE_TEST_SUITE_P(
    Places, ShortTexts,
    testing::Values(
        Place { "ReferenceInText", "&", "", &references, 3 }, Place { "NumberInText", "&#", ";", &digits, 4 },
        Place { "NumberInAValue", "<a b=\"&#", ";\"/>", &digits, 4 },
        Place { "BehindTheNameOfAnElement", "<a", "/>", &tags, 3 },
        Place { "BehindAnAttribute", "<a b='c'", "></a>", &tags, 3 }, Place { "InAnEndTag", "<a></a", ">", &tags, 3 },
        Place { "Value", "<a b=\"", "\"/>", &tags, 3 }, Place { "Text", "", "", &sections, 3 },
        Place { "Markup", "<", "", &sections, 3 }, Place { "Comment", "<!--", "-->", &sections, 3 },
        Place { "Data", "<![CDATA[", "]]>", &sections, 3 }, Place { "Instruction", "<?p", "?>", &sections, 3 },
        Place { "BeforeTheEnvelope", "", "^", &prologs, 3, true },
        Place { "Declaration", "<?xml version=\"1.0\"", "?>^", &declarations, 3, true },
        Place { "BehindTheEnvelope", "^", "", &sections, 3, true }),
    [](const auto& row) { return std::string(row.param.name); });
