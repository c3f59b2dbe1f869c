#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace till {

/// A code as black and white modules, without its quiet zone.
class CodeSymbol {
public:
    CodeSymbol(int width, int height);

    [[nodiscard]] int width() const;
    [[nodiscard]] int height() const;
    /// False outside the symbol.
    [[nodiscard]] bool isDark(int x, int y) const;
    void setDark(int x, int y);

private:
    int columns;
    int rows;
    QList<bool> modules; // row by row
};

/// One row of 95 modules for the thirteen digits of a valid code. Throws std::logic_error for any other text.
/// [any-thread]
[[nodiscard]] CodeSymbol ean13Symbol(const QString& digits);

/// The QR symbol of the text, with error correction M: of its bytes in UTF-8 and without a mark of their character set,
/// as receipt printers make it. None for an empty text and for one that is too long for a symbol. [any-thread]
[[nodiscard]] std::optional<CodeSymbol> qrSymbol(const QString& content);

} // namespace till
