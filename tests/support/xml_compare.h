#pragma once

#include <QDomDocument>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

/// A text of XML as lines that two texts share exactly when they say the same: attributes are sorted, the blank text
/// between elements is left out, everything else stands as it is, order of elements and text included. A CDATA section
/// counts as its text. Read with a parser of its own, not with the document model that the cheques are written by.
struct CanonicalXml {
    QStringList lines; // each names the place it stands at: "/1:Cheque/2:ChequeLines/1:ChequeLine @Price = 89.90"
    QString error; // what the parser objected to; empty when the text is well-formed
};

[[nodiscard]] CanonicalXml canonicalXml(const QString& text);

/// Success when both texts are well-formed and say the same; else tells the first line that differs, and no more.
[[nodiscard]] testing::AssertionResult sameXml(const QString& actual, const QString& expected);
[[nodiscard]] testing::AssertionResult sameXml(const QDomDocument& actual, const QString& expected);
