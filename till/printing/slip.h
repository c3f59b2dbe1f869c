#pragma once

#include <QList>
#include <QString>

#include <optional>
#include <variant>

// A slip as it was read: what stands on the paper, in order, before anything is said about the paper. Plain values.
namespace till {

/// What is wrong with a slip, as one sentence for the person who looks into it.
struct SlipFinding {
    qint64 line = 0; // of the text that was read, from 1; 0 for the slip as a whole
    QString text;
};

enum class SlipAlign { none, left, center, right };

/// The sizes of the print form: smaller is the printer's second font, normal its first one, enlarge that one doubled.
enum class SlipSize { smaller, normal, enlarge };

/// A text, which ends its line. It may hold line feeds and may be longer than the paper is wide.
struct SlipText {
    qint64 line = 0;
    QString text;
    SlipAlign align = SlipAlign::none;
    SlipSize size = SlipSize::normal;
};

/// A line filled with the symbols, over and over.
struct SlipRule {
    qint64 line = 0;
    QString symbols; // possibly none
    SlipSize size = SlipSize::normal;
};

struct SlipBreak {
    qint64 line = 0;
};

enum class SlipCodeKind { ean13, qr, unknown };

struct SlipCode {
    qint64 line = 0;
    SlipCodeKind kind = SlipCodeKind::unknown;
    QString type; // as the form names it
    QString content;
    bool drawable = false; // else a finding says why, and the content is printed as text
    // of an EAN-13 alone, in the printer's dots
    int moduleWidth = 2;
    int height = 162;
    bool withDigits = false;
};

using SlipBlock = std::variant<SlipText, SlipRule, SlipBreak, SlipCode>;

enum class SlipKind {
    printForm,
    serviceForm, // what the loyalty service sends, before the plug-in has made a print form of it
    plainText, // everything else: one text, as it stands
};

struct Slip {
    SlipKind kind = SlipKind::plainText;
    QList<SlipBlock> blocks;
    QList<SlipFinding> findings;
};

} // namespace till
