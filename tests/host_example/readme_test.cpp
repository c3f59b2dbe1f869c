#include "files.h"

#include <QRegularExpression>
#include <QSet>

#include <gmock/gmock.h>

// The page repeats what the headers and the examples say; here it is held to them.

namespace {

using Names = QSet<QString>;

/// What the first group of the pattern takes from each line of the text.
[[nodiscard]] Names namesIn(const QByteArray& text, const char* pattern)
{
    const QRegularExpression expression(QString::fromLatin1(pattern), QRegularExpression::MultilineOption);
    Names names;
    for (const QRegularExpressionMatch& match : expression.globalMatch(QString::fromUtf8(text))) {
        names.insert(match.captured(1));
    }
    return names;
}

[[nodiscard]] Names namesInHeaders(const char* pattern)
{
    Names names;
    for (const QString& path : hostFiles(QStringLiteral("*.h"))) {
        names.unite(namesIn(contentOf(path), pattern));
    }
    return names;
}

/// The names in backquotes in the tables of the page, without the namespaces and template arguments around them.
[[nodiscard]] Names namesInTables()
{
    QByteArray tables;
    for (const QByteArray& line : readme().split('\n')) {
        tables += line.startsWith('|') ? line + '\n' : QByteArray();
    }
    return namesIn(tables, "`(?:\\w+::)*(\\w+)(?:<[^`]*>)?`");
}

} // namespace

TEST(HostReadme, ShowsEveryExampleAsItIs)
{
    const QStringList examples = hostFiles(QStringLiteral("*.cpp"));
    EXPECT_EQ(examples.size(), 2);
    for (const QString& path : examples) {
        EXPECT_THAT(readme().toStdString(), testing::HasSubstr("```cpp\n" + contentOf(path).toStdString() + "```\n"))
            << path.toStdString();
    }
}

TEST(HostReadme, ExamplesIncludeTheContractAndQtOnly)
{
    for (const QString& path : hostFiles(QStringLiteral("*.cpp"))) {
        const Names included = namesIn(contentOf(path), "^#include ([\"<].*)$");
        EXPECT_FALSE(included.isEmpty());
        for (const QString& name : included) {
            EXPECT_TRUE(name.startsWith(u"\"host/") || name.startsWith(u"<Q")) << name.toStdString();
        }
    }
}

TEST(HostReadme, NamesEveryHeaderWithAMetaObjectForMoc)
{
    Names headers;
    for (const QString& path : hostFiles(QStringLiteral("*.h"))) {
        if (!namesIn(contentOf(path), "^    (Q_OBJECT|Q_GADGET)$").isEmpty()) {
            headers.insert(path.sliced(hostPath(QString()).size()));
        }
    }
    EXPECT_EQ(headers.size(), 8);
    EXPECT_EQ(namesIn(readme(), "^    \\$\\{contract\\}/host/([\\w/]+\\.h)\\)?$"), headers);
}

TEST(HostReadme, NamesEveryInstantiation)
{
    const Names declared = namesInHeaders("^extern template class VANTIRO_HOST_API (\\w+<\\w+>);$");
    EXPECT_EQ(declared.size(), 11);
    EXPECT_EQ(namesIn(readme(), "^template class (\\w+<\\w+>);$"), declared);
}

TEST(HostReadme, HasEveryClassOfTheContractInItsTables)
{
    const Names classes = namesInHeaders("^(?:class|struct) VANTIRO_HOST_API (\\w+)");
    EXPECT_TRUE(classes.contains(QStringLiteral("BasicLoyaltySystem")));
    EXPECT_TRUE(classes.contains(QStringLiteral("Result"))); // of a nested namespace
    EXPECT_EQ(classes - namesInTables(), Names());
}

TEST(HostReadme, DefinesEveryTagOfTheHeaders)
{
    const Names tags = namesInHeaders("(?<!\\[)\\[([a-z-]+)[:\\]]");
    const Names known { QStringLiteral("cheque-thread"), QStringLiteral("any-thread"), QStringLiteral("blocks") };
    EXPECT_EQ(tags, known);
    EXPECT_EQ(namesIn(readme(), "^\\| `\\[([a-z-]+)\\]` \\|"), known);
}
