#include "till/printing/picture_font.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QPainter>
#include <QTextBoundaryFinder>

namespace till {

namespace {

    [[nodiscard]] QString family()
    {
        return QStringLiteral("DejaVu Sans Mono");
    }

    [[nodiscard]] QFont fontFor(QSize cell)
    {
        QFont font(family());
        font.setPixelSize(cell.width() * 5 / 3); // its characters are three fifths of its size wide
        // Shapes that depend on the font's file alone: no other font's letters, and no settings of the machine.
        font.setStyleStrategy(static_cast<QFont::StyleStrategy>(QFont::NoFontMerging | QFont::NoSubpixelAntialias
                                                                | QFont::PreferAntialias));
        font.setHintingPreference(QFont::PreferNoHinting);
        return font;
    }

} // namespace

QSize characterCell(const Paper& paper, SlipSize size)
{
    const int width = paper.dots / paper.normal;
    switch (size) {
    case SlipSize::smaller:
        return { width * 3 / 4, width * 3 / 2 };
    case SlipSize::enlarge:
        return { width * 2, width * 4 };
    case SlipSize::normal:
        break;
    }
    return { width, width * 2 };
}

bool hasPictureFont()
{
    return QFontDatabase::hasFamily(family());
}

void drawInCells(QPainter& painter, QPoint corner, QSize cell, const QString& text)
{
    const QFont font = fontFor(cell);
    const QFontMetrics metrics(font);
    const int baseline = corner.y() + (cell.height() - metrics.height()) / 2 + metrics.ascent();
    painter.setFont(font);
    painter.setPen(Qt::black);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (qsizetype from = 0, to = finder.toNextBoundary(); to > from; from = to, to = finder.toNextBoundary()) {
        painter.drawText(QPoint(corner.x() + static_cast<int>(from) * cell.width(), baseline),
                         text.sliced(from, to - from));
    }
}

} // namespace till
