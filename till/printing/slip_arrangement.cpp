#include "till/printing/slip_arrangement.h"

#include "till/printing/text_rows.h"

#include <QStringList>

#include <algorithm>
#include <utility>

namespace till {

namespace {

    /// The text as it can be drawn: a letter and its accent as one character where there is one, nothing invisible.
    [[nodiscard]] QString drawable(const QString& text)
    {
        return withoutControls(text.normalized(QString::NormalizationForm_C)).replace(u'\t', u' ');
    }

    class Arranger {
    public:
        Arranger(const Slip& source, const Paper& target)
            : paper(target)
        {
            result.findings = source.findings;
        }

        [[nodiscard]] Arrangement finished()
        {
            std::ranges::stable_sort(result.findings, {}, &SlipFinding::line);
            return result;
        }

        void operator()(const SlipText& text)
        {
            const int columns = paper.columns(text.size);
            for (const QString& line : linesOf(text.text)) {
                const QStringList rows = brokenLine(drawable(line), columns);
                tellOfBreaks(text.line, line, rows, columns);
                for (const QString& row : rows) {
                    result.items.append(SlipRow { row, text.align, text.size });
                }
            }
        }

        void operator()(const SlipRule& rule)
        {
            result.items.append(
                SlipRow { filledRow(drawable(rule.symbols), paper.columns(rule.size)), SlipAlign::left, rule.size });
        }

        void operator()(const SlipBreak&)
        {
            result.items.append(SlipRow {});
        }

        void operator()(const SlipCode& code)
        {
            if (code.drawable && code.kind == SlipCodeKind::ean13) {
                appendEan13(code);
                return;
            }
            if (code.drawable) {
                if (const std::optional<CodeSymbol> symbol = qrSymbol(code.content)) {
                    const int widest = paper.dots / (symbol->width() + 2 * qrQuiet);
                    result.items.append(ArrangedQr { code, *symbol, std::min(widest, usualQrModule) });
                    return;
                }
                result.findings.append(
                    { code.line,
                      QStringLiteral("the text of %1 bytes is too long for a QR code; it is printed as text")
                          .arg(code.content.toUtf8().size()) });
            }
            (*this)(SlipText { code.line, QString(code.type + u' ' + code.content).trimmed(), SlipAlign::center,
                               SlipSize::normal });
        }

    private:
        static constexpr int usualQrModule = 6; // dots; 0.75 mm, which every camera reads

        void appendEan13(SlipCode code)
        {
            CodeSymbol symbol = ean13Symbol(code.content);
            const int widest = paper.dots / (ean13QuietLeft + symbol.width() + ean13QuietRight);
            if (paper.dots > 0 && code.moduleWidth > widest) {
                result.findings.append(
                    { code.line,
                      QStringLiteral("the code does not fit the paper with bars of %1 dots; they are of %2")
                          .arg(code.moduleWidth)
                          .arg(widest) });
                code.moduleWidth = widest;
            }
            result.items.append(ArrangedEan13 { std::move(code), std::move(symbol) });
        }

        void tellOfBreaks(qint64 place, const QString& line, const QStringList& rows, int columns)
        {
            if (rows.size() > 1) {
                result.findings.append(
                    { place,
                      QStringLiteral("a line of %1 characters where %2 fit is broken into %3: %4 begins the second")
                          .arg(QString::number(line.size()), QString::number(columns), QString::number(rows.size()),
                               quoted(rows.at(1))) });
            }
        }

        Paper paper;
        Arrangement result;
    };

} // namespace

int Paper::columns(SlipSize size) const
{
    switch (size) {
    case SlipSize::smaller:
        return smaller;
    case SlipSize::enlarge:
        return enlarge;
    case SlipSize::normal:
        break;
    }
    return normal;
}

Paper terminalPaper(int columns)
{
    return { .smaller = columns, .normal = columns, .enlarge = std::max(columns / 2, 1), .dots = 0 };
}

Paper printerPaper(int columns)
{
    return { .smaller = columns * 4 / 3,
             .normal = columns,
             .enlarge = std::max(columns / 2, 1),
             .dots = columns <= 32 ? 384 : 576 };
}

Arrangement arrange(const Slip& slip, const Paper& paper)
{
    Arranger arranger(slip, paper);
    for (const SlipBlock& block : slip.blocks) {
        std::visit(arranger, block);
    }
    return arranger.finished();
}

} // namespace till
