#include "tests/disk/faults/till_life.h"

#include "host/facilities/exceptions.h"
#include "tests/disk/faults/telling.h"
#include "till/desk/desk_error.h"
#include "till/store/store.h"

#include <QFile>
#include <QJsonArray>

#include <unistd.h>

#include <cerrno>

using namespace Qt::StringLiterals;

TillLife::TillLife(const QString& pluginFile, const QString& itsFolder, FailingDisk& itsDisk, Defect itsDefect)
    : disk(itsDisk)
    , defect(itsDefect)
    , folder(itsFolder)
    , day(pluginFile, itsFolder)
{
    day.service.heard = [](const QString& operation, const QByteArray& body) {
        tell({ { u"heard"_s, operation }, { u"body"_s, QString::fromUtf8(body) } });
    };
    if (defect == Defect::hasNoJournal) {
        QSqlQuery query = till::store::prepare(u"PRAGMA journal_mode=OFF"_s);
        till::store::execute(query);
    }
}

TillLife::End TillLife::attempt(const QString& step)
{
    QJsonObject fact { { u"step"_s, step } };
    End end = End::done;
    try {
        fact.insert(u"end"_s, day.perform(step) ? u"done"_s : u"false"_s);
    } catch (const till::DeskError& error) {
        fact.insert(u"end"_s, u"refused: "_s + error.text());
        end = End::refused;
    } catch (const BasicException& failure) {
        if (defect == Defect::swallows) {
            fact.insert(u"end"_s, u"done"_s);
        } else {
            fact.insert(u"end"_s, u"failed"_s);
            fact.insert(u"line"_s, defect == Defect::saysItInEnglish ? u"disk I/O error"_s : failure.tr().ru());
            end = End::storeFailed;
        }
    }
    fact.insert(u"shown"_s, QJsonArray::fromStringList(day.shown()));
    tell(fact);
    return end;
}

/// The cashier tries again while the disk fails, and again when it works.
void TillLife::repeat(const QString& step)
{
    if (disk.failsOn()) {
        static_cast<void>(attempt(step));
    }
    disk.heal();
    static_cast<void>(attempt(step));
    if (defect == Defect::repeatsTwice) {
        static_cast<void>(attempt(step));
    }
}

void TillLife::work(const QString& story, bool repeats)
{
    const QStringList steps = TillDay::story(story);
    for (const QString& step : steps) {
        if (attempt(step) == End::storeFailed) {
            if (!repeats) {
                ::_exit(0);
            }
            repeat(step);
        }
    }
    tell({ { u"failures"_s, disk.failures() } });
}

void TillLife::workUntil(const QString& story, int count)
{
    const QStringList steps = TillDay::story(story).first(count);
    for (const QString& step : steps) {
        static_cast<void>(attempt(step));
    }
}

void TillLife::workOnFullDisk(const QString& story, int fullFrom)
{
    const QStringList steps = TillDay::story(story);
    for (int i = 0; i < steps.size(); ++i) {
        if (i == fullFrom) {
            if (defect == Defect::hasNoBallast) {
                QFile::remove(folder + u"/till.ballast"_s);
            }
            disk.leaveRoom(0);
        }
        static_cast<void>(attempt(steps.at(i)));
    }
    static_cast<void>(attempt(u"open"_s));
    tell({ { u"failures"_s, disk.failures() } });
    disk.heal();
    static_cast<void>(attempt(u"open"_s));
}

void TillLife::workOnClosedDisk(const QString& story, int closedFrom)
{
    const QStringList steps = TillDay::story(story);
    for (int i = 0; i < steps.size(); ++i) {
        if (i == closedFrom) {
            disk.fail({ DiskFault::Of::all, 1, EROFS, true });
        }
        if (attempt(steps.at(i)) == End::storeFailed) {
            repeat(steps.at(i));
        }
    }
    tell({ { u"failures"_s, disk.failures() } });
}

void TillLife::goOn()
{
    const bool was = day.checkout().restore();
    tell({ { u"restored"_s, was }, { u"open"_s, day.checkout().isOpen() } });
    if (!day.checkout().isOpen()) {
        return;
    }
    static_cast<void>(day.shown());
    if (day.checkout().document()->getPositionCount() == 0) {
        static_cast<void>(attempt(u"cancel"_s));
        return;
    }
    if (day.checkout().due() > 0.0) {
        static_cast<void>(attempt(u"cash"_s));
    }
    static_cast<void>(attempt(u"close"_s));
}
