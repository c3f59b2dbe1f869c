#include "tests/faults/expected_outcomes.h"
#include "tests/faults/fault_runs.h"
#include "tests/faults/faulty_server.h"
#include "tests/faults/till_at_a_fault.h"

#include <gtest/gtest.h>

#include <map>

using namespace Qt::StringLiterals;
using namespace faults;

// A reply that ends before its last byte is no reply, wherever it ends.

namespace {

constexpr int timeout = 5; // seconds; nobody is to wait for it

/// In the quick form the operation that takes money stands for all; the others are cut in the phases of the reply.
[[nodiscard]] QStringList operationsToCut()
{
    return qEnvironmentVariable("VANTIRO_FAULTS") == u"full" ? TillAtAFault::operations()
                                                             : QStringList { u"SubtractBonus45"_s };
}

struct Cut {
    QString kind;
    QString arrangement;
    QString operation;
};

[[nodiscard]] QList<Cut> cuts()
{
    QList<Cut> all;
    for (const QString& operation : operationsToCut()) {
        for (const QString& arrangement : { u"One"_s, u"Two"_s }) {
            all.append({ u"CutAfterEachByte"_s, arrangement, operation });
            all.append({ u"ResetAfterEachByte"_s, arrangement, operation });
        }
    }
    return all;
}

void PrintTo(const Cut& cut, std::ostream* out)
{
    *out << (cut.kind + u' ' + cut.operation).toStdString();
}

class EveryByte : public testing::TestWithParam<Cut> {
protected:
    static void SetUpTestSuite()
    {
        QList<Batch> batches;
        for (const Cut& cut : cuts()) {
            batches.append({ cut.kind, cut.arrangement, timeout, { cut.operation } });
        }
        const QList<RunOfABatch> all = runAll(batches, 4);
        for (qsizetype at = 0; at < batches.size(); ++at) {
            runs[keyOf(cuts()[at])] = all[at];
        }
    }

    [[nodiscard]] static std::string keyOf(const Cut& cut)
    {
        return (cut.kind + u'_' + cut.arrangement + u'_' + cut.operation).toStdString();
    }

    static inline std::map<std::string, RunOfABatch> runs;
};

}

TEST_P(EveryByte, EndsTheReply)
{
    const Cut& cut = GetParam();
    const RunOfABatch& run = runs[keyOf(cut)];
    ASSERT_TRUE(run.well) << run.errors;

    const ExpectedFault lost { "", Exchange::lost, Ping::down, Delivery::waits };
    const std::string expected = expectedOutcome(lost, cut.arrangement, cut.operation);
    int bytes = 0;
    for (const Told& told : run.told) {
        ASSERT_EQ(told.outcome, expected) << "the reply ends after " << bytes << " bytes";
        ASSERT_LT(told.wait, 1000 * timeout) << "the reply ends after " << bytes << " bytes";
        ++bytes;
    }
    EXPECT_EQ(bytes, sizeOfReply(TillAtAFault::actionOf(cut.operation)));
}

INSTANTIATE_TEST_SUITE_P(Reply, EveryByte, testing::ValuesIn(cuts()), [](const auto& row) {
    return (row.param.kind + u'_' + row.param.arrangement + u'_' + row.param.operation).toStdString();
});
