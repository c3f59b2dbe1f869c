#include "till/printing/ean13.h"

#include <algorithm>

namespace till {

QString defectOfEan13(const QString& code)
{
    // QChar::isDigit takes the digits of every script, and a printer those of ASCII alone.
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    if (!std::ranges::all_of(code, isDigit)) {
        return QStringLiteral("has characters that are no digits");
    }
    constexpr qsizetype length = 13;
    if (code.size() != length) {
        return QStringLiteral("has %1 digits instead of 13").arg(code.size());
    }
    int sum = 0;
    for (qsizetype i = 0; i < length - 1; ++i) {
        sum += code[i].digitValue() * (i % 2 == 0 ? 1 : 3);
    }
    const int check = (10 - sum % 10) % 10;
    if (code.back().digitValue() != check) {
        return QStringLiteral("ends in %1, and its check digit is %2")
            .arg(QString(code.back()), QString::number(check));
    }
    return QString();
}

} // namespace till
