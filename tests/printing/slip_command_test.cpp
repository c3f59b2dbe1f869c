#include "tests/printing/printing_support.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

const QByteArray goodForm = "<report name=\"custom\"><text align=\"right\">Да</text></report>";

TEST(SlipCommand, WritesTextToStandardOutput)
{
    const PrintingTill till;
    const Ended ended = till.slip(till.write(u"a.xml"_s, goodForm), u"text"_s, 32);

    EXPECT_EQ(ended.output.toStdString(), "                              Да\n");
    EXPECT_EQ(ended.errors.toStdString(), "");
    EXPECT_EQ(ended.status, 0);
}

TEST(SlipCommand, TakesPlainText)
{
    const PrintingTill till;
    const Ended ended = till.slip(till.write(u"a.txt"_s, "Спасибо\n  за покупку"), u"text"_s, 42);

    EXPECT_EQ(ended.output.toStdString(), "Спасибо\n  за покупку\n");
    EXPECT_EQ(ended.errors.toStdString(), "");
    EXPECT_EQ(ended.status, 0);
}

TEST(SlipCommand, TakesStandardInput)
{
    const PrintingTill till;
    const Ended ended = till.run({ u"core"_s, u"slip"_s, u"-"_s, u"escpos"_s, u"32"_s }, {}, goodForm + "<");

    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.errors.toStdString().substr(0, 40), "standard input:1: this is no print form:");
}

TEST(SlipCommand, TellsEachFindingOnOneLineAndByItsStatus)
{
    const PrintingTill till;
    const QString file = till.write(u"a.xml"_s, "<report>\n<image/>\n<text>«</text>\n<text>А</text></report>");
    const Ended ended = till.slip(file, u"text"_s, 42);

    EXPECT_EQ(ended.output.toStdString(), "«\nА\n");
    EXPECT_EQ(ended.errors.toStdString(),
              file.toStdString() + ":2: the element \"image\" is unknown; it is not printed, with all that it holds\n"
                  + file.toStdString() + ":3: the printer's code page 866 does not have « (U+00AB)\n");
    EXPECT_EQ(ended.status, 1);
}

TEST(SlipCommand, TellsOfAHundredFindingsAndCountsTheOthers)
{
    const PrintingTill till;
    const Ended ended
        = till.slip(till.write(u"a.xml"_s, "<report>" + QByteArray("<x/>").repeated(250) + "</report>"), u"text"_s, 42);

    EXPECT_EQ(ended.errors.count('\n'), 101);
    EXPECT_TRUE(ended.errors.endsWith("a.xml: and 150 findings more\n")) << ended.errors.right(100).toStdString();
}

TEST(SlipCommand, WritesAFile)
{
    const PrintingTill till;
    const Ended ended = till.slip(till.write(u"a.xml"_s, goodForm), u"escpos"_s, 42, till.path(u"a.escpos"_s));

    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.output.toStdString(), "");
    EXPECT_EQ(PrintingTill::contentOf(till.path(u"a.escpos"_s)).toHex(' ').toStdString(),
              "1b 40 1b 74 11 1b 61 02 84 a0 0a 1b 64 03 1d 56 42 00");
}

TEST(SlipCommand, WritesAPictureIntoAPipe)
{
    const PrintingTill till;
    const Ended ended = till.slip(till.write(u"a.xml"_s, goodForm), u"png"_s, 42);

    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.output.left(8).toHex().toStdString(), "89504e470d0a1a0a");
}

/// What the command says when it refuses; it must have written nothing.
std::string refusal(const Ended& ended)
{
    EXPECT_EQ(ended.status, 3);
    EXPECT_EQ(ended.output.toStdString(), "");
    return ended.errors.toStdString();
}

TEST(SlipCommand, OverwritesNothing)
{
    const PrintingTill till;
    const QString file = till.write(u"a.xml"_s, goodForm);
    const QString there = till.write(u"there.png"_s, "mine");

    EXPECT_EQ(refusal(till.slip(file, u"png"_s, 42, there)),
              "error: " + there.toStdString() + " is there already; name a new file with --output FILE\n");
    EXPECT_EQ(PrintingTill::contentOf(there).toStdString(), "mine");
}

TEST(SlipCommand, OverwritesNothingThroughALinkEither)
{
    const PrintingTill till;
    const QString file = till.write(u"a.xml"_s, goodForm);
    ASSERT_TRUE(QFile::link(till.path(u"nowhere"_s), till.path(u"link"_s)));

    EXPECT_NE(refusal(till.slip(file, u"text"_s, 42, till.path(u"link"_s))), "");
    EXPECT_FALSE(QFile::exists(till.path(u"nowhere"_s)));
}

