#include "host/framework/text_printer.h"

#include "till/desk/cashier.h"
#include "till/desk/print_form.h"

template class MockFactory<TextPrinter>;

TextPrinter::TextPrinter() = default;
TextPrinter::~TextPrinter() = default;

void TextPrinter::printText(const QString& text, int /*option*/)
{
    constexpr int columns = 42; // paper of 80 mm
    till::cashier().handOver(till::layOut(text, columns).join(u'\n'));
}
