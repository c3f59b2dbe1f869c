#pragma once

#include "till/desk/print_form.h"

#include <QString>
#include <QStringList>

#include <string>

/// The lines of the slip, one a line, each between bars so that its blanks can be seen.
[[nodiscard]] inline std::string barred(const QStringList& lines)
{
    QString result;
    for (const QString& line : lines) {
        result += u'|' + line + QStringLiteral("|\n");
    }
    return result.toStdString();
}

/// A print form with this content, laid out.
[[nodiscard]] inline std::string laidOut(const QString& content, int columns)
{
    return barred(
        till::layOut(QStringLiteral(R"(<report name="custom" type="document" cached="false" title="vantiro check">)")
                         + content + QStringLiteral("</report>"),
                     columns));
}

/// A text line of a print form.
[[nodiscard]] inline QString textLine(const QString& align, const QString& text)
{
    return QStringLiteral(R"(<text align="%1" maxwidth="all">%2</text>)").arg(align, text);
}
