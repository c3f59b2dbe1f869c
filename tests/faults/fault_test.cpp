#include "tests/faults/expected_outcomes.h"
#include "tests/faults/fault_runs.h"
#include "tests/faults/faulty_server.h"
#include "tests/faults/till_at_a_fault.h"

#include <QSet>

#include <gtest/gtest.h>

#include <map>
#include <ostream>

using namespace Qt::StringLiterals;
using namespace faults;

// Every fault of a server at every operation: with no other server, with another one in good health, and with another
// one that has the same fault. The expected outcomes stand in the two tables, which are written by hand.

namespace {

constexpr int processesAtATime = 16; // most of them wait for a timeout

/// Set to "full", the environment variable makes the long form: every fault on both servers, every byte of every reply.
[[nodiscard]] bool isFull()
{
    return qEnvironmentVariable("VANTIRO_FAULTS") == u"full";
}

struct Row {
    ExpectedFault fault;
    QString arrangement;
    QString operation;

    [[nodiscard]] std::string name() const
    {
        return std::string(fault.name) + '_' + arrangement.toStdString() + '_' + operation.toStdString();
    }
};

void PrintTo(const Row& row, std::ostream* out)
{
    *out << row.name();
}

/// Both servers faulty cost the timeout twice: in the quick form a few faults stand for all.
[[nodiscard]] bool isTakenForBoth(const ExpectedFault& fault)
{
    static const QStringList quick {
        u"Refused"_s, u"SilentAfterTheRequest"_s, u"ClosedInTheBody"_s, u"Status503"_s, u"Page"_s, u"Fault"_s
    };
    return isFull() || quick.contains(QString::fromLatin1(fault.name));
}

[[nodiscard]] QList<Row> allRows()
{
    QList<Row> rows;
    for (const ExpectedFault& fault : expectedFaults()) {
        for (const QString& arrangement : { u"One"_s, u"Two"_s, u"Both"_s }) {
            for (const QString& operation : TillAtAFault::operations()) {
                if (arrangement != u"Both" || isTakenForBoth(fault)) {
                    rows.append({ fault, arrangement, operation });
                }
            }
        }
    }
    return rows;
}

/// In seconds. Where nobody is to wait for it, it is long enough for a machine that has other things to do.
[[nodiscard]] int timeoutOf(const ExpectedFault& fault)
{
    return fault.wait == Wait::timeout ? 1 : 5;
}

/// How long a row may keep its caller, in milliseconds: each server that keeps him, no longer than the timeout.
[[nodiscard]] int longestWait(const Row& row)
{
    constexpr int margin = 900;
    const int servers = row.arrangement == u"Both" ? 2 : 1;
    const int timeout = 1000 * timeoutOf(row.fault);
    return row.fault.wait == Wait::timeout ? servers * timeout + margin : timeout - margin;
}

[[nodiscard]] int shortestWait(const Row& row)
{
    return (row.arrangement == u"Both" ? 2000 : 1000) * timeoutOf(row.fault) - 50;
}

/// The rows that this run of the tests has been asked for, put together for the processes. Silent servers are asked by
/// more processes, since each request costs a second and more.
[[nodiscard]] QList<Batch> batchesOf(const QList<Row>& rows)
{
    QList<Batch> batches;
    for (const Row& row : rows) {
        const QString fault = QString::fromLatin1(row.fault.name);
        const qsizetype most = row.fault.wait == Wait::timeout ? 4 : 100;
        if (batches.isEmpty() || batches.constLast().fault != fault
            || batches.constLast().arrangement != row.arrangement || batches.constLast().operations.size() >= most) {
            batches.append({ fault, row.arrangement, timeoutOf(row.fault), {} });
        }
        batches.last().operations.append(row.operation);
    }
    return batches;
}

class EveryFault : public testing::TestWithParam<Row> {
protected:
    struct Seen {
        std::string outcome = "(the till has told nothing)";
        int wait = 0;
        std::string end; // of the process, when it was not a good one
    };

