#include "tests/documents/page.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// The folders include what the page on architecture allows them, and nothing else.

namespace {

/// The folders that the text names: "host" for `host/`.
[[nodiscard]] QStringList foldersIn(const QString& text)
{
    QStringList folders;
    const QRegularExpression folder(u"`([a-z]+)/`"_s);
    for (const QRegularExpressionMatch& match : folder.globalMatch(text)) {
        folders.append(match.captured(1));
    }
    return folders;
}

/// The folders of the project whose headers the sources of the folder include.
[[nodiscard]] QStringList includedBy(const QString& folder)
{
    QStringList included;
    const QRegularExpression include(uR"(^#include "([a-z]+)/)"_s, QRegularExpression::MultilineOption);
    for (const QString& file : projectFiles(folder, { u"*.cpp"_s, u"*.h"_s })) {
        const QString text = projectText(file);
        for (const QRegularExpressionMatch& match : include.globalMatch(text)) {
            included.append(match.captured(1));
        }
    }
    included.removeDuplicates();
    included.removeAll(folder);
    return included;
}

} // namespace

TEST(ArchitecturePage, AllowsWhatEachFolderIncludes)
{
    QStringList held;
    const Page page(projectText(u"docs/architecture.md"_s));
    for (const Row& row : page.rows()) {
        if (row.head.constFirst() != u"folder" || row.cells[2] == u"everything") {
            continue;
        }
        const QStringList allowed = foldersIn(row.cells[2]);
        for (const QString& folder : foldersIn(row.cells[0])) {
            for (const QString& included : includedBy(folder)) {
                EXPECT_TRUE(allowed.contains(included))
                    << folder.toStdString() << " includes " << included.toStdString();
            }
            held.append(folder);
        }
    }
    EXPECT_EQ(held.join(u' ').toStdString(), "host client cheque bonus reports front till sandbox");
}
