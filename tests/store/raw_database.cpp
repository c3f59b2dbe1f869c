#include "tests/store/raw_database.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QUuid>

#include <gtest/gtest.h>

RawDatabase::RawDatabase(const QString& file)
    : name(QUuid::createUuid().toString())
    , database(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name))
{
    database.setDatabaseName(file);
    EXPECT_TRUE(database.open()) << database.lastError().text().toStdString();
}

RawDatabase::~RawDatabase()
{
    database.close();
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
}

void RawDatabase::run(const QString& statement)
{
    QSqlQuery query(database);
    ASSERT_TRUE(query.exec(statement)) << query.lastError().text().toStdString();
}

QStringList RawDatabase::rows(const QString& statement) const
{
    QSqlQuery query(database);
    if (!query.exec(statement)) {
        return { u'(' + query.lastError().text() + u')' };
    }
    QStringList found;
    while (query.next()) {
        QStringList columns;
        for (int column = 0; column < query.record().count(); ++column) {
            columns.append(query.value(column).toString());
        }
        found.append(columns.join(u'|'));
    }
    return found;
}

std::string RawDatabase::text(const QString& statement) const
{
    return rows(statement).join(u' ').toStdString();
}
