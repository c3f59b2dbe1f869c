#include "tests/bonus/bonus_client.h"
#include "tests/support/cheque_service.h"
#include "tests/support/sample_cheque.h"
#include "tests/support/log_recorder.h"

#include <QXmlStreamReader>

#include <gtest/gtest.h>

TEST(DiscountsRequest, CarriesTheOpenCheque)
{
    ChequeService service;
    BonusClient client;
    const auto document = sample::cheque(EDocumentType::sale);
    sample::addCard(*document);
    service.answerText("GetDiscounts", QString());

    EXPECT_TRUE(client.getDiscounts(document, {}, {}).isEmpty());

    service.expect("GetDiscounts", chequeParameter(sample::openChequeWithCard()));
}

TEST(DiscountsRequest, GoesOutWithoutACard)
{
    ChequeService service;
    BonusClient client;
    service.answerText("GetDiscounts", QString());

    EXPECT_TRUE(client.getDiscounts(sample::cheque(EDocumentType::sale), {}, {}).isEmpty());

    service.expect("GetDiscounts", chequeParameter(sample::openCheque()));
}

TEST(DiscountsRequest, CarriesTheCouponsOfChequeAndPosition)
{
    ChequeService service;
    BonusClient client;
    service.answerText("GetDiscounts", QString());

    EXPECT_TRUE(client
                    .getDiscounts(sample::cheque(EDocumentType::sale),
                                  { { 1, { QStringLiteral("item-1"), QStringLiteral("item-2") } } },
                                  { QStringLiteral("vantiro-10") })
                    .isEmpty());

    service.expect(
        "GetDiscounts",
        chequeParameter(
            sample::chequeTag(
                R"(Amount="179.80" SubtractedBonus="0.00" PositionCount="1" ChequeType="Sale" Status="Open")")
            + sample::lines("179.80", "0.00", "   <Coupon CouponNo=\"item-1\"/>\n   <Coupon CouponNo=\"item-2\"/>\n")
            + sample::sections + " <Coupon CouponNo=\"vantiro-10\"/>\n</Cheque>\n"));
}

TEST(DiscountsRequest, LeavesTheCouponStoresAsTheyAre)
{
    ChequeService service;
    BonusClient client;
    const QMap<int, QList<QString>> positionCoupons { { 1, { QStringLiteral("item-1") } } };
    const QList<QString> checkCoupons { QStringLiteral("vantiro-10") };
    service.answerText("GetDiscounts", QString());

    EXPECT_TRUE(client.getDiscounts(sample::cheque(EDocumentType::sale), positionCoupons, checkCoupons).isEmpty());

    EXPECT_EQ(positionCoupons, (QMap<int, QList<QString>> { { 1, { QStringLiteral("item-1") } } }));
    EXPECT_EQ(checkCoupons, (QList<QString> { QStringLiteral("vantiro-10") }));
    EXPECT_TRUE(service.take().body.contains("vantiro-10"));
}

// The end of a CDATA section must not be smuggled in by what a scanner has read.
TEST(DiscountsRequest, CouponWithTheEndOfACdataSectionStaysWithinTheCheque)
{
    ChequeService service;
    BonusClient client;
    service.answerText("GetDiscounts", QString());

    EXPECT_TRUE(
        client.getDiscounts(sample::cheque(EDocumentType::sale), {}, { QStringLiteral("A]]>B<&\"") }).isEmpty());

    QXmlStreamReader envelope(service.take().body);
    while (!envelope.atEnd() && envelope.qualifiedName() != QLatin1String("tem:cheque")) {
        envelope.readNext();
    }
    const QString chequeText = envelope.readElementText();
    ASSERT_FALSE(envelope.hasError()) << readable(envelope.errorString());
    QXmlStreamReader cheque(chequeText);
    while (!cheque.atEnd() && cheque.name() != QLatin1String("Coupon")) {
        cheque.readNext();
    }
    ASSERT_FALSE(cheque.hasError()) << readable(cheque.errorString());
    EXPECT_EQ(readable(cheque.attributes().value(QStringLiteral("CouponNo")).toString()), "A]]>B<&\"");
}

TEST(DiscountsRequest, LogsNothingBeforeTheReply)
{
    ChequeService service;
    BonusClient client;
    const LogRecorder log;
    QStringList beforeReply { QStringLiteral("never posted") };
    service.whilePosting([&] { beforeReply = log.lines(); });
    service.answerText("GetDiscounts", QString());

    EXPECT_TRUE(client.getDiscounts(sample::cheque(EDocumentType::sale), {}, {}).isEmpty());

    EXPECT_EQ(readable(beforeReply), "");
    EXPECT_TRUE(service.take().body.contains("tem:GetDiscounts"));
}
