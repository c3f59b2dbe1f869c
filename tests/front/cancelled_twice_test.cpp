#include "tests/front/kept_state.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// A cancelled document comes more than once; the server is to have it once. The document before its cancellation, where
// the event has one, is the one that counts.

namespace {

[[nodiscard]] QSharedPointer<AbstractDocument> sale(const QString& identity)
{
    return TillAtWork::saleWithCard().identity(identity).build();
}

void tell(TillAtWork& till, int code, const QSharedPointer<AbstractDocument>& document)
{
    till.tell(TillAtWork::event(code, document));
}

void answer(TillAtWork& till)
{
    till.server.answer("<AccrualResponse/>");
}

/// One request has gone out since the last look.
void expectSent(TillAtWork& till)
{
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
    till.server.expectNothing();
    static_cast<void>(till.told());
    static_cast<void>(till.log());
}

void expectSilence(TillAtWork& till)
{
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), "");
    till.server.expectNothing();
}

[[nodiscard]] Event withFormer(int code, const QSharedPointer<AbstractDocument>& document,
                               const QSharedPointer<AbstractDocument>& former)
{
    return TillAtWork::event(code, document).addArgument(u"documentBeforeStorno"_s, QVariant::fromValue(former));
}

} // namespace

TEST(CancelledTwice, SentDocumentIsNotSentAgain)
{
    TillAtWork till;
    answer(till);
    tell(till, 12, till.document());
    expectSent(till);

    tell(till, 22, till.document());
    expectSilence(till);
    tell(till, 12, till.document());
    expectSilence(till);
}

TEST(CancelledTwice, QueuedDocumentIsNotSentAgain)
{
    TillAtWork till;
    till.server.refuse();
    tell(till, 22, till.document());
    expectSent(till);

    tell(till, 12, till.document());

    expectSilence(till);
    EXPECT_EQ(till.queue.records().size(), 1);
}

TEST(CancelledTwice, RefusedDocumentIsSentAgain)
{
    TillAtWork till;
    till.server.fault("отказ");
    tell(till, 12, till.document());
    expectSent(till);

    answer(till);
    tell(till, 22, till.document());
    expectSent(till);

    tell(till, 12, till.document());
    expectSilence(till);
}

TEST(CancelledTwice, RepeatedEventStillForgetsCoupons)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    answer(till);
    tell(till, 12, till.document());
    expectSent(till);
    giveCoupons(till, { u"cheque-1"_s }, { { 1, { u"item-1"_s } } });

    tell(till, 22, till.document());

    expectSilence(till);
    EXPECT_EQ(couponsInMemory(till.plugin), "");
}

TEST(CancelledTwice, IdentityTellsDocumentsApart)
{
    TillAtWork till;
    for (const QString& identity : { u"1"_s, u"2"_s, u"1"_s }) { // the guard remembers the last alone
        answer(till);
        tell(till, 12, sale(identity));
        expectSent(till);
    }
    tell(till, 12, sale(u"1"_s)); // another object of the same identity
    expectSilence(till);
}

TEST(CancelledTwice, RefusedDocumentLeavesTheFormerGuardedOne)
{
    TillAtWork till;
    answer(till);
    tell(till, 12, sale(u"1"_s));
    expectSent(till);
    till.server.fault("отказ");
    tell(till, 12, sale(u"2"_s));
    expectSent(till);

    tell(till, 22, sale(u"1"_s));

    expectSilence(till);
}

TEST(CancelledTwice, DocumentWithoutLinesLeavesTheFormerGuardedOne)
{
    TillAtWork till;
    answer(till);
    tell(till, 12, sale(u"1"_s));
    expectSent(till);
    tell(till, 12, DocumentBuilder().identity(u"2"_s).build());
    expectSilence(till);

    tell(till, 22, sale(u"1"_s));

    expectSilence(till);
}

TEST(CancelledTwice, GuardDoesNotOutliveARestart)
{
    const QSharedPointer<AbstractDocument> document = sale(u"1"_s);
    for (int run = 0; run < 2; ++run) {
        TillAtWork till(document);
        answer(till);
        tell(till, 12, document);
        expectSent(till);
    }
}

TEST(CancelledTwice, GuardIsNotStored)
{
    TillAtWork till;
    answer(till);
    tell(till, 12, till.document());
    expectSent(till);
    till.tell(Event(static_cast<EActivityListener::Event>(9)));

    tell(till, 22, till.document());

    expectSilence(till); // a restore within the run leaves it alone
    EXPECT_FALSE(till.stored(u"lastCanceledDocumentId"_s).isValid());
}

TEST(DocumentBeforeCancellation, LendsItsLines)
{
    TillAtWork till(DocumentBuilder().number(77)); // emptied by the cancellation
    answer(till);

    till.tell(withFormer(12, till.document(), DocumentBuilder().line(Goods(1, u"1042"_s, 89.90, 2.0)).build()));

    const QString request = till.server.take("Accrual");
    EXPECT_TRUE(request.contains(u" PositionCount=\"1\""_s));
    EXPECT_TRUE(request.contains(u" ItemID=\"1042\""_s));
    EXPECT_TRUE(request.contains(u" ChequeNo=\"1042\""_s));
}

TEST(DocumentBeforeCancellation, IsQueuedAsItWasPosted)
{
    TillAtWork till(DocumentBuilder().number(77));
    till.server.refuse();

    till.tell(withFormer(22, till.document(), DocumentBuilder().line(Goods(1, u"1042"_s, 89.90, 2.0)).build()));

    EXPECT_TRUE(till.server.take("Accrual").contains(u" ChequeNo=\"1042\""_s));
    ASSERT_EQ(till.queue.records().size(), 1);
    EXPECT_TRUE(till.queue.records().constFirst().message[u"body"_s].toString().contains(u" ChequeNo=\"1042\""_s));
}

TEST(DocumentBeforeCancellation, WithoutLinesIsNotSent)
{
    TillAtWork till;
    till.tell(withFormer(12, till.document(), DocumentBuilder().build()));
    expectSilence(till);
}

TEST(DocumentBeforeCancellation, LendsItsType)
{
    TillAtWork till;
    till.tell(withFormer(12, till.document(), TillAtWork::saleWithCard().type(3).build()));
    expectSilence(till);

    answer(till);
    till.tell(withFormer(12, TillAtWork::saleWithCard().type(3).build(), TillAtWork::saleWithCard().type(2).build()));
    EXPECT_TRUE(till.server.take("Accrual").contains(u" ChequeType=\"Return\""_s));
}

TEST(DocumentBeforeCancellation, LendsItsIdentity)
{
    TillAtWork till;
    answer(till);
    till.tell(withFormer(12, sale(u"1"_s), sale(u"2"_s)));
    EXPECT_TRUE(till.server.take("Accrual").contains(u" ChequeUID=\"1087EBE8-1EF8-5D97-8873-735B4949004D\""_s));
    static_cast<void>(till.told());
    static_cast<void>(till.log());

    tell(till, 22, sale(u"2"_s));
    expectSilence(till);
    answer(till);
    tell(till, 22, sale(u"1"_s));
    expectSent(till);
}
