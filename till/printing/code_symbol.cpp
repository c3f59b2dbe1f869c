#include "till/printing/code_symbol.h"

#include <zint.h>

#include <memory>
#include <stdexcept>

namespace till {

namespace {

    using ZintSymbol = std::unique_ptr<zint_symbol, decltype(&ZBarcode_Delete)>;

    [[nodiscard]] ZintSymbol newSymbol(int symbology)
    {
        ZintSymbol symbol(ZBarcode_Create(), &ZBarcode_Delete);
        if (!symbol) {
            throw std::bad_alloc();
        }
        symbol->symbology = symbology;
        return symbol;
    }

    [[nodiscard]] bool encode(zint_symbol& symbol, const QByteArray& content)
    {
        return ZBarcode_Encode(&symbol, reinterpret_cast<const unsigned char*>(content.constData()),
                               static_cast<int>(content.size()))
            < ZINT_ERROR;
    }

    [[nodiscard]] CodeSymbol modulesOf(const zint_symbol& symbol)
    {
        CodeSymbol result(symbol.width, symbol.rows);
        for (int y = 0; y < symbol.rows; ++y) {
            for (int x = 0; x < symbol.width; ++x) {
                if ((symbol.encoded_data[y][x >> 3] >> (x & 7) & 1) != 0) {
                    result.setDark(x, y);
                }
            }
        }
        return result;
    }

} // namespace

CodeSymbol::CodeSymbol(int width, int height)
    : columns(width)
    , rows(height)
    , modules(static_cast<qsizetype>(width) * height)
{
}

int CodeSymbol::width() const
{
    return columns;
}

int CodeSymbol::height() const
{
    return rows;
}

bool CodeSymbol::isDark(int x, int y) const
{
    return x >= 0 && x < columns && y >= 0 && y < rows && modules[static_cast<qsizetype>(y) * columns + x];
}

void CodeSymbol::setDark(int x, int y)
{
    modules[static_cast<qsizetype>(y) * columns + x] = true;
}

CodeSymbol ean13Symbol(const QString& digits)
{
    const ZintSymbol symbol = newSymbol(BARCODE_EANX);
    if (digits.size() != 13 || !encode(*symbol, digits.toLatin1())) {
        throw std::logic_error("not an EAN-13 code");
    }
    return modulesOf(*symbol);
}

std::optional<CodeSymbol> qrSymbol(const QString& content)
{
    const ZintSymbol symbol = newSymbol(BARCODE_QRCODE);
    symbol->input_mode = DATA_MODE; // bytes: a printer does not look for letters in them either
    symbol->option_1 = 2; // error correction M
    const QByteArray bytes = content.toUtf8();
    if (bytes.isEmpty() || !encode(*symbol, bytes)) {
        return std::nullopt;
    }
    return modulesOf(*symbol);
}

} // namespace till
