#include "tests/store/round_trip.h"
#include "tests/store/till_time.h"
#include "till/document/return_by_sale.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr const char* berlin = "CET-1CEST,M3.5.0,M10.5.0/3";

[[nodiscard]] QDateTime momentOf(const char* utc)
{
    return QDateTime::fromString(QString::fromLatin1(utc), Qt::ISODateWithMs).toLocalTime();
}

} // namespace

TEST(StoredHead, EveryFieldComesBack)
{
    till::ChequeHead head;
    head.type = 7;
    head.number = 1042;
    head.shift = 17;
    head.openTime = QDateTime(QDate(2024, 3, 5), QTime(14, 7, 9, 123));
    head.closeTime = QDateTime(QDate(2024, 3, 5), QTime(14, 9, 30, 7));
    head.offlineAllowed = false;
    head.deferred = true;
    head.sourceDocumentId = 77;
    head.documentSum = 1234567.89;
    head.sumToPay = 0.1 + 0.2;
    const auto read = roundTrip(QSharedPointer<till::Cheque>::create(head, u"№ \"1\"\n"_s));
    ASSERT_TRUE(read);

    EXPECT_EQ(read->getDocumentIdentity().toStdString(), "№ \"1\"\n");
    EXPECT_EQ(read->getDocumentType(), 7);
    EXPECT_EQ(read->getChequeNumber(), 1042);
    EXPECT_EQ(read->getShiftNumber(), 17);
    EXPECT_EQ(read->getOpenTime().toString(Qt::ISODateWithMs).toStdString(), "2024-03-05T14:07:09.123");
    EXPECT_EQ(read->getCloseTime().toString(Qt::ISODateWithMs).toStdString(), "2024-03-05T14:09:30.007");
    EXPECT_FALSE(read->canGoOffline());
    EXPECT_TRUE(read->isDeferred());
    EXPECT_EQ(read->getSourceDocumentId(), QVariant(77));
    EXPECT_EQ(read->getDocumentSum(), 1234567.89);
    EXPECT_EQ(read->getSumToPay(), 0.1 + 0.2);
}

TEST(StoredHead, OppositeFlagsComeBackToo)
{
    till::ChequeHead head;
    head.offlineAllowed = true;
    head.deferred = false;
    const auto read = roundTripOf(head);

    EXPECT_TRUE(read->canGoOffline());
    EXPECT_FALSE(read->isDeferred());
}

TEST(StoredHead, WhatIsNotSetStaysNotSet)
{
    const auto read = roundTripOf({});

    EXPECT_FALSE(read->getCloseTime().isValid());
    EXPECT_FALSE(read->getSourceDocumentId().isValid());
    EXPECT_FALSE(read->head.documentSum.has_value());
    EXPECT_FALSE(read->head.sumToPay.has_value());
    EXPECT_TRUE(read->getGoodsItems().isEmpty());
    EXPECT_TRUE(read->getDocumentImpacts().isEmpty());
    EXPECT_EQ(read->getPluginDataJson().toStdString(), "");
    EXPECT_NE(read->getCurrentPosition().state, Position::present);
}

TEST(StoredHead, SumOfZeroIsSet)
{
    till::ChequeHead head;
    head.documentSum = 0.0;
    head.sumToPay = -0.01;
    const auto read = roundTripOf(head);

    EXPECT_EQ(read->head.documentSum, std::optional(0.0));
    EXPECT_EQ(read->head.sumToPay, std::optional(-0.01));
}

TEST(StoredHead, WholeNumbersComeBackToTheirLimits)
{
    till::ChequeHead head;
    head.number = std::numeric_limits<int>::max();
    head.shift = std::numeric_limits<int>::min();
    const auto read = roundTripOf(head);

    EXPECT_EQ(read->getChequeNumber(), 2147483647);
    EXPECT_EQ(read->getShiftNumber(), -2147483647 - 1);
}

TEST(StoredHead, SourceKeyStaysTextOrNumber)
{
    till::ChequeHead head;
    head.sourceDocumentId = u"0042"_s;
    EXPECT_EQ(roundTripOf(head)->getSourceDocumentId(), QVariant(u"0042"_s));

    head.sourceDocumentId = Q_INT64_C(9007199254740993); // no double holds it
    EXPECT_EQ(roundTripOf(head)->getSourceDocumentId().toString().toStdString(), "9007199254740993");
    EXPECT_EQ(roundTripOf(head)->getSourceDocumentId().typeId(), QMetaType::LongLong);
}