TEST(SlipCommand, RefusesAFolderThatIsNotThere)
{
    const PrintingTill till;
    const QString output = till.path(u"none/a.txt"_s);

    EXPECT_EQ(refusal(till.slip(till.write(u"a.xml"_s, goodForm), u"text"_s, 42, output)),
              "error: " + output.toStdString() + " cannot be written: No such file or directory\n");
}

TEST(SlipCommand, RefusesAFileThatIsNotThere)
{
    const PrintingTill till;
    const QString file = till.path(u"none.xml"_s);

    EXPECT_EQ(refusal(till.slip(file, u"text"_s, 42)),
              "error: " + file.toStdString() + " cannot be read: No such file or directory\n");
}

TEST(SlipCommand, RefusesAFolder)
{
    const PrintingTill till;

    EXPECT_EQ(refusal(till.slip(till.path(u"."_s), u"text"_s, 42)).find("error: "), 0U);
}

TEST(SlipCommand, RefusesWhatIsNoText)
{
    const PrintingTill till;
    const QString picture = QStringLiteral(VANTIRO_PRINTING_FOLDER "/golden/sale-32.png");
    const QString other = till.write(u"a.txt"_s, "\xD1\xEF\xE0\xF1\xE8\xE1\xEE"); // Russian, but not in UTF-8
    const QString null = till.write(u"b.txt"_s, QByteArray("a\0b", 3));

    for (const QString& file : { picture, other, null }) {
        EXPECT_EQ(refusal(till.slip(file, u"text"_s, 42)),
                  "error: " + file.toStdString() + " is no text in UTF-8; name a print form or a plain text\n");
    }
}

TEST(SlipCommand, RefusesAGiant)
{
    const PrintingTill till;
    const QString file = till.write(u"a.txt"_s, QByteArray(16 * 1024 * 1024 + 1, 'x'));

    EXPECT_EQ(refusal(till.slip(file, u"text"_s, 42)),
              "error: " + file.toStdString() + " is larger than 16 MiB, which no slip is\n");
}

TEST(SlipCommand, SaysHowToGetThePrintFormOfTheServicesSlip)
{
    const PrintingTill till;
    for (const QByteArray form : { "<doc><center>А</center></doc>", "<docs><slip><doc/></slip></docs>" }) {
        const QString file = till.write(u"a.xml"_s, form);
        EXPECT_EQ(
            refusal(till.slip(file, u"text"_s, 42)),
            "error: " + file.toStdString()
                + " is the service's own form (root doc or docs), which the plug-in alone turns into a print form: "
                  "play "
                  "a sale with the key slips=FOLDER in the section [Till] of the configuration, and take slip-NNN.xml "
                  "from that folder\n");
    }
}

TEST(SlipCommand, RefusesPaperThatIsNotThere)
{
    const PrintingTill till;

    EXPECT_EQ(refusal(till.slip(sampleForm(u"sale.xml"_s), u"text"_s, 40)),
              "error: there is no paper of 40 columns; use 32, 42 or 48\n");
}

TEST(SlipCommand, RefusesFormatsThatItDoesNotHave)
{
    const PrintingTill till;

    EXPECT_EQ(refusal(till.slip(sampleForm(u"sale.xml"_s), u"pdf"_s, 42)),
              "error: there is no format \"pdf\"; use text, png or escpos\n");
}

TEST(SlipCommand, SaysWhenStandardOutputIsFull)
{
    const PrintingTill till;
    QProcess process;
    process.setStandardOutputFile(u"/dev/full"_s);
    process.start(QStringLiteral(VANTIRO_PRINTING_PROBE),
                  { u"core"_s, u"slip"_s, till.write(u"a.xml"_s, goodForm), u"text"_s, u"42"_s });

    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 3);
    EXPECT_EQ(process.readAllStandardError().toStdString(),
              "error: the slip cannot be written to standard output: No space left on device\n");
}

TEST(SlipCommand, KeepsBytesOffATerminal)
{
    const PrintingTill till;
    const QString file = till.write(u"a.xml"_s, goodForm);
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_GE(master, 0);
    ASSERT_EQ(::grantpt(master), 0);
    ASSERT_EQ(::unlockpt(master), 0);
    const QString terminal = QString::fromLocal8Bit(::ptsname(master));
    for (const QString& format : { u"png"_s, u"escpos"_s }) {
        QProcess process;
        process.setStandardOutputFile(terminal);
        process.start(QStringLiteral(VANTIRO_PRINTING_PROBE), { u"core"_s, u"slip"_s, file, format, u"42"_s });
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), 3);
        EXPECT_EQ(process.readAllStandardError().toStdString(),
                  "error: " + format.toStdString()
                      + " is nothing for a terminal; name a new file with --output FILE\n");
    }
    ::close(master);
}

} // namespace
