#pragma once

#include <QImage>
#include <QString>

/// What tells a picture from its golden one, or nothing when they are alike. Codes, rules and the inside of letters
/// must be the same to the pixel. Only the edges of letters may differ, which another version of the font's rasteriser
/// draws a little otherwise: pixels that are grey in one of the two pictures, by at most a quarter of the scale, and at
/// most three in a hundred of all pixels.
[[nodiscard]] QString differenceOf(const QImage& golden, const QImage& picture);
