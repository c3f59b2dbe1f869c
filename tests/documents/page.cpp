#include "tests/documents/page.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString root = QStringLiteral(VANTIRO_SOURCE_FOLDER "/");

[[nodiscard]] QStringList matches(const QString& text, const QString& pattern)
{
    QStringList found;
    for (const QRegularExpressionMatch& match : QRegularExpression(pattern).globalMatch(text)) {
        found.append(match.captured(1));
    }
    return found;
}

/// As the sites that show such pages make it: lower case, no punctuation, hyphens for blanks.
[[nodiscard]] QString anchorOf(const QString& heading)
{
    static const QRegularExpression punctuation(uR"([^\w\- ])"_s, QRegularExpression::UseUnicodePropertiesOption);
    return heading.toLower().remove(punctuation).replace(u' ', u'-');
}

} // namespace

QString projectText(const QString& path)
{
    QFile file(root + path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

QStringList projectFiles(const QString& folder, const QStringList& patterns)
{
    QStringList files;
    QDirIterator iterator(root + folder, patterns, QDir::Files, QDirIterator::Subdirectories);
    while (iterator.hasNext()) {
        files.append(iterator.next().sliced(root.size()));
    }
    files.sort();
    EXPECT_FALSE(files.isEmpty()) << folder.toStdString();
    return files;
}

QStringList projectPages()
{
    return projectFiles(u"docs"_s, { u"*.md"_s })
        + QStringList { u"README.md"_s, u"CONTRIBUTING.md"_s, u"host/README.md"_s, u"sandbox/README.md"_s };
}

Page::Page(const QString& markdown)
{
    bool inBlock = false;
    for (const QString& line : markdown.split(u'\n')) {
        if (line.startsWith(u"```")) {
            inBlock = !inBlock;
            if (inBlock) {
                allBlocks.append({ heading, line.sliced(3).trimmed(), QString() });
            }
        } else if (inBlock) {
            allBlocks.last().text += line + u'\n';
        } else {
            takeLine(line);
        }
    }
    EXPECT_FALSE(inBlock) << "the last block is not closed";
}

void Page::takeLine(const QString& line)
{
    static const QRegularExpression codeSpan(u"`[^`]*`"_s);
    if (line.startsWith(u'#')) {
        const qsizetype level = line.indexOf(u' ');
        const QString title = line.sliced(level + 1).trimmed();
        path.resize(std::clamp<qsizetype>(level - 2, 0, path.size()));
        if (level > 1) { // the page's own title is no section
            path.append(title);
        }
        heading = path.join(u" / "_s);
        allAnchors.append(anchorOf(title));
    }
    if (line.startsWith(u'|')) {
        takeRow(line);
    } else {
        tableHead.clear();
    }
    const QString words = QString(line).remove(codeSpan);
    for (const QString& target : matches(words, uR"(\]\(([^)\s]+)\))"_s)) {
        allLinks.append({ target.section(u'#', 0, 0), target.section(u'#', 1) });
    }
    allQuotations += matches(words, u"\"([^\"]*)\""_s);
}

void Page::takeRow(const QString& line)
{
    static const QRegularExpression border(uR"((?<!\\)\|)"_s); // a bar behind a backslash belongs to its cell
    QStringList cells = line.split(border).sliced(1);
    cells.removeLast();
    for (QString& cell : cells) {
        cell = cell.trimmed().replace(u"\\|"_s, u"|"_s);
    }
    if (tableHead.isEmpty()) {
        tableHead = cells;
    } else if (cells.constFirst() != u"---") {
        EXPECT_EQ(cells.size(), tableHead.size()) << line.toStdString();
        allRows.append({ heading, tableHead, cells });
    }
}

const QList<Block>& Page::blocks() const
{
    return allBlocks;
}

const QList<Row>& Page::rows() const
{
    return allRows;
}

const QList<Link>& Page::links() const
{
    return allLinks;
}

const QStringList& Page::anchors() const
{
    return allAnchors;
}

const QStringList& Page::quotations() const
{
    return allQuotations;
}

QString codeOf(const QString& cell)
{
    const bool isSpan = cell.size() > 2 && cell.startsWith(u'`') && cell.endsWith(u'`') && cell.count(u'`') == 2;
    return isSpan ? cell.sliced(1, cell.size() - 2) : QString();
}
