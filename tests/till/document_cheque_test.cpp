#include "host/facilities/current_time.h"
#include "host/facilities/finally.h"
#include "till/document/card.h"
#include "till/document/cheque.h"
#include "till/document/coupon_record.h"
#include "till/document/payment.h"

#include <QUuid>

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using till::Cheque;
using till::ChequeHead;
using till::LineFields;

QList<int> posnums(const QList<QSharedPointer<GoodsItem>>& lines)
{
    QList<int> numbers;
    for (const QSharedPointer<GoodsItem>& line : lines) {
        numbers.append(line->getPosnum());
    }
    return numbers;
}

LineFields priced(double price, double quantity)
{
    LineFields fields;
    fields.price = price;
    fields.quantity = quantity;
    return fields;
}

struct StoppedClock : CurrentTime {
    [[nodiscard]] QDateTime getCurrentTime() const override
    {
        return QDateTime(QDate(2024, 3, 5), QTime(10, 20, 30));
    }
};

TEST(Cheque, NewDocumentHasAnIdentityOfItsOwn)
{
    Cheque first;
    Cheque second;

    EXPECT_FALSE(QUuid::fromString(first.getDocumentIdentity()).isNull());
    EXPECT_EQ(first.getDocumentIdentity(), first.getDocumentIdentity());
    EXPECT_NE(first.getDocumentIdentity(), second.getDocumentIdentity());
}

TEST(Cheque, DocumentBroughtBackKeepsItsIdentity)
{
    Cheque cheque({}, QStringLiteral("abc"));

    EXPECT_EQ(cheque.getDocumentIdentity(), QStringLiteral("abc"));
}

TEST(Cheque, OpensAtTheTimeOfTheClock)
{
    StoppedClock clock;
    MockFactory<CurrentTime>::mocked = &clock;
    const Finally reset([] { MockFactory<CurrentTime>::mocked = nullptr; });
    Cheque cheque;

    EXPECT_EQ(cheque.getOpenTime(), QDateTime(QDate(2024, 3, 5), QTime(10, 20, 30)));
    EXPECT_FALSE(cheque.getCloseTime().isValid());
}

TEST(Cheque, AnswersOutOfItsHead)
{
    ChequeHead head;
    head.type = EDocumentType::goodsReturn;
    head.number = 1042;
    head.shift = 17;
    head.openTime = QDateTime(QDate(2024, 1, 2), QTime(3, 4, 5));
    head.closeTime = QDateTime(QDate(2024, 1, 2), QTime(3, 5, 6));
    head.offlineAllowed = false;
    head.deferred = true;
    head.sourceDocumentId = QVariant(5);
    Cheque cheque(head);
    AbstractDocument& document = cheque;

    EXPECT_EQ(document.getDocumentType(), 2);
    EXPECT_EQ(document.getChequeNumber(), 1042);
    EXPECT_EQ(document.getShiftNumber(), 17);
    EXPECT_EQ(document.getOpenTime(), head.openTime);
    EXPECT_EQ(document.getCloseTime(), head.closeTime);
    EXPECT_FALSE(document.canGoOffline());
    EXPECT_TRUE(document.isDeferred());
    EXPECT_EQ(document.getSourceDocumentId(), QVariant(5));
}

TEST(Cheque, IsAnEmptyOnlineSaleByDefault)
{
    Cheque cheque;

    EXPECT_EQ(cheque.getDocumentType(), 1);
    EXPECT_TRUE(cheque.canGoOffline());
    EXPECT_FALSE(cheque.isDeferred());
    EXPECT_TRUE(cheque.getSourceDocumentId().isNull());
    EXPECT_EQ(cheque.getPositionCount(), 0);
    EXPECT_EQ(cheque.getDocumentSum(), 0.0);
    EXPECT_TRUE(cheque.getGoodsItems().isEmpty());
    EXPECT_TRUE(cheque.getDeletedGoodsItems().isEmpty());
    EXPECT_TRUE(cheque.getMoneyItems().isEmpty());
    EXPECT_TRUE(cheque.getDocumentImpacts().isEmpty());
    EXPECT_TRUE(cheque.getBonusRecords().isEmpty());
    EXPECT_TRUE(cheque.getPluginDataJson().isEmpty());
    EXPECT_TRUE(cheque.getCardRecord(7).isNull());
    EXPECT_NE(cheque.getCurrentPosition().state, Position::present);
}

