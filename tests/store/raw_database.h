#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <string>

/// A database file as a program sees it that knows nothing of the till: no pragma is set. [cheque-thread]
class RawDatabase {
public:
    explicit RawDatabase(const QString& file);
    ~RawDatabase();

    /// Runs a statement; the test fails when that cannot be done.
    void run(const QString& statement);
    /// The rows that a statement yields, each as its columns joined by "|"; a reason in brackets when it fails.
    [[nodiscard]] QStringList rows(const QString& statement) const;
    /// The same rows, joined by a blank.
    [[nodiscard]] std::string text(const QString& statement) const;

private:
    Q_DISABLE_COPY_MOVE(RawDatabase)

    QString name;
    QSqlDatabase database;
};
