#pragma once

#include "host/export.h"
#include "host/facilities/mock_factory.h"

#include <QString>
#include <QtGlobal>

/// The printer for slips, made through `MockFactory<TextPrinter>`. [cheque-thread]
class VANTIRO_HOST_API TextPrinter {
public:
    TextPrinter();
    virtual ~TextPrinter();

    /// Prints the print form `text`. `option` is the host's; plug-ins pass -1. A printer that fails is the host's to
    /// report: the cheque is closed whatever becomes of the slip, so nothing is thrown. [blocks: until the slip is
    /// taken over for printing]
    virtual void printText(const QString& text, int option);

private:
    Q_DISABLE_COPY(TextPrinter)
};

extern template class VANTIRO_HOST_API MockFactory<TextPrinter>;
