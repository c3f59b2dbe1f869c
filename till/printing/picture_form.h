#pragma once

#include "host/export.h"
#include "till/printing/slip_arrangement.h"

#include <QByteArray>
#include <QString>

#include <stdexcept>

namespace till {

/// No picture can be drawn. The text is one sentence for the person at the terminal, which says what to do.
class PictureError : public std::runtime_error {
public:
    explicit PictureError(const QString& sentence)
        : std::runtime_error(sentence.toStdString())
    {
    }
};

/// The slip as a picture of the paper, in PNG: shades of grey, one pixel for each of the printer's dots, 384 across for
/// 58 mm (up to 32 columns) and 576 for 80 mm. Codes are of black and white pixels alone. Throws `PictureError` without
/// a QGuiApplication, without the font DejaVu Sans Mono, and for a slip of more than five metres. [cheque-thread]
[[nodiscard]] VANTIRO_HOST_API Rendered<QByteArray> renderAsPicture(const Slip& slip, int columns);

} // namespace till
