#include "tests/store/store_test.h"
#include "till/document/cheque.h"
#include "till/store/document_states.h"
#include "till/store/store.h"

#include <QTemporaryDir>

#include <thread>

using namespace Qt::StringLiterals;
using till::store::DocumentState;

namespace {

[[nodiscard]] QSharedPointer<till::Cheque> cheque(int number, const QString& identity = {})
{
    till::ChequeHead head;
    head.number = number;
    return QSharedPointer<till::Cheque>::create(head, identity);
}

class HighestNumber : public StoreTest {
protected:
    HighestNumber()
    {
        till::store::open(folder());
    }
};

} // namespace

TEST_F(HighestNumber, IsNoneInAnEmptyStore)
{
    EXPECT_EQ(till::store::highestNumber(), 0);
}

TEST_F(HighestNumber, IsThatOfAnyStateInAnyOrder)
{
    till::store::saveAs(cheque(7), DocumentState::closed);
    till::store::saveAs(cheque(1042), DocumentState::cancelled);
    till::store::saveAs(cheque(9), DocumentState::aside);

    EXPECT_EQ(till::store::highestNumber(), 1042);
}

TEST_F(HighestNumber, FollowsWhatIsSavedAfterItWasAskedFor)
{
    till::store::saveAs(cheque(7), DocumentState::closed);
    ASSERT_EQ(till::store::highestNumber(), 7);

    till::store::saveAs(cheque(8), DocumentState::open);
    EXPECT_EQ(till::store::highestNumber(), 8);
    till::store::saveAs(cheque(3), DocumentState::open);
    EXPECT_EQ(till::store::highestNumber(), 8);
}

TEST_F(HighestNumber, FollowsADocumentThatGetsAnotherNumber)
{
    till::store::saveAs(cheque(5), DocumentState::closed);
    till::store::saveAs(cheque(7, u"aside"_s), DocumentState::aside);
    ASSERT_EQ(till::store::highestNumber(), 7);

    till::store::saveAs(cheque(12, u"aside"_s), DocumentState::open);
    EXPECT_EQ(till::store::highestNumber(), 12);
    till::store::saveAs(cheque(2, u"aside"_s), DocumentState::open);
    EXPECT_EQ(till::store::highestNumber(), 5);
}

TEST_F(HighestNumber, SeesWhatStoodInTheStoreBefore)
{
    till::store::saveAs(cheque(1042), DocumentState::closed);
    till::store::close();
    till::store::open(folder());

    EXPECT_EQ(till::store::highestNumber(), 1042);
}

TEST_F(HighestNumber, IsThatOfTheStoreThatIsOpen)
{
    const QTemporaryDir other;
    till::store::saveAs(cheque(1042), DocumentState::closed);
    ASSERT_EQ(till::store::highestNumber(), 1042);

    till::store::open(other.path());
    EXPECT_EQ(till::store::highestNumber(), 0);
    till::store::saveAs(cheque(3), DocumentState::closed);
    EXPECT_EQ(till::store::highestNumber(), 3);
    till::store::close();
}

TEST_F(HighestNumber, SeesADocumentThatAnotherConnectionHasAdded)
{
    till::store::saveAs(cheque(7), DocumentState::closed);
    ASSERT_EQ(till::store::highestNumber(), 7);

    std::thread([] {
        till::store::saveAs(cheque(11), DocumentState::closed);
        till::store::releaseConnection();
    }).join();
    EXPECT_EQ(till::store::highestNumber(), 11);
}
