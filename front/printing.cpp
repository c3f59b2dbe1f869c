#include "front/vantiro.h"

#include "host/framework/text_printer.h"

void Vantiro::printReport() const
{
    const QString text = interface->getReport();
    if (!text.isEmpty()) {
        MockFactory<TextPrinter>::create()->printText(text, -1);
    }
}

void Vantiro::printReports() const
{
    for (const QString& text : interface->getReports()) {
        MockFactory<TextPrinter>::create()->printText(text, -1);
    }
}