    /// All rows that are to run are run at once, before the first of them is looked at. A row that has waited too long
    /// is then run again with few others: a machine that has other things to do keeps everybody, and a fault that keeps
    /// its caller does so every time.
    static void SetUpTestSuite()
    {
        const QSet<QString> names = namesToRun();
        QList<Row> wanted = allRows();
        wanted.removeIf([&names](const Row& row) { return !names.contains(QString::fromStdString(row.name())); });
        keep(batchesOf(wanted), processesAtATime);
        for (int attempt = 0; attempt < 3; ++attempt) {
            wanted.removeIf([](const Row& row) { return seenOf(row).wait <= longestWait(row); });
            QList<Batch> alone;
            for (const Row& row : std::as_const(wanted)) {
                alone.append(
                    { QString::fromLatin1(row.fault.name), row.arrangement, timeoutOf(row.fault), { row.operation } });
            }
            keep(alone, 2);
        }
    }

    [[nodiscard]] static Seen seenOf(const Row& row)
    {
        const auto found = seen.find(row.name());
        return found == seen.cend() ? Seen() : found->second;
    }

private:
    static void keep(const QList<Batch>& batches, int processes)
    {
        const QList<RunOfABatch> runs = runAll(batches, processes);
        for (qsizetype at = 0; at < batches.size(); ++at) {
            const std::string row = batches[at].fault.toStdString() + '_' + batches[at].arrangement.toStdString() + '_';
            const std::string end = runs[at].well ? std::string() : "the till has failed: " + runs[at].errors;
            for (const QString& operation : batches[at].operations) {
                seen[row + operation.toStdString()] = { .end = end };
            }
            for (const Told& told : runs[at].told) {
                Seen& place = seen[row + told.operation.toStdString()];
                place.outcome = told.outcome;
                place.wait = told.wait;
            }
        }
    }

    /// The names of the rows that the filter leaves.
    [[nodiscard]] static QSet<QString> namesToRun()
    {
        const testing::TestSuite& suite = *testing::UnitTest::GetInstance()->current_test_suite();
        QSet<QString> names;
        for (int at = 0; at < suite.total_test_count(); ++at) {
            const testing::TestInfo& test = *suite.GetTestInfo(at);
            if (test.should_run()) {
                names.insert(QString::fromLatin1(test.name()).section(u'/', -1));
            }
        }
        return names;
    }

    static inline std::map<std::string, Seen> seen;
};

}

TEST_P(EveryFault, IsTold)
{
    const Row& row = GetParam();
    const Seen rowSeen = seenOf(row);

    EXPECT_EQ(rowSeen.end, "");
    EXPECT_EQ(rowSeen.outcome, expectedOutcome(row.fault, row.arrangement, row.operation))
        << "after " << rowSeen.wait << " ms";
    EXPECT_LE(rowSeen.wait, longestWait(row));
    if (row.fault.wait == Wait::timeout) {
        EXPECT_GE(rowSeen.wait, shortestWait(row)) << "the fault has not kept anybody";
    }
}

INSTANTIATE_TEST_SUITE_P(Row, EveryFault, testing::ValuesIn(allRows()),
                         [](const auto& row) { return row.param.name(); });

TEST(TableOfFaults, KnowsEveryFaultAndNoOther)
{
    QStringList expected;
    for (const ExpectedFault& fault : expectedFaults()) {
        expected.append(QString::fromLatin1(fault.name));
    }
    EXPECT_EQ(expected.removeDuplicates(), 0);
    QStringList known = faultNames();
    expected.sort();
    known.sort();
    EXPECT_EQ(expected.join(u'\n').toStdString(), known.join(u'\n').toStdString());
    EXPECT_GE(expected.size(), 25);
}

TEST(TableOfOperations, KnowsEveryOperationAndNoOther)
{
    QStringList expected;
    for (const ExpectedOperation& operation : expectedOperations()) {
        expected.append(QString::fromLatin1(operation.name));
    }
    expected += { u"Ping"_s, u"OfflineAccrual"_s };
    EXPECT_EQ(expected.join(u'\n').toStdString(), TillAtAFault::operations().join(u'\n').toStdString());
}
