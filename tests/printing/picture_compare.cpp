#include "tests/printing/picture_compare.h"

#include <algorithm>
#include <cstdlib>

namespace {

bool isGrey(int shade)
{
    return shade > 0 && shade < 255;
}

} // namespace

QString differenceOf(const QImage& golden, const QImage& picture)
{
    if (golden.isNull() || picture.isNull()) {
        return QStringLiteral("one of them is no picture");
    }
    if (golden.size() != picture.size()) {
        return QStringLiteral("%1 x %2 dots instead of %3 x %4")
            .arg(picture.width())
            .arg(picture.height())
            .arg(golden.width())
            .arg(golden.height());
    }
    constexpr int quarter = 64;
    qint64 edges = 0;
    for (int y = 0; y < golden.height(); ++y) {
        for (int x = 0; x < golden.width(); ++x) {
            const int expected = qGray(golden.pixel(x, y));
            const int shade = qGray(picture.pixel(x, y));
            if (shade == expected) {
                continue;
            }
            ++edges;
            if ((!isGrey(shade) && !isGrey(expected)) || std::abs(shade - expected) > quarter) {
                return QStringLiteral("at %1, %2: shade %3 instead of %4").arg(x).arg(y).arg(shade).arg(expected);
            }
        }
    }
    if (edges * 100 > 3 * qint64 { golden.width() } * golden.height()) {
        return QStringLiteral("%1 pixels are of another grey").arg(edges);
    }
    return QString();
}
