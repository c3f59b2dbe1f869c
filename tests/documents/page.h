#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// The text of a file of the project, named from its root; fails the test when it cannot be read.
[[nodiscard]] QString projectText(const QString& path);
/// The names of the files below a folder of the project that match one of the patterns, from the root, sorted.
[[nodiscard]] QStringList projectFiles(const QString& folder, const QStringList& patterns);
/// The pages of docs/, and those that stand beside the code, named likewise.
[[nodiscard]] QStringList projectPages();

/// A fenced block of a page. A plain value.
struct Block {
    QString heading; // of the sections that it stands in: "Outer / inner"
    QString language; // empty when none is named
    QString text;
};

/// A row of a table of a page. A plain value.
struct Row {
    QString heading; // of the sections that it stands in: "Outer / inner"
    QStringList head; // the cells of the table's first row
    QStringList cells; // without the blanks around them
};

/// A link of a page. A plain value.
struct Link {
    QString target; // without the anchor; empty for one within the page
    QString anchor;
};

/// What a page in Markdown holds. Headings, rows and links within fenced blocks are the block's. A value.
class Page {
public:
    explicit Page(const QString& markdown);

    [[nodiscard]] const QList<Block>& blocks() const;
    [[nodiscard]] const QList<Row>& rows() const;
    [[nodiscard]] const QList<Link>& links() const;
    /// The names under which its headings are linked to.
    [[nodiscard]] const QStringList& anchors() const;
    /// What stands in double quotation marks outside of blocks and code spans.
    [[nodiscard]] const QStringList& quotations() const;

private:
    void takeLine(const QString& line);
    void takeRow(const QString& line);

    QStringList path; // of headings
    QString heading;
    QStringList tableHead;
    QList<Block> allBlocks;
    QList<Row> allRows;
    QList<Link> allLinks;
    QStringList allAnchors;
    QStringList allQuotations;
};

/// The content of a cell that is one code span, and nothing else; null when it is not.
[[nodiscard]] QString codeOf(const QString& cell);
