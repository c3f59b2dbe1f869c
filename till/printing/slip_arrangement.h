#pragma once

#include "till/printing/code_symbol.h"
#include "till/printing/slip.h"

#include <QList>
#include <QString>

#include <variant>

// A slip on paper of a given width: what was read, broken into rows that fit.
namespace till {

/// What a slip is arranged for: how many characters of each size fit into a row, each at least 1, and the printer's
/// dots across, or 0 where codes are not drawn in dots.
struct Paper {
    int smaller = 0;
    int normal = 0;
    int enlarge = 0;
    int dots = 0;

    [[nodiscard]] int columns(SlipSize size) const;
};

/// A terminal of so many columns: all characters are of one width there, and the enlarged ones are spaced out.
[[nodiscard]] Paper terminalPaper(int columns);

/// A receipt printer that has so many columns in its first font: three quarters of their width for a character of the
/// second font, twice the width for an enlarged one. Up to 32 columns on paper of 58 mm, more on paper of 80 mm, at 203
/// dots per inch.
[[nodiscard]] Paper printerPaper(int columns);

/// One row of text, no longer than fits, without control characters.
struct SlipRow {
    QString text;
    SlipAlign align = SlipAlign::none;
    SlipSize size = SlipSize::normal;
};

struct ArrangedEan13 {
    SlipCode code; // its modules no wider than the paper allows
    CodeSymbol symbol;
};

struct ArrangedQr {
    SlipCode code;
    CodeSymbol symbol;
    int moduleWidth = 0; // dots
};

/// What must stay white around a code, in modules.
constexpr int ean13QuietLeft = 11;
constexpr int ean13QuietRight = 7;
constexpr int qrQuiet = 4;

using ArrangedItem = std::variant<SlipRow, ArrangedEan13, ArrangedQr>;

struct Arrangement {
    QList<ArrangedItem> items;
    QList<SlipFinding> findings; // of the slip and of the arrangement, by their lines
};

/// Something made of a slip, with all that is wrong with the slip.
template <typename Output>
struct Rendered {
    Output output;
    QList<SlipFinding> findings;
};

/// Breaks the slip for the paper. Texts that are too long for their row are told in the findings, with the place where
/// they are broken. [any-thread]
[[nodiscard]] Arrangement arrange(const Slip& slip, const Paper& paper);

} // namespace till
