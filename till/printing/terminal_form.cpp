#include "till/printing/terminal_form.h"

#include "till/printing/text_rows.h"

#include <QTextBoundaryFinder>

#include <array>

namespace till {

namespace {

    /// A blank between any two characters; a letter and its accents are one.
    [[nodiscard]] QString spacedOut(const QString& row)
    {
        QStringList characters;
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, row);
        for (qsizetype from = 0, to = finder.toNextBoundary(); to > from; from = to, to = finder.toNextBoundary()) {
            characters.append(row.sliced(from, to - from));
        }
        return characters.join(u' ');
    }

    class TerminalWriter {
    public:
        explicit TerminalWriter(int paperColumns)
            : columns(paperColumns)
        {
        }

        void operator()(const SlipRow& row)
        {
            append(row.size == SlipSize::enlarge ? spacedOut(row.text) : row.text, row.align);
        }

        void operator()(const ArrangedEan13& item)
        {
            if ((item.symbol.width() + 1) / 2 > columns) {
                appendAsText(item.code);
                return;
            }
            static constexpr std::array<char16_t, 4> blocks { u' ', u'▌', u'▐', u'█' };
            QString bars;
            for (int x = 0; x < item.symbol.width(); x += 2) {
                bars += blocks[(item.symbol.isDark(x, 0) ? 1U : 0U) + (item.symbol.isDark(x + 1, 0) ? 2U : 0U)];
            }
            constexpr int height = 4;
            for (int i = 0; i < height; ++i) {
                append(bars, SlipAlign::center);
            }
            append(item.code.content, SlipAlign::center);
        }

        void operator()(const ArrangedQr& item)
        {
            if (item.symbol.width() > columns) {
                appendAsText(item.code);
                return;
            }
            static constexpr std::array<char16_t, 4> blocks { u' ', u'▀', u'▄', u'█' };
            lines.append(QString()); // above and below a code it must stay white
            for (int y = 0; y < item.symbol.height(); y += 2) {
                QString row;
                for (int x = 0; x < item.symbol.width(); ++x) {
                    row += blocks[(item.symbol.isDark(x, y) ? 1U : 0U) + (item.symbol.isDark(x, y + 1) ? 2U : 0U)];
                }
                append(row, SlipAlign::center);
            }
            lines.append(QString());
        }

        QStringList lines;

    private:
        void append(const QString& row, SlipAlign align)
        {
            lines.append(alignedRow(row, align, columns));
        }

        void appendAsText(const SlipCode& code)
        {
            for (const QString& row : brokenLine(withoutControls(code.type + u' ' + code.content), columns)) {
                append(row, SlipAlign::center);
            }
        }

        int columns;
    };

} // namespace

Rendered<QStringList> renderForTerminal(const Slip& slip, int columns)
{
    const Arrangement arrangement = arrange(slip, terminalPaper(columns));
    TerminalWriter writer(columns);
    for (const ArrangedItem& item : arrangement.items) {
        std::visit(writer, item);
    }
    return { writer.lines, arrangement.findings };
}

} // namespace till
