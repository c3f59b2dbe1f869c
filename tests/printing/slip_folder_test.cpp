#include "host/framework/text_printer.h"
#include "tests/desk/recording_cashier.h"
#include "tests/printing/picture_compare.h"
#include "tests/printing/printing_support.h"
#include "tests/support/log_recorder.h"
#include "till/printing/slip_folder.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QString form = u"<report><text align='right'>Да</text></report>"_s;

/// The folder while a test lasts; afterwards slips are kept nowhere again.
class SlipFolder : public testing::Test {
protected:
    ~SlipFolder() override
    {
        till::setSlipFolder(QString());
    }

    [[nodiscard]] std::string files() const
    {
        return QDir(slips()).entryList(QDir::Files, QDir::Name).join(u' ').toStdString();
    }

    [[nodiscard]] QString slips() const
    {
        return till.path(u"slips"_s);
    }

    [[nodiscard]] QByteArray contentOf(const QString& name) const
    {
        return PrintingTill::contentOf(QDir(slips()).filePath(name));
    }

    /// In this process, whose application has no fonts.
    void print(const QString& text)
    {
        TextPrinter().printText(text, -1);
    }

    PrintingTill till;
    RecordingCashier cashier;
};

TEST_F(SlipFolder, IsNoneAtFirst)
{
    print(form);

    EXPECT_EQ(cashier.seen(), "slip:                                         Да");
    EXPECT_EQ(files(), "");
}

TEST_F(SlipFolder, TakesEverySlipInEveryForm)
{
    const QString sale = sampleForm(u"sale.xml"_s);
    const QString plain = till.write(u"plain"_s, "Спасибо");
    const Ended ended = till.run({ u"gui"_s, u"print"_s, slips(), sale, plain });

    EXPECT_EQ(ended.status, 0) << ended.errors.toStdString();
    EXPECT_EQ(files(),
              "slip-001.escpos slip-001.png slip-001.txt slip-001.xml slip-002.escpos slip-002.png slip-002.txt");
    EXPECT_EQ(contentOf(u"slip-001.xml"_s).toStdString(), PrintingTill::contentOf(sale).toStdString());
    EXPECT_EQ(contentOf(u"slip-002.txt"_s).toStdString(), "Спасибо\n");
    EXPECT_EQ(contentOf(u"slip-002.escpos"_s).toHex(' ').toStdString(),
              "1b 40 1b 74 11 91 af a0 e1 a8 a1 ae 0a 1b 64 03 1d 56 42 00");
    const QImage golden(QStringLiteral(VANTIRO_PRINTING_FOLDER "/golden/sale-42.png"));
    EXPECT_EQ(differenceOf(golden, QImage(slips() + u"/slip-001.png"_s)).toStdString(), "");
}

TEST_F(SlipFolder, LeavesTheCashiersSlipAsItWas)
{
    till::setSlipFolder(slips());
    print(form);
    print(u"Спасибо"_s);

    EXPECT_EQ(cashier.seen(), "slip:                                         Да\nslip: Спасибо");
}

TEST_F(SlipFolder, GoesOnBehindTheNumbersThatItHolds)
{
    const QString slip = till.write(u"slip"_s, "a");
    ASSERT_TRUE(QDir().mkpath(slips()));
    static_cast<void>(till.write(u"slips/slip-007.png"_s, "mine"));
    static_cast<void>(till.write(u"slips/slip-x.txt"_s, "mine"));

    EXPECT_EQ(till.run({ u"gui"_s, u"print"_s, slips(), slip }).status, 0);
    EXPECT_EQ(till.run({ u"gui"_s, u"print"_s, slips(), slip }).status, 0); // started anew
    EXPECT_EQ(
        files(),
        "slip-007.png slip-008.escpos slip-008.png slip-008.txt slip-009.escpos slip-009.png slip-009.txt slip-x.txt");
    EXPECT_EQ(contentOf(u"slip-007.png"_s).toStdString(), "mine");
}

TEST_F(SlipFolder, HasRoomForMoreThanThreeDigits)
{
    ASSERT_TRUE(QDir().mkpath(slips()));
    static_cast<void>(till.write(u"slips/slip-999.txt"_s, "mine"));
    static_cast<void>(till.write(u"slips/slip-1000.txt"_s, "mine"));
    static_cast<void>(till.write(u"slips/slip-9223372036854775807"_s, "mine"));
    till::setSlipFolder(slips());
    print(u"a"_s);

    EXPECT_EQ(files(), "slip-1000.txt slip-1001.escpos slip-1001.txt slip-9223372036854775807 slip-999.txt");
}

TEST_F(SlipFolder, LogsAPictureThatCannotBeDrawnAndKeepsTheRest)
{
    till::setSlipFolder(slips());
    const LogRecorder log;
    print(u"a"_s);

    EXPECT_EQ(files(), "slip-001.escpos slip-001.txt");
    EXPECT_EQ(log.lines().join(u'\n').toStdString(),
              "error till/slips: " + slips().toStdString()
                  + "/slip-001.png was not written: pictures need a QGuiApplication in this process; make one with "
                    "QT_QPA_PLATFORM=offscreen, or print as text");
}

TEST_F(SlipFolder, LogsAFolderThatCannotBeMade)
{
    static_cast<void>(till.write(u"slips"_s, "a file"));
    till::setSlipFolder(slips());
    const LogRecorder log;
    print(u"a"_s);

    EXPECT_EQ(cashier.seen(), "slip: a");
    EXPECT_EQ(log.lines().join(u'\n').toStdString(),
              "error till/slips: " + slips().toStdString() + " was not written: the folder cannot be made");
}

} // namespace
