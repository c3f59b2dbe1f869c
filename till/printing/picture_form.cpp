#include "till/printing/picture_form.h"

#include "till/printing/picture_font.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <algorithm>

namespace till {

namespace {

    constexpr int margin = 24; // above and below, in dots
    constexpr int longestSlip = 40'000; // dots; five metres
    constexpr int dotsPerMetre = 8000; // 203 dots per inch
    constexpr int gap = 8; // above and below an EAN-13, in dots
    constexpr int guardModules = 5; // how far its guard bars reach below the others
    constexpr QSize digitModules { 7, 14 }; // the cell of a digit below it

    class PictureWriter {
    public:
        PictureWriter(QPainter& target, const Paper& targetPaper)
            : painter(target)
            , paper(targetPaper)
        {
        }

        void operator()(const SlipRow& row)
        {
            // The rows of all sizes share one left and one right edge; what is left over is split between the two.
            const int edge = paper.dots % paper.normal / 2;
            const QSize cell = characterCell(paper, row.size);
            const int room = paper.dots - 2 * edge - static_cast<int>(row.text.size()) * cell.width();
            const int indent = row.align == SlipAlign::right ? room : row.align == SlipAlign::center ? room / 2 : 0;
            drawInCells(painter, QPoint(edge + std::max(indent, 0), top), cell, row.text);
            top += cell.height();
        }

        void operator()(const ArrangedEan13& item)
        {
            const int module = item.code.moduleWidth;
            const int width = (ean13QuietLeft + item.symbol.width() + ean13QuietRight) * module;
            const int left = (paper.dots - width) / 2 + ean13QuietLeft * module;
            top += gap;
            for (int x = 0; x < item.symbol.width(); ++x) {
                if (item.symbol.isDark(x, 0)) {
                    const bool isGuard = x < 3 || (x >= 45 && x < 50) || x >= 92;
                    const int height = item.code.height + (isGuard ? guardModules * module : 0);
                    painter.fillRect(left + x * module, top, module, height, Qt::black);
                }
            }
            top += item.code.height;
            if (item.code.withDigits) {
                drawDigits(item.code, QPoint(left, top + module));
            }
            top += heightBelowBars(item.code) + gap;
        }

        void operator()(const ArrangedQr& item)
        {
            const int module = item.moduleWidth;
            const int left = (paper.dots - item.symbol.width() * module) / 2;
            top += qrQuiet * module;
            for (int y = 0; y < item.symbol.height(); ++y) {
                for (int x = 0; x < item.symbol.width(); ++x) {
                    if (item.symbol.isDark(x, y)) {
                        painter.fillRect(left + x * module, top + y * module, module, module, Qt::black);
                    }
                }
            }
            top += (item.symbol.height() + qrQuiet) * module;
        }

        [[nodiscard]] static int heightBelowBars(const SlipCode& code)
        {
            return code.moduleWidth * (code.withDigits ? 1 + digitModules.height() : guardModules);
        }

    private:
        /// One digit before the code, and six below each half of it, between the guard bars.
        void drawDigits(const SlipCode& code, QPoint corner)
        {
            const int module = code.moduleWidth;
            const QSize cell = digitModules * module;
            drawInCells(painter, corner - QPoint(9 * module, 0), cell, code.content.first(1));
            drawInCells(painter, corner + QPoint(3 * module, 0), cell, code.content.sliced(1, 6));
            drawInCells(painter, corner + QPoint(50 * module, 0), cell, code.content.sliced(7));
        }

        QPainter& painter;
        const Paper& paper;
        int top = margin;
    };

    /// How much of the paper an item takes, in dots.
    class Measure {
    public:
        explicit Measure(const Paper& target)
            : paper(target)
        {
        }

        [[nodiscard]] qint64 operator()(const SlipRow& row) const
        {
            return characterCell(paper, row.size).height();
        }

        [[nodiscard]] qint64 operator()(const ArrangedEan13& item) const
        {
            return gap + item.code.height + PictureWriter::heightBelowBars(item.code) + gap;
        }

        [[nodiscard]] qint64 operator()(const ArrangedQr& item) const
        {
            return static_cast<qint64>(item.symbol.height() + 2 * qrQuiet) * item.moduleWidth;
        }

    private:
        const Paper& paper;
    };

    [[nodiscard]] int heightOf(const QList<ArrangedItem>& items, const Paper& paper)
    {
        const Measure measure(paper);
        qint64 height = 2 * margin;
        for (const ArrangedItem& item : items) {
            height += std::visit(measure, item);
        }
        if (height > longestSlip) {
            throw PictureError(QStringLiteral("the slip is longer than five metres of paper; print it as text"));
        }
        return static_cast<int>(height);
    }

    void checkSurroundings()
    {
        if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr) {
            throw PictureError(QStringLiteral("pictures need a QGuiApplication in this process; make one with "
                                              "QT_QPA_PLATFORM=offscreen, or print as text"));
        }
        if (!hasPictureFont()) {
            throw PictureError(
                QStringLiteral("the font DejaVu Sans Mono is missing; install the package fonts-dejavu-core"));
        }
    }

} // namespace

Rendered<QByteArray> renderAsPicture(const Slip& slip, int columns)
{
    checkSurroundings();
    const Paper paper = printerPaper(columns);
    const Arrangement arrangement = arrange(slip, paper);
    QImage image(paper.dots, heightOf(arrangement.items, paper), QImage::Format_Grayscale8);
    if (image.isNull()) {
        throw PictureError(QStringLiteral("there is not enough memory for the picture; print the slip as text"));
    }
    image.fill(Qt::white);
    image.setDotsPerMeterX(dotsPerMetre);
    image.setDotsPerMeterY(dotsPerMetre);
    {
        QPainter painter(&image);
        PictureWriter writer(painter, paper);
        for (const ArrangedItem& item : arrangement.items) {
            std::visit(writer, item);
        }
    }
    QBuffer png;
    if (!png.open(QIODevice::WriteOnly) || !image.save(&png, "PNG")) {
        throw PictureError(QStringLiteral("Qt cannot write PNG files on this machine; print the slip as text"));
    }
    return { png.data(), arrangement.findings };
}

} // namespace till