TEST(StoredHead, BothHoursComeBackWhenClocksAreSetBack)
{
    const TillTime zone(berlin);
    till::ChequeHead head;
    head.openTime = momentOf("2024-10-27T00:30:00.000Z"); // 02:30 of summer
    head.closeTime = momentOf("2024-10-27T01:30:00.000Z"); // 02:30 of winter
    ASSERT_EQ(head.openTime.time(), head.closeTime.time());
    const auto read = roundTripOf(head);

    EXPECT_EQ(read->getOpenTime().toUTC().toString(Qt::ISODate).toStdString(), "2024-10-27T00:30:00Z");
    EXPECT_EQ(read->getCloseTime().toUTC().toString(Qt::ISODate).toStdString(), "2024-10-27T01:30:00Z");
    EXPECT_EQ(read->getCloseTime().toString(Qt::ISODate).toStdString(), "2024-10-27T02:30:00");
}

TEST(StoredHead, MomentStaysWhenTheTillMovesToAnotherZone)
{
    QByteArray stored;
    {
        const TillTime zone("MSK-3");
        till::ChequeHead head;
        head.openTime = QDateTime(QDate(2024, 3, 5), QTime(14, 7, 9));
        stored = till::toJson(QSharedPointer<till::Cheque>::create(head));
    }
    const TillTime zone("YEKT-5");

    EXPECT_EQ(till::documentFromJson(stored)->getOpenTime().toString(Qt::ISODate).toStdString(), "2024-03-05T16:07:09");
}

TEST(StoredReturn, KnowsItsSale)
{
    auto sale = QSharedPointer<SaleDocumentSource>::create();
    sale->chequeNumber = 1041;
    sale->openTime = QDateTime(QDate(2024, 3, 4), QTime(10, 0, 1, 5));
    sale->closeTime = QDateTime(QDate(2024, 3, 4), QTime(10, 2, 3, 999));
    sale->pluginDataJson = uR"({"vantiro":{"chequeNo":"1041"}})"_s;
    till::ChequeHead head;
    head.number = 1042;
    const auto read = roundTrip(QSharedPointer<till::ReturnBySale>::create(sale, head, u"back"_s));
    ASSERT_TRUE(read);
    ASSERT_TRUE(read->getSource());

    EXPECT_EQ(read->getDocumentIdentity().toStdString(), "back");
    EXPECT_EQ(read->getDocumentType(), 25);
    EXPECT_EQ(read->getChequeNumber(), 1042);
    EXPECT_EQ(read->getSource()->chequeNumber, 1041);
    EXPECT_EQ(read->getSource()->openTime, sale->openTime);
    EXPECT_EQ(read->getSource()->closeTime, sale->closeTime);
    EXPECT_EQ(read->getSource()->pluginDataJson.toStdString(), R"({"vantiro":{"chequeNo":"1041"}})");
}

TEST(StoredReturn, TimesOfItsSaleMayBeUnknown)
{
    const auto read
        = roundTrip(QSharedPointer<till::ReturnBySale>::create(QSharedPointer<SaleDocumentSource>::create()));
    ASSERT_TRUE(read->getSource());

    EXPECT_FALSE(read->getSource()->openTime.isValid());
    EXPECT_FALSE(read->getSource()->closeTime.isValid());
}

TEST(StoredReturn, StaysOneWhoseSaleIsNotKnown)
{
    const auto read = roundTrip(QSharedPointer<till::ReturnBySale>::create(nullptr));
    ASSERT_TRUE(read);

    EXPECT_TRUE(read->getSource().isNull());
}

TEST(StoredReturn, OrdinaryReturnIsNone)
{
    till::ChequeHead head;
    head.type = 2;
    const auto document = till::documentFromJson(till::toJson(QSharedPointer<till::Cheque>::create(head)));

    EXPECT_TRUE(document.dynamicCast<BackBySaleDocument>().isNull());
    EXPECT_EQ(document->getDocumentType(), 2);
}