TEST(ChequeLines, AnswerOutOfTheirFields)
{
    LineFields fields;
    fields.posnum = 4;
    fields.code = QStringLiteral("1001");
    fields.barcode = QStringLiteral("4600051000057");
    fields.price = 89.9;
    fields.minPrice = 60.0;
    fields.quantity = 2.5;
    fields.sum = 200.0;
    fields.bonusSpendAllowed = false;
    fields.bonusEarnAllowed = false;
    fields.discountAllowed = false;
    fields.onlyExternalDiscountAllowed = true;
    const till::Line line(fields);
    const GoodsItem& item = line;

    EXPECT_EQ(item.getPosnum(), 4);
    EXPECT_EQ(item.getCode(), QStringLiteral("1001"));
    EXPECT_EQ(item.getBcode(), QStringLiteral("4600051000057"));
    EXPECT_EQ(item.getPrice(), 89.9);
    EXPECT_EQ(item.getMinPrice(), 60.0);
    EXPECT_EQ(item.getQuantity(), 2.5);
    EXPECT_EQ(item.getSumb(), 200.0);
    EXPECT_FALSE(item.isAllowBonusSpend());
    EXPECT_FALSE(item.isAllowBonusEarn());
    EXPECT_FALSE(item.isAllowDiscount());
    EXPECT_TRUE(item.isAllowOnlyExternalDiscount());
}

TEST(ChequeLines, OrdinaryGoodsTakePointsAndDiscounts)
{
    const till::Line line { LineFields() };

    EXPECT_TRUE(line.isAllowBonusSpend());
    EXPECT_TRUE(line.isAllowBonusEarn());
    EXPECT_TRUE(line.isAllowDiscount());
    EXPECT_FALSE(line.isAllowOnlyExternalDiscount());
}

TEST(ChequeLines, SumIsPriceTimesQuantityUnlessSet)
{
    Cheque cheque;
    const auto line = cheque.addLine(priced(10.5, 2.0));
    EXPECT_EQ(line->getSumb(), 21.0);

    line->fields.sum = 20.0;
    EXPECT_EQ(line->getSumb(), 20.0);
}

TEST(ChequeLines, AreNumberedInTurn)
{
    Cheque cheque;
    cheque.addLine({});
    LineFields fifth;
    fifth.posnum = 5;
    cheque.addLine(fifth);
    cheque.addLine({});

    EXPECT_EQ(posnums(cheque.getGoodsItems()), (QList<int> { 1, 5, 6 }));
    EXPECT_EQ(cheque.getPositionCount(), 3);
}

TEST(ChequeLines, NumberOfADeletedLineIsNotUsedAgain)
{
    Cheque cheque;
    cheque.addLine({});
    cheque.addLine({});
    cheque.remove(2);

    EXPECT_EQ(cheque.addLine({})->getPosnum(), 3);
    LineFields again;
    again.posnum = 2;
    EXPECT_THROW(cheque.addLine(again), std::invalid_argument);
    again.posnum = 1;
    EXPECT_THROW(cheque.addLine(again), std::invalid_argument);
    EXPECT_EQ(posnums(cheque.getGoodsItems()), (QList<int> { 1, 3 }));
}

TEST(ChequeLines, RemovedLineMovesToTheDeletedOnes)
{
    Cheque cheque;
    cheque.addLine({});
    const auto second = cheque.addLine({});
    cheque.addLine({});

    EXPECT_EQ(cheque.remove(2), second);
    EXPECT_EQ(posnums(cheque.getGoodsItems()), (QList<int> { 1, 3 }));
    EXPECT_EQ(posnums(cheque.getDeletedGoodsItems()), QList<int> { 2 });
    EXPECT_EQ(cheque.getPositionCount(), 2);
}

