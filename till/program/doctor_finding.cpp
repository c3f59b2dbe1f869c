#include "till/program/doctor_finding.h"

namespace till::diagnosis {

namespace {

[[nodiscard]] QString wordOf(Verdict verdict)
{
    switch (verdict) {
    case Verdict::ok:
        return QStringLiteral("ok");
    case Verdict::warning:
        return QStringLiteral("warning");
    case Verdict::failed:
        break;
    }
    return QStringLiteral("FAILED");
}

/// What would end the line or steer the terminal.
[[nodiscard]] bool isUnprintable(QChar character)
{
    const QChar::Category category = character.category();
    return category == QChar::Separator_Line || category == QChar::Separator_Paragraph
        || (!character.isPrint() && !character.isSurrogate());
}

} // namespace

Finding ok(const QString& sentence)
{
    return { Verdict::ok, sentence };
}

Finding warning(const QString& sentence)
{
    return { Verdict::warning, sentence };
}

Finding failed(const QString& sentence)
{
    return { Verdict::failed, sentence };
}

QString lineOf(const Finding& finding)
{
    constexpr qsizetype columns = 8;
    QString line = wordOf(finding.verdict).leftJustified(columns) + finding.sentence;
    for (QChar& character : line) {
        if (isUnprintable(character)) {
            character = u' ';
        }
    }
    return line;
}

QString counted(qint64 number, const QString& thing)
{
    return QString::number(number) + u' ' + thing + (number == 1 ? QString() : QStringLiteral("s"));
}

} // namespace till::diagnosis
