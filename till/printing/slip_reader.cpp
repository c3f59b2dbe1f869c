#include "till/printing/slip_reader.h"

#include "till/printing/code_page.h"
#include "till/printing/form_guard.h"
#include "till/printing/form_reader.h"

#include <algorithm>
#include <utility>

namespace till {

namespace {

    [[nodiscard]] bool looksLikeXml(const QString& text)
    {
        return QStringView(text).trimmed().startsWith(u'<');
    }

    struct Printed {
        qint64 line = 0;
        QString text;
    };

    /// What the block prints in letters, and not as a code.
    [[nodiscard]] Printed printedText(const SlipBlock& block)
    {
        if (const auto* text = std::get_if<SlipText>(&block)) {
            return { text->line, text->text };
        }
        if (const auto* rule = std::get_if<SlipRule>(&block)) {
            return { rule->line, rule->symbols };
        }
        if (const auto* code = std::get_if<SlipCode>(&block); code != nullptr && !code->drawable) {
            return { code->line, code->type + u' ' + code->content };
        }
        return {};
    }

    void findForeignCharacters(Slip& slip)
    {
        for (const SlipBlock& block : std::as_const(slip.blocks)) {
            const Printed printed = printedText(block);
            const QStringList foreign = outsidePrinterPage(printed.text);
            if (!foreign.isEmpty()) {
                constexpr qsizetype shown = 10;
                const QString more
                    = foreign.size() > shown ? QStringLiteral(" and %1 more").arg(foreign.size() - shown) : QString();
                slip.findings.append(
                    { printed.line,
                      QStringLiteral("the printer's code page 866 does not have %1%2")
                          .arg(foreign.first(std::min(shown, foreign.size())).join(QStringLiteral(", ")), more) });
            }
        }
    }

} // namespace

Slip readSlip(const QString& text)
{
    Slip slip;
    if (looksLikeXml(text)) {
        const QString refusal = refusalOfForm(text);
        if (refusal.isEmpty()) {
            slip = readForm(text);
        } else {
            slip.findings.append(
                { 0, QStringLiteral("this is no print form: %1; it is printed as it stands").arg(refusal) });
        }
    }
    if (slip.kind != SlipKind::printForm) {
        slip.blocks = { SlipText { .line = 1, .text = text, .align = SlipAlign::none, .size = SlipSize::normal } };
    }
    findForeignCharacters(slip);
    return slip;
}

} // namespace till
