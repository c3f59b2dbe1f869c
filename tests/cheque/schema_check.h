#pragma once

#include <QList>
#include <QString>

#include <gtest/gtest.h>

/// What an independent parser says of cheque texts.
enum class SchemaVerdict {
    valid,
    invalid, // well-formed, and not a cheque
    malformed, // not XML
    unknown, // the checker itself could not work
};

struct SchemaReport {
    SchemaVerdict verdict = SchemaVerdict::unknown; // on all of the texts together: the worst
    std::string complaint; // the checker's own words
};

/// Has `xmllint` check the texts, as UTF-8, against the schema of the cheque.
[[nodiscard]] SchemaReport checkAgainstSchema(const QList<QString>& texts);

/// Success when every text is a well-formed cheque by the schema.
[[nodiscard]] testing::AssertionResult isValidCheque(const QString& text);
[[nodiscard]] testing::AssertionResult areValidCheques(const QList<QString>& texts);
