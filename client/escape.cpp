#include "client/vantiro_interface.h"

QString VantiroInterface::removeEscapeFromXml(const QString& text) const
{
    // The ampersand goes first on purpose: the service escapes some results once more, and those must come out as well.
    QString result = text;
    result.replace(QLatin1String("&amp;"), QLatin1String("&"));
    result.replace(QLatin1String("&lt;"), QLatin1String("<"));
    result.replace(QLatin1String("&gt;"), QLatin1String(">"));
    result.replace(QLatin1String("&apos;"), QLatin1String("'"));
    result.replace(QLatin1String("&quot;"), QLatin1String("\""));
    result.remove(QLatin1String("&#xD;"));
    return result;
}
