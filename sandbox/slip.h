#pragma once

#include "sandbox/placeholders.h"

#include <string>
#include <string_view>

/// The slip: a template of the rule file that is filled in for a cheque. It is XML when it begins with a tag, and plain
/// text otherwise.
namespace sandbox {

/// What is wrong with a template, in English for the author of the rules: not well-formed, an element or attribute that
/// the slip language does not have, an unknown placeholder. Empty when nothing is. [any-thread]
[[nodiscard]] std::string findSlipMistake(const std::string& text, bool withCard);

/// The result text of an accrual. A slip in XML has its markup escaped once more than the envelope does it, with the
/// line ends of the service: readers undo that, and an ampersand of the text survives them. Plain text stays as it is.
/// [any-thread]
[[nodiscard]] std::string slipText(const std::string& text, const Placeholders& values);

/// An EAN-13 code that holds the number of the cheque: twelve digits of which the first two are 20, which is free for
/// use inside a shop, and the check digit. [any-thread]
[[nodiscard]] std::string chequeBarcode(std::string_view chequeNumber);

}
