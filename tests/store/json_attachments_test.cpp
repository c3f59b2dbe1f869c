#include "tests/store/round_trip.h"
#include "till/document/card.h"
#include "till/document/coupon_record.h"
#include "till/document/payment.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// The card that a document with this one, in mode 7, has when it is read.
[[nodiscard]] QSharedPointer<till::Card> readCard(const till::CardFields& fields)
{
    auto document = QSharedPointer<till::Cheque>::create();
    document->setCard(7, 3, QSharedPointer<till::Card>::create(fields));
    return roundTrip(document)->getCardRecord(7).dynamicCast<till::Card>();
}

} // namespace

TEST(StoredCard, EveryFieldComesBack)
{
    till::CardFields fields;
    fields.number = u"0009000000001"_s;
    fields.codeInternal = 42;
    fields.bonusBalance = 512.25;
    fields.pointsForSpend = 100.5;
    fields.spentSum = 60.75;
    const auto card = readCard(fields);
    ASSERT_TRUE(card);

    EXPECT_EQ(card->getNumber(), QVariant(u"0009000000001"_s));
    EXPECT_EQ(card->getNumber().typeId(), QMetaType::QString);
    EXPECT_EQ(card->getCodeInternal(), 42);
    EXPECT_EQ(card->getBonusBalance(), QVariant(512.25));
    EXPECT_EQ(card->fields.pointsForSpend, 100.5);
    EXPECT_EQ(card->fields.spentSum, 60.75);
}

TEST(StoredCard, NumberThatIsANumberStaysOne)
{
    till::CardFields fields;
    fields.number = 42;
    EXPECT_EQ(readCard(fields)->getNumber(), QVariant(42));
    EXPECT_EQ(readCard(fields)->getNumber().typeId(), QMetaType::LongLong);

    fields.number = Q_INT64_C(9000000000000000001);
    EXPECT_EQ(readCard(fields)->getNumber().toString().toStdString(), "9000000000000000001");
}

TEST(StoredCard, WhatIsNotKnownStaysUnknown)
{
    const auto card = readCard({});

    EXPECT_FALSE(card->getNumber().isValid());
    EXPECT_FALSE(card->getBonusBalance().isValid());
}

TEST(StoredCard, BalanceOfZeroIsKnownAndBalanceAsTextStaysText)
{
    till::CardFields fields;
    fields.bonusBalance = 0.0;
    EXPECT_TRUE(readCard(fields)->getBonusBalance().isValid());
    EXPECT_EQ(readCard(fields)->getBonusBalance().toDouble(), 0.0);

    fields.bonusBalance = u"12.50"_s;
    EXPECT_EQ(readCard(fields)->getBonusBalance(), QVariant(u"12.50"_s));
}

TEST(StoredCard, EachModeHasItsOwn)
{
    auto document = QSharedPointer<till::Cheque>::create();
    till::CardFields fields;
    for (const int mode : { 7, 1, -1 }) {
        fields.number = mode;
        document->setCard(mode, 10 + mode, QSharedPointer<till::Card>::create(fields));
    }
    const auto read = roundTrip(document);

    EXPECT_EQ(read->attachedCards().keys(), (QList<int> { -1, 1, 7 }));
    for (const int mode : { 7, 1, -1 }) {
        EXPECT_EQ(read->getCardRecord(mode)->getNumber(), QVariant(mode));
        EXPECT_TRUE(read->hasCardRecordOfType(10 + mode));
    }
    EXPECT_FALSE(read->hasCardRecordOfType(3));
    EXPECT_FALSE(read->hasCardRecord(2));
}

TEST(StoredPayments, EveryFieldComesBackInOrder)
{
    auto document = QSharedPointer<till::Cheque>::create();
    document->payments = {
        QSharedPointer<till::Payment>::create(till::PaymentFields { 1000.01, u"0070"_s, 3, 70 }),
        QSharedPointer<till::Payment>::create(till::PaymentFields { -0.5, QString(), -1, 0 }),
    };
    const auto payments = roundTrip(document)->getMoneyItems();
    ASSERT_EQ(payments.size(), 2);

    EXPECT_EQ(payments[0]->getAmount(), 1000.01);
    EXPECT_EQ(payments[0]->getCardNum().toStdString(), "0070");
    EXPECT_EQ(payments[0]->getValutOperation(), 3);
    EXPECT_EQ(payments[0]->getOpCode(), 70);
    EXPECT_EQ(payments[1]->getAmount(), -0.5);
    EXPECT_EQ(payments[1]->getCardNum().toStdString(), "");
    EXPECT_EQ(payments[1]->getValutOperation(), -1);
    EXPECT_EQ(payments[1]->getOpCode(), 0);
}

TEST(StoredCoupons, NumbersComeBackInOrderEqualOnesToo)
{
    auto document = QSharedPointer<till::Cheque>::create();
    for (const char* number : { "vantiro-10", "0042", "vantiro-10", "Купон №1" }) {
        document->coupons.append(QSharedPointer<till::CouponRecord>::create(QString::fromUtf8(number)));
    }
    const auto read = roundTrip(document);
    QStringList numbers;
    for (const QSharedPointer<Coupon>& coupon : read->coupons) {
        numbers.append(coupon->getNumber());
    }

    EXPECT_EQ(numbers.join(u'|').toStdString(), "vantiro-10|0042|vantiro-10|Купон №1");
}

TEST(StoredBonusRecords, EveryFieldComesBackInOrder)
{
    auto document = QSharedPointer<till::Cheque>::create();
    const QDateTime moment(QDate(2024, 3, 5), QTime(14, 7, 9, 250));
    document->bonusRecords = { { u"0009"_s, 12.5, moment }, { QString(), -3.0, QDateTime() } };
    const auto records = roundTrip(document)->getBonusRecords();
    ASSERT_EQ(records.size(), 2);

    EXPECT_EQ(records[0].cardNumber.toStdString(), "0009");
    EXPECT_EQ(records[0].amount, 12.5);
    EXPECT_EQ(records[0].dateTime, moment);
    EXPECT_EQ(records[1].cardNumber.toStdString(), "");
    EXPECT_EQ(records[1].amount, -3.0);
    EXPECT_FALSE(records[1].dateTime.isValid());
}

TEST(StoredPluginDataJson, ComesBackByteForByte)
{
    const QString json = u"{ \"vantiro\" : {\"chequeUid\":\"a\\u0041\"},\r\n \"other\":[1.0, 1e2 ] }"_s;
    auto document = QSharedPointer<till::Cheque>::create();
    document->setPluginDataJson(json);

    EXPECT_EQ(roundTrip(document)->getPluginDataJson().toStdString(), json.toStdString());
}
