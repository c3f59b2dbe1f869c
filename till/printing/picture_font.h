#pragma once

#include "till/printing/slip_arrangement.h"

#include <QPoint>
#include <QSize>
#include <QString>

class QPainter;

// The printer's fonts: every character in a cell of its own, whatever a font makes of its width.
namespace till {

/// The cell of a character of the size on the paper, in dots.
[[nodiscard]] QSize characterCell(const Paper& paper, SlipSize size);

/// Whether the font of the pictures is installed. Needs a QGuiApplication.
[[nodiscard]] bool hasPictureFont();

/// Draws the text from that corner on, one cell for each column; a character of two columns has two cells. What the
/// font does not have is drawn as its box for missing characters, on every machine alike. Needs a QGuiApplication.
void drawInCells(QPainter& painter, QPoint corner, QSize cell, const QString& text);

} // namespace till
