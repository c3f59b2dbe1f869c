#pragma once

#include "tests/bonus/bonus_client.h"

#include <QDomDocument>
#include <QString>

#include <string>

/// What the tests of slips ask of the client, in texts. [cheque-thread]
class SlipClient : public BonusClient {
public:
    /// The print form of the slip, which must be XML; attributes in the order of their names.
    [[nodiscard]] std::string printForm(const QString& slip) const;
    /// The print forms of a document of several slips; the text of an empty one is empty.
    [[nodiscard]] QList<std::string> printForms(const QString& slips) const;

    /// Keeps the slip that a reply holds whose `AccrualResult` is this text.
    void fill(const QString& text);
    /// The slip that is waiting, as text; empty when none is.
    [[nodiscard]] std::string waiting() const;
};

/// The document of the text, which must be XML.
[[nodiscard]] QDomDocument documentOf(const QString& xml);

/// The print form of a slip that gives these commands; attributes in the order of their names.
[[nodiscard]] std::string report(const std::string& commands);
/// The commands that print one line of text.
[[nodiscard]] std::string textLine(const std::string& align, const std::string& size, const std::string& text);
