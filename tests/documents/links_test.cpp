#include "tests/documents/page.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// No page points to nothing.

TEST(Links, LeadToWhatIsThere)
{
    int followed = 0;
    for (const QString& name : projectPages()) {
        const Page page(projectText(name));
        for (const Link& link : page.links()) {
            if (link.target.contains(u"://")) {
                continue;
            }
            const QString target
                = link.target.isEmpty() ? name : QDir::cleanPath(QFileInfo(name).path() + u'/' + link.target);
            ASSERT_TRUE(QFileInfo::exists(QStringLiteral(VANTIRO_SOURCE_FOLDER "/") + target))
                << name.toStdString() << " points to " << link.target.toStdString();
            if (!link.anchor.isEmpty()) {
                EXPECT_TRUE(Page(projectText(target)).anchors().contains(link.anchor))
                    << name.toStdString() << " points to " << target.toStdString() << '#' << link.anchor.toStdString();
            }
            ++followed;
        }
    }
    EXPECT_GT(followed, 10);
}
