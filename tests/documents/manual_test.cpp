#include "tests/documents/page.h"
#include "till/script/player.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

// The manual page of the till names every step of a script, with all that can stand in it, and no other.

namespace {

/// What a request of troff prints of its arguments: fonts take turns without blanks between them (.BR, .BI), or one
/// font has them all (.B).
[[nodiscard]] QString printed(const QString& line)
{
    static const QRegularExpression argument(uR"re("([^"]*)"|(\S+))re"_s);
    static const QRegularExpression font(uR"(\\f[BIPR])"_s);
    const QString request = line.section(u' ', 0, 0);
    const QString joint = request == u".BR" || request == u".BI" ? u""_s : u" "_s;
    QStringList texts;
    for (const QRegularExpressionMatch& match :
         argument.globalMatch(request.startsWith(u'.') ? line.sliced(request.size()) : line)) {
        texts.append(match.captured(match.hasCaptured(1) ? 1 : 2));
    }
    return texts.join(joint).remove(font).replace(u"\\-"_s, u"-"_s).replace(u"\\[u2026]"_s, u"…"_s);
}

/// The heads of the paragraphs of a section, `.SH` and `.SS` alike.
[[nodiscard]] QStringList paragraphHeads(const QString& page, const QString& section)
{
    QStringList heads;
    bool isInside = false;
    bool isHead = false;
    for (const QString& line : page.split(u'\n')) {
        if (line.startsWith(u".SH ") || line.startsWith(u".SS ")) {
            isInside = line.sliced(4) == section;
        } else if (line == u".TP" || line == u".TQ") {
            isHead = isInside;
            continue;
        } else if (isHead) {
            heads.append(printed(line));
        }
        isHead = false;
    }
    heads.sort();
    return heads;
}

/// The forms of all verbs, each by itself.
[[nodiscard]] QStringList forms()
{
    QStringList all;
    for (const till::VerbHelp& verb : till::Player::verbs()) {
        all.append(verb.usage.split(u"; "_s));
    }
    all.sort();
    return all;
}

const QString manual = u"docs/man/vantiro-till.1"_s;

} // namespace

TEST(Manual, NamesEveryStepOfAScript)
{
    QStringList expected = forms();
    expected.removeIf([](const QString& form) { return form.startsWith(u"expect "); });
    EXPECT_GE(expected.size(), 20);
    expected.append(u"help and quit"_s); // the shell's own
    expected.sort();
    EXPECT_EQ(paragraphHeads(projectText(manual), u"SCRIPTS"_s), expected);
}

TEST(Manual, NamesAllThatCanBeExpected)
{
    QStringList expected = forms().filter(QRegularExpression(u"^expect "_s));
    EXPECT_GE(expected.size(), 8);
    expected.replaceInStrings(QRegularExpression(u"^expect "_s), u""_s);
    expected.sort();
    EXPECT_EQ(paragraphHeads(projectText(manual), u"What can be expected"_s), expected);
}

TEST(Manual, HeadsAreReadAsTheyArePrinted)
{
    const QString page = uR"(.SH OTHER
.TP
.B none
.SH STEPS
Words.
.TP
.BR open " " sale | return " [\fINUMBER\fP]"
Text.
.TQ
.B scan \fICODE\fP \fR[\fPno\-points\fR]\fP
.TP
[\fBno\fP] \fBshown\fP|\fBprinted\fP \fITEXT\fP\[u2026]
.SS MORE
.TP
.B none
)"_s;
    EXPECT_EQ(paragraphHeads(page, u"STEPS"_s),
              (QStringList { "[no] shown|printed TEXT…", "open sale|return [NUMBER]", "scan CODE [no-points]" }));
}
