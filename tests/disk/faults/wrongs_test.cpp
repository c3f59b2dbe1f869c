#include "tests/disk/faults/wrongs.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QString diskFails = u"Ошибка базы данных кассы: disk I/O error. Диск не читается или не пишется"_s;

[[nodiscard]] QString message(const QString& uid, const QString& sum)
{
    return uR"(<r ChequeUID="%1"><Cheque Amount="%2"/></r>)"_s.arg(uid, sum);
}

/// Of one cheque that the till has closed.
[[nodiscard]] DiskBooks books()
{
    DiskBooks books;
    books.ended = { { u"a"_s, u"89.90"_s } };
    return books;
}

} // namespace

TEST(ClearLine, StandsWithEachStepThatFailedAndWithNoOther)
{
    EXPECT_EQ(unclearLine({ { { u"scan"_s, u"failed"_s, diskFails }, { u"scan"_s, u"done"_s } } }), "");
    EXPECT_NE(unclearLine({ { { u"scan"_s, u"failed"_s } } }), "");
    EXPECT_NE(unclearLine({ { { u"scan"_s, u"done"_s, diskFails } } }), "");
}

TEST(ClearLine, NamesTheCauseInTheLanguageOfTheCashier)
{
    EXPECT_NE(unclearLine({ { { u"scan"_s, u"failed"_s, u"Ошибка базы данных кассы: disk I/O error"_s } } }), "");
    EXPECT_NE(unclearLine({ { { u"scan"_s, u"failed"_s, u"Диск не читается или не пишется"_s } } }), "");
}

TEST(ClearLine, IsOneLineOnly)
{
    EXPECT_NE(unclearLine({ { { u"scan"_s, u"failed"_s, QString(diskFails).replace(u". "_s, u".\n"_s) } } }), "");
    EXPECT_NE(unclearLine({ { { u"scan"_s, u"failed"_s, diskFails, { diskFails } } } }), "");
}

TEST(AccountsFor, ChequeThatIsToldOrQueued)
{
    DiskBooks queued = books();
    queued.queue = { message(u"a"_s, u"89.90"_s) };
    EXPECT_EQ(queued.accountsFor({}), "");
    EXPECT_EQ(books().accountsFor({ message(u"a"_s, u"89.90"_s) }), "");
}

TEST(AccountsFor, ChequeThatIsToldTwiceIsCountedOnce)
{
    EXPECT_EQ(books().accountsFor({ message(u"a"_s, u"89.90"_s), message(u"a"_s, u"89.90"_s) }), "");
}

TEST(AccountsFor, ChequeThatNobodyKnowsIsMissed)
{
    EXPECT_NE(books().accountsFor({}), "");
}

TEST(AccountsFor, ChequeWithTwoValuesOrAnotherValueIsWrong)
{
    EXPECT_NE(books().accountsFor({ message(u"a"_s, u"80.00"_s) }), "");
    EXPECT_NE(books().accountsFor({ message(u"a"_s, u"89.90"_s), message(u"a"_s, u"80.00"_s) }), "");
}

TEST(AccountsFor, ChequeThatTheTillHasNotEndedIsWrong)
{
    EXPECT_NE(books().accountsFor({ message(u"a"_s, u"89.90"_s), message(u"b"_s, u"1.00"_s) }), "");
}

TEST(WrongAfterSwitchingOff, StepThatWasDoneIsMissed)
{
    const QStringList shapes { u"none"_s, u"one"_s, u"two"_s, u"three"_s };
    const ChildRun run { { { u"scan"_s, u"done"_s }, { u"scan"_s, u"failed"_s, diskFails } } };
    DiskBooks found;
    for (const auto& [shape, well] : { std::pair(u"none"_s, false), std::pair(u"one"_s, true),
                                       std::pair(u"two"_s, true), std::pair(u"three"_s, false) }) {
        found.shapes = { shape };
        EXPECT_EQ(wrongAfterSwitchingOff(run, found, shapes).empty(), well) << shape.toStdString();
    }
}