TEST(ChequeLines, LineIsRemovedOnce)
{
    Cheque cheque;
    cheque.addLine({});
    cheque.remove(1);

    EXPECT_TRUE(cheque.remove(1).isNull());
    EXPECT_TRUE(cheque.remove(9).isNull());
    EXPECT_EQ(posnums(cheque.getDeletedGoodsItems()), QList<int> { 1 });
}

TEST(ChequeLines, CurrentPositionIsTheLastAddedOne)
{
    Cheque cheque;
    cheque.addLine({});
    cheque.addLine({});

    EXPECT_EQ(cheque.getCurrentPosition().state, 1);
    EXPECT_EQ(cheque.getCurrentPosition().number, 2);
}

TEST(ChequeLines, CurrentPositionCanBeSelected)
{
    Cheque cheque;
    cheque.addLine({});
    cheque.addLine({});
    cheque.selectPosition(1);
    EXPECT_EQ(cheque.getCurrentPosition().number, 1);

    EXPECT_THROW(cheque.selectPosition(3), std::invalid_argument);
    EXPECT_EQ(cheque.getCurrentPosition().number, 1);
}

TEST(ChequeLines, RemovalOfTheCurrentPositionSelectsTheLastLine)
{
    Cheque cheque;
    cheque.addLine({});
    cheque.addLine({});
    cheque.addLine({});
    cheque.selectPosition(1);
    cheque.remove(2);
    EXPECT_EQ(cheque.getCurrentPosition().number, 1);

    cheque.remove(1);
    EXPECT_EQ(cheque.getCurrentPosition().number, 3);

    cheque.remove(3);
    EXPECT_NE(cheque.getCurrentPosition().state, 1);
}

TEST(ChequeSums, DocumentSumIsThatOfTheLiveLines)
{
    Cheque cheque;
    cheque.addLine(priced(100.0, 1.0));
    cheque.addLine(priced(10.5, 2.0));
    EXPECT_EQ(cheque.getDocumentSum(), 121.0);

    cheque.remove(1);
    EXPECT_EQ(cheque.getDocumentSum(), 21.0);

    cheque.head.documentSum = 20.0;
    EXPECT_EQ(cheque.getDocumentSum(), 20.0);
}

TEST(ChequeSums, PointsMayPayForTheLinesThatAllowIt)
{
    Cheque cheque;
    cheque.addLine(priced(100.0, 1.0));
    cheque.addLine(priced(10.5, 2.0))->fields.bonusSpendAllowed = false;
    EXPECT_EQ(cheque.getSumToPay(), 100.0);

    cheque.head.sumToPay = 33.0;
    EXPECT_EQ(cheque.getSumToPay(), 33.0);
}

TEST(ChequeCards, AreFoundByModeAndByType)
{
    Cheque cheque;
    const auto card = QSharedPointer<till::Card>::create(till::CardFields());
    cheque.setCard(7, 3, card);

    EXPECT_EQ(cheque.getCardRecord(7), card);
    EXPECT_TRUE(cheque.hasCardRecord(7));
    EXPECT_TRUE(cheque.hasCardRecordOfType(3));
    EXPECT_TRUE(cheque.getCardRecord(3).isNull());
    EXPECT_FALSE(cheque.hasCardRecord(3));
    EXPECT_FALSE(cheque.hasCardRecordOfType(7));
}

TEST(ChequeCards, CardOfTheSameModeTakesThePlace)
{
    Cheque cheque;
    cheque.setCard(7, 3, QSharedPointer<till::Card>::create(till::CardFields()));
    const auto second = QSharedPointer<till::Card>::create(till::CardFields());
    cheque.setCard(7, 4, second);

    EXPECT_EQ(cheque.getCardRecord(7), second);
    EXPECT_FALSE(cheque.hasCardRecordOfType(3));
    EXPECT_TRUE(cheque.hasCardRecordOfType(4));
}

