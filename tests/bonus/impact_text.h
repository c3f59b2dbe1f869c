#pragma once

#include "host/document/document_impact.h"

#include <QList>
#include <QSharedPointer>
#include <QStringList>

#include <string>

/// A record with all its fields, in one line:
/// "'name' at 2026-01-31T10:16:00, type 2, rate none, mode 2, object 0, position 0, sum 12.5, code 7, source 2, minimum
/// price kept, card 9000000001, index int 77, details {1: 10; 2: 2.5}". A variant is told with its type.
[[nodiscard]] std::string impactText(const QSharedPointer<DocumentImpact>& impact);

/// One line for each record.
template <class Impact>
[[nodiscard]] std::string impactTexts(const QList<QSharedPointer<Impact>>& impacts)
{
    std::string result;
    for (const QSharedPointer<Impact>& impact : impacts) {
        result += impactText(impact) + '\n';
    }
    return result;
}
