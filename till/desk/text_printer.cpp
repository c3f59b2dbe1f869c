#include "host/framework/text_printer.h"

#include "till/desk/cashier.h"
#include "till/desk/print_form.h"
#include "till/printing/slip_folder.h"

template class MockFactory<TextPrinter>;

TextPrinter::TextPrinter() = default;
TextPrinter::~TextPrinter() = default;

void TextPrinter::printText(const QString& text, int /*option*/)
{
    constexpr int columns = 42; // paper of 80 mm
    till::keepSlip(text); // first: the cashier may be a script that ends here
    till::cashier().handOver(till::layOut(text, columns).join(u'\n'));
}
