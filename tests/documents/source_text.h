#pragma once

#include <QList>
#include <QString>

/// A text in a source file of C++. A plain value.
struct Literal {
    QString text; // neighbours joined; quotation marks and backslashes are themselves, other escapes as written
    QString before; // the code before it, without comments, white space shortened to one blank; its last part
};

/// The texts of a source file in their order: string literals of each kind, but for those of `#include`.
[[nodiscard]] QList<Literal> literalsOf(const QString& source);
