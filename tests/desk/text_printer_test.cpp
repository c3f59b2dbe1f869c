#include "host/framework/text_printer.h"
#include "tests/desk/recording_cashier.h"

#include <string>

using namespace Qt::StringLiterals;

namespace {

/// What the cashier takes when the text is printed.
std::string printed(const QString& text)
{
    RecordingCashier cashier;
    MockFactory<TextPrinter>::create()->printText(text, -1);
    return cashier.seen();
}

TEST(TextPrinterAtTheDesk, HandsOverASlipOfFortyTwoColumns)
{
    EXPECT_EQ(printed(u"<report><text fillsymbol='=' maxwidth='all'/><text align='center'>Спасибо</text></report>"_s),
              "slip: ==========================================\n"
              "                 Спасибо");
}

TEST(TextPrinterAtTheDesk, HandsOverWhatIsNoPrintFormAsItStands)
{
    EXPECT_EQ(printed(u"Спасибо\n  за покупку"_s), "slip: Спасибо\n  за покупку");
}

TEST(TextPrinterAtTheDesk, HandsOverAnEmptySlip)
{
    EXPECT_EQ(printed(QString()), "slip: ");
    EXPECT_EQ(printed(u"<report/>"_s), "slip: ");
}

TEST(TextPrinterAtTheDesk, PrintsAlikeForEveryOption)
{
    RecordingCashier cashier;
    const QSharedPointer<TextPrinter> printer = MockFactory<TextPrinter>::create();
    printer->printText(u"a"_s, -1);
    printer->printText(u"a"_s, 0);
    printer->printText(u"a"_s, 7);

    EXPECT_EQ(cashier.seen(), "slip: a\nslip: a\nslip: a");
}

TEST(TextPrinterAtTheDesk, EachSlipIsHandedOverByItself)
{
    RecordingCashier cashier;
    MockFactory<TextPrinter>::create()->printText(u"<report><text>1</text></report>"_s, -1);
    MockFactory<TextPrinter>::create()->printText(u"<report><text>2</text></report>"_s, -1);

    EXPECT_EQ(cashier.seen(), "slip: 1\nslip: 2");
}

} // namespace
