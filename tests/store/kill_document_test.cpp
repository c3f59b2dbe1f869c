#include "host/framework/documents_dao.h"
#include "tests/store/child_process.h"
#include "tests/store/kill_moments.h"
#include "tests/store/numbered_records.h"
#include "tests/store/raw_database.h"
#include "tests/store/store_test.h"
#include "till/store/document_json.h"
#include "till/store/store.h"

#include <iostream>

using namespace Qt::StringLiterals;

namespace {

class DocumentOfAKilledTill : public StoreTest {
protected:
    /// The version that the till finds that is started next, 0 when there is none. It is checked to be whole.
    [[nodiscard]] int found() const
    {
        till::store::open(folder());
        const auto document = DocumentsDao().getDocument(u"kept"_s, 0).dynamicCast<till::Cheque>();
        till::store::close();
        if (!document) {
            return 0;
        }
        const int number = document->getChequeNumber();
        const auto expected = numberedVersion(number);
        expected->head.openTime = document->getOpenTime();
        EXPECT_TRUE(till::toJson(document) == till::toJson(expected)) << number;
        return number;
    }
};

} // namespace

TEST_F(DocumentOfAKilledTill, IsTheVersionThatWasSavedLastOrTheOneInFlight)
{
    std::cout << KillMoments::printed() << '\n';
    KillMoments moments;
    int saved = 0;
    int told = 0;
    int inFlight = 0;
    for (int kill = 0; kill < 60; ++kill) {
        SCOPED_TRACE(kill);
        ChildProcess child({ u"save"_s, folder(), QString::number(saved + 1) });
        moments.killAtOne(child);
        ASSERT_FALSE(HasFailure());
        const QList<int> accepted = child.told();
        const int last = accepted.isEmpty() ? saved : accepted.constLast();
        ASSERT_EQ(last, saved + accepted.size());

        const int version = found();
        ASSERT_GE(version, last);
        ASSERT_LE(version, last + 1);
        ASSERT_EQ(RawDatabase(file()).text(u"PRAGMA integrity_check"_s), "ok");
        inFlight += version > last ? 1 : 0;
        told += static_cast<int>(accepted.size());
        saved = version;
    }
    std::cout << "versions: " << saved << ", in flight and there: " << inFlight << '\n';

    EXPECT_GE(told, 60);
}
