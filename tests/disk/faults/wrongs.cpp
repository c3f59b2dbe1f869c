#include "tests/disk/faults/wrongs.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Where two lists of long texts part, a little of each; empty where they do not.
[[nodiscard]] std::string difference(const QStringList& found, const QStringList& expected)
{
    const QString left = found.join(u'\n');
    const QString right = expected.join(u'\n');
    if (left == right) {
        return std::string();
    }
    qsizetype at = 0;
    while (at < std::min(left.size(), right.size()) && left.at(at) == right.at(at)) {
        ++at;
    }
    constexpr qsizetype before = 40;
    constexpr qsizetype enough = 120;
    const qsizetype from = std::max<qsizetype>(at - before, 0);
    return (u"found …"_s + left.mid(from, enough) + u"…, expected …"_s + right.mid(from, enough) + u"…"_s)
        .toStdString();
}

class Wrongs {
public:
    void add(const std::string& about, const std::string& what)
    {
        if (!what.empty()) {
            text += (text.empty() ? "" : "; ") + about + ": " + what;
        }
    }

    void addUnless(bool well, const std::string& about, const std::string& what)
    {
        add(about, well ? std::string() : what);
    }

    std::string text;
};

/// The same text a second time says nothing new.
[[nodiscard]] QStringList once(QStringList texts)
{
    texts.removeDuplicates();
    return texts;
}

/// What the cashier has been told of the end of documents, against their states on disk.
void addEnds(Wrongs& wrongs, const ChildRun& run, const DiskBooks& books)
{
    qsizetype document = 0;
    for (const Attempt& attempt : run.attempts) {
        if (attempt.end == u"done" && (attempt.step == u"close" || attempt.step == u"cancel")) {
            const QString state = books.states.value(document++);
            const QString wanted = attempt.step == u"close" ? u" closed"_s : u" cancelled"_s;
            wrongs.addUnless(state.endsWith(wanted), "told that it is done",
                             (attempt.step + u" of "_s + state).toStdString());
        }
    }
}

} // namespace

std::string wrongAfterRepeating(const ChildRun& run, const DiskBooks& books, const DiskBooks& sound)
{
    Wrongs wrongs;
    wrongs.add("line", unclearLine(run));
    wrongs.add("refused", refusals(run));
    wrongs.add("damage", books.damage);
    const QString states = books.states.join(u", "_s);
    wrongs.addUnless(states == sound.states.join(u", "_s), "states", states.toStdString());
    wrongs.add("documents", difference(books.documents, sound.documents));
    wrongs.add("service", books.accountsFor(run.told));
    wrongs.addUnless(once(books.queue).size() == sound.queue.size(), "queue", std::to_string(books.queue.size()));
    return wrongs.text;
}

std::string wrongAfterSwitchingOff(const ChildRun& run, const DiskBooks& books, const QStringList& shapes)
{
    Wrongs wrongs;
    wrongs.add("line", unclearLine(run));
    wrongs.add("refused", refusals(run));
    wrongs.add("damage", books.damage);
    const bool failed = !run.attempts.isEmpty() && run.attempts.constLast().end == u"failed";
    const qsizetype done = run.attempts.size() - (failed ? 1 : 0);
    const qsizetype most = std::min(done + (failed ? 1 : 0), shapes.size() - 1);
    const QString found = books.shapes.join(u", "_s);
    wrongs.addUnless(found == shapes.at(done) || found == shapes.at(most), "shape",
                     found.toStdString() + " where there was " + shapes.at(done).toStdString());
    addEnds(wrongs, run, books);
    return wrongs.text;
}

std::string wrongAfterGoingOn(const ChildRun& run, const ChildRun& next, const DiskBooks& books)
{
    Wrongs wrongs;
    wrongs.add("line", unclearLine(next));
    wrongs.add("refused", refusals(next));
    wrongs.add("damage", books.damage);
    wrongs.add("open", books.states.filter(u"open"_s).join(u", "_s).toStdString());
    wrongs.add("service", books.accountsFor(run.told + next.told));
    return wrongs.text;
}

std::string wrongAfterFullDisk(const ChildRun& run, const DiskBooks& books, const DiskBooks& sound)
{
    Wrongs wrongs;
    wrongs.add("line", unclearLine(run));
    wrongs.add("damage", books.damage);
    ChildRun story = run;
    const Attempt withRoom = story.attempts.isEmpty() ? Attempt() : story.attempts.takeLast();
    const Attempt withoutRoom = story.attempts.isEmpty() ? Attempt() : story.attempts.takeLast();
    wrongs.add("refused", refusals(story));
    for (const Attempt& attempt : std::as_const(story.attempts)) {
        wrongs.addUnless(attempt.end != u"failed", "on the full disk", (attempt.step + u" failed"_s).toStdString());
    }
    wrongs.addUnless(withRoom.end == u"done", "room is back", ("open " + withRoom.end).toStdString());
    if (run.failures > 0) {
        wrongs.addUnless(withoutRoom.line == u"Ошибка базы данных кассы: на диске нет места для нового чека",
                         "a new cheque", ("open " + withoutRoom.end + ' ' + withoutRoom.line).toStdString());
    }
    QStringList documents = books.documents;
    wrongs.addUnless(!documents.isEmpty() && documents.takeLast().section(u' ', 1, 1) == u"open:", "the last document",
                     "is not open");
    wrongs.add("documents", difference(documents, sound.documents));
    wrongs.add("service", books.accountsFor(run.told));
    return wrongs.text;
}
