#include "till/desk/print_form.h"

#include "till/printing/slip_reader.h"
#include "till/printing/text_rows.h"

#include <algorithm>

namespace till {

namespace {

    class LineWriter {
    public:
        explicit LineWriter(int paperColumns)
            : columns(paperColumns)
        {
        }

        void operator()(const SlipText& text)
        {
            append(text.text, text.align);
        }

        void operator()(const SlipRule& rule)
        {
            lines.append(withoutControls(filledRow(rule.symbols, columns)));
        }

        void operator()(const SlipBreak&)
        {
            lines.append(QString());
        }

        void operator()(const SlipCode& code)
        {
            append(code.type + u' ' + code.content, SlipAlign::center);
        }

        QStringList lines;

    private:
        void append(const QString& text, SlipAlign align)
        {
            for (const QString& line : linesOf(text)) {
                for (const QString& row : brokenLine(withoutControls(line), columns)) {
                    lines.append(alignedRow(row, align, columns));
                }
            }
        }

        int columns;
    };

} // namespace

QStringList layOut(const QString& printForm, int columns)
{
    const Slip slip = readSlip(printForm);
    if (slip.kind != SlipKind::printForm) {
        QStringList lines = linesOf(printForm);
        std::ranges::transform(lines, lines.begin(), withoutControls);
        return lines;
    }
    LineWriter writer(std::max(columns, 1));
    for (const SlipBlock& block : slip.blocks) {
        std::visit(writer, block);
    }
    return writer.lines;
}

} // namespace till
