#pragma once

#include "till/printing/slip.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <string>

/// What a process has left behind.
struct Ended {
    int status = -1; // -1 for one that did not end by itself
    QByteArray output;
    QByteArray errors;
};

/// A folder of the test's own, and a till in a process of its own that prints into it.
class PrintingTill {
public:
    /// `printing_probe slip`, with the application that pictures need. The file is the input of the process for "-".
    [[nodiscard]] Ended slip(const QString& file, const QString& format, int columns,
                             const QString& output = QString()) const;
    /// `printing_probe` with these arguments and variables added to its environment ("NAME=value").
    [[nodiscard]] Ended run(const QStringList& arguments, const QStringList& environment = {},
                            const QByteArray& input = QByteArray()) const;

    /// A file in the folder.
    [[nodiscard]] QString path(const QString& name) const;
    /// Writes the file, and gives its path.
    [[nodiscard]] QString write(const QString& name, const QByteArray& content) const;
    [[nodiscard]] static QByteArray contentOf(const QString& path);

private:
    QTemporaryDir folder;
};

/// A form that comes with these tests.
[[nodiscard]] QString sampleForm(const QString& name);

/// A print form with this content, on one line.
[[nodiscard]] QString reportOf(const QString& content);

/// "line: text", one finding a line.
[[nodiscard]] std::string told(const QList<till::SlipFinding>& findings);

/// What another reader finds in the picture: its codes as "kind:text", sorted, one a line.
[[nodiscard]] std::string codesIn(const QString& picture);