TEST(ChequeCards, CardCanBeTakenOff)
{
    Cheque cheque;
    cheque.setCard(7, 3, QSharedPointer<till::Card>::create(till::CardFields()));
    cheque.removeCard(7);

    EXPECT_TRUE(cheque.getCardRecord(7).isNull());
    EXPECT_FALSE(cheque.hasCardRecord(7));
    EXPECT_FALSE(cheque.hasCardRecordOfType(3));
}

TEST(ChequeCards, NullCardIsRefused)
{
    Cheque cheque;

    EXPECT_THROW(cheque.setCard(7, 3, nullptr), std::invalid_argument);
    EXPECT_FALSE(cheque.hasCardRecordOfType(3));
}

TEST(ChequeCards, CardKeepsWhatPluginsWrite)
{
    till::CardFields fields;
    fields.number = QVariant(QStringLiteral("9000000001"));
    fields.codeInternal = 42;
    till::Card card(fields);
    DocumentCardRecord& record = card;
    EXPECT_EQ(record.getNumber().toString(), QStringLiteral("9000000001"));
    EXPECT_EQ(record.getCodeInternal(), 42);
    EXPECT_FALSE(record.getBonusBalance().isValid());

    record.setBonusBalance(QVariant(150.25));
    record.setPointsForSpend(60.5);
    record.setSpentSum(40.25);

    EXPECT_EQ(record.getBonusBalance(), QVariant(150.25));
    EXPECT_EQ(card.fields.pointsForSpend, 60.5);
    EXPECT_EQ(card.fields.spentSum, 40.25);
}

TEST(ChequeCoupons, AreKnownAsObjectsAndNotByNumber)
{
    Cheque cheque;
    const QSharedPointer<Coupon> onCheque = QSharedPointer<till::CouponRecord>::create(QStringLiteral("vantiro-10"));
    const QSharedPointer<Coupon> other = QSharedPointer<till::CouponRecord>::create(QStringLiteral("vantiro-10"));
    cheque.coupons.append(onCheque);

    EXPECT_EQ(onCheque->getNumber(), QStringLiteral("vantiro-10"));
    EXPECT_TRUE(cheque.hasCoupon(onCheque));
    EXPECT_FALSE(cheque.hasCoupon(other));
    EXPECT_FALSE(cheque.hasCoupon(nullptr));
}

TEST(Cheque, GivesOutPaymentsImpactsAndBonusRecords)
{
    Cheque cheque;
    const auto payment
        = QSharedPointer<till::Payment>::create(till::PaymentFields { 500.5, QStringLiteral("77"), 3, 70 });
    const auto impact = QSharedPointer<DocumentImpact>::create();
    cheque.payments.append(payment);
    cheque.impacts.append(impact);
    cheque.bonusRecords.append({ QStringLiteral("9000000001"), 5.5, {} });

    EXPECT_EQ(cheque.getMoneyItems(), QList<QSharedPointer<MoneyItem>> { payment });
    EXPECT_EQ(payment->getAmount(), 500.5);
    EXPECT_EQ(payment->getCardNum(), QStringLiteral("77"));
    EXPECT_EQ(payment->getValutOperation(), 3);
    EXPECT_EQ(payment->getOpCode(), 70);
    EXPECT_EQ(cheque.getDocumentImpacts(), QList<QSharedPointer<DocumentImpact>> { impact });
    ASSERT_EQ(cheque.getBonusRecords().size(), 1);
    EXPECT_EQ(cheque.getBonusRecords().constFirst().amount, 5.5);
}

TEST(Cheque, KeepsPluginData)
{
    Cheque cheque;
    AbstractDocument& document = cheque;
    document.setPluginDataJson(QStringLiteral(R"({"vantiro":{"chequeNo":"12"}})"));
    document.setValue(QStringLiteral("Vantiro"), QStringLiteral("offlineMode"), QVariant(true));

    EXPECT_EQ(document.getPluginDataJson(), QStringLiteral(R"({"vantiro":{"chequeNo":"12"}})"));
    EXPECT_EQ(document.getValue(QStringLiteral("Vantiro"), QStringLiteral("offlineMode"), QVariant()), QVariant(true));
}

}
