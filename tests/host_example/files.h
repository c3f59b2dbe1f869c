#pragma once

#include <QByteArray>
#include <QDirIterator>
#include <QFile>
#include <QStringList>

#include <gtest/gtest.h>

/// The content of the file; a test that cannot read it fails.
[[nodiscard]] inline QByteArray contentOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

/// The folder of the contract, or a path below it.
[[nodiscard]] inline QString hostPath(const QString& below)
{
    return QStringLiteral(VANTIRO_HOST_FOLDER) + u'/' + below;
}

[[nodiscard]] inline QByteArray readme()
{
    return contentOf(hostPath(QStringLiteral("README.md")));
}

/// The paths of all files of the contract that match the pattern.
[[nodiscard]] inline QStringList hostFiles(const QString& pattern)
{
    QStringList paths;
    QDirIterator walk(QStringLiteral(VANTIRO_HOST_FOLDER), { pattern }, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        paths.append(walk.next());
    }
    return paths;
}
