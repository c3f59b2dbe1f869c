#include "host/facilities/exceptions.h"
#include "tests/checkout/end_of_cheque.h"

using namespace Qt::StringLiterals;

// The end of a cheque is told at least once, always with the same text and identity, wherever the till dies and
// whichever save fails; and it is never taken for done before it is.

namespace {

/// The last step of a cheque that nothing disturbs.
struct Undisturbed {
    std::string cheque; // what is told
    int writes = 0; // saves and queued messages
    int posts = 0;
};

class EndOfChequeTest : public EndOfCheque {
protected:
    [[nodiscard]] std::string ended() const
    {
        return GetParam().cancels ? "cancelled" : "closed";
    }

    [[nodiscard]] Undisturbed undisturbed()
    {
        constexpr int plenty = 100'000;
        const int number = nextNumber++;
        prepare(number);
        failStoreAfter(plenty);
        EXPECT_TRUE(finish());
        Undisturbed reference { {}, writesMade(plenty), posts };
        EXPECT_EQ(state(number), ended());
        QStringList identities;
        const QStringList cheques = toldOf(number, &identities);
        EXPECT_EQ(cheques.size(), 1) << "told once";
        reference.cheque = cheques.join(u'\n').toStdString();
        return reference;
    }

    /// At least once, and nothing else. A till that has not died remembers what it has told.
    void expectTold(int number, const Undisturbed& reference, bool died = true)
    {
        QStringList identities;
        const QStringList cheques = toldOf(number, &identities);
        EXPECT_GE(cheques.size(), 1) << "lost";
        if (!died) {
            EXPECT_EQ(cheques.size(), 1) << "doubled";
        }
        EXPECT_EQ(identities.size(), 1) << "one cheque is one cheque";
        for (const QString& cheque : cheques) {
            EXPECT_EQ(cheque.toStdString(), reference.cheque);
        }
    }

    int nextNumber = 7301; // digits that stand nowhere else in a cheque
};

} // namespace

TEST_P(EndOfChequeTest, ThatDiesAtAnySaveIsFinishedByTheRestart)
{
    const Undisturbed reference = undisturbed();
    ASSERT_GE(reference.writes, 2);
    for (int good = 0; good < reference.writes; ++good) {
        SCOPED_TRACE(good);
        const int number = nextNumber++;
        prepare(number);
        failStoreAfter(good);
        EXPECT_THROW((void)finish(), BasicException);
        restart();
        restoreAndFinish();
        EXPECT_EQ(state(number), ended());
        expectTold(number, reference);
    }
}

TEST_P(EndOfChequeTest, ThatDiesInAnyPostIsFinishedByTheRestart)
{
    const Undisturbed reference = undisturbed();
    ASSERT_GE(reference.posts, 1);
    for (int post = 0; post < reference.posts; ++post) {
        SCOPED_TRACE(post);
        const int number = nextNumber++;
        prepare(number);
        crashAt = post;
        EXPECT_THROW((void)finish(), Crash);
        crashAt = -1;
        restart();
        restoreAndFinish();
        EXPECT_EQ(state(number), ended());
        expectTold(number, reference);
    }
}

TEST_P(EndOfChequeTest, ThatDiesTwiceIsFinishedByTheSecondRestart)
{
    const Undisturbed reference = undisturbed();
    for (int good = 0; good < reference.writes; ++good) {
        SCOPED_TRACE(good);
        const int number = nextNumber++;
        prepare(number);
        failStoreAfter(good);
        EXPECT_THROW((void)finish(), BasicException);
        restart();
        failStoreAfter(0);
        EXPECT_THROW(restoreAndFinish(), BasicException);
        restart();
        restoreAndFinish();
        EXPECT_EQ(state(number), ended());
        expectTold(number, reference);
    }
}

TEST_P(EndOfChequeTest, WhoseSaveFailsIsNotDoneAndCanBeRepeated)
{
    const Undisturbed reference = undisturbed();
    for (int good = 0; good < reference.writes; ++good) {
        SCOPED_TRACE(good);
        const int number = nextNumber++;
        prepare(number);
        failStoreAfter(good);
        EXPECT_THROW((void)finish(), BasicException);
        EXPECT_NE(state(number), ended() + ", open");
        EXPECT_TRUE(till().isOpen());
        repairStore();
        EXPECT_TRUE(finish());
        EXPECT_EQ(state(number), ended());
        expectTold(number, reference, false);
    }
}

TEST_P(EndOfChequeTest, WhoseStoreFailsForALongTimeIsToldOnceItIsRepaired)
{
    const Undisturbed reference = undisturbed();
    const int number = nextNumber++;
    prepare(number);
    for (int good = 0; good < reference.writes; ++good) {
        failStoreAfter(0);
        EXPECT_THROW((void)finish(), BasicException);
        failStoreAfter(good);
        try {
            if (finish()) {
                break;
            }
        } catch (const BasicException&) {
            EXPECT_TRUE(till().isOpen());
        }
    }
    repairStore();
    if (till().isOpen()) {
        EXPECT_TRUE(finish());
    }
    EXPECT_EQ(state(number), ended());
    expectTold(number, reference, false);
}

TEST_P(EndOfChequeTest, LeavesTheNextChequeAlone)
{
    (void)undisturbed();
    const int number = nextNumber++;
    service.down = false;
    service.within = {};
    openSale(number);
    EXPECT_EQ(till().contents().payments.size(), 0);
    EXPECT_TRUE(till().request());
    const QString asked = service.bodies(u"GetDiscounts"_s).constLast();
    EXPECT_EQ(valueBehind(asked, u"ChequeNo=\""_s), std::to_string(number));
    EXPECT_EQ(asked.count(u"<Coupon "_s), 0);
}

INSTANTIATE_TEST_SUITE_P(Stories, EndOfChequeTest, testing::ValuesIn(endStories),
                         [](const auto& row) { return std::string(row.param.rule); });
