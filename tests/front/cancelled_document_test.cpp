#include "tests/front/kept_state.h"
#include "tests/front/passed_on.h"
#include "tests/support/client_under_test.h"
#include "tests/support/sorted_attributes.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace Qt::StringLiterals;

// A cancelled document, which no hook tells the server of.

namespace {

/// The cheque of `saleWithCard` after its cancellation, with a coupon of each kind.
[[nodiscard]] QByteArray cancelledCheque()
{
    return R"(<Cheque xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")"
           R"( xmlns:xsd="http://www.w3.org/2001/XMLSchema" ShiftNo="17")"
           R"( ChequeUID="11116E73-1C03-5DE6-9130-5F9925AE8AB4" ChequeNo="1042" OpenTime="2024-03-05T14:07:09")"
           R"( CloseTime="2024-03-05T14:07:09" Amount="179.80" SubtractedBonus="0.00" PositionCount="1")"
           R"( ChequeType="Sale" Status="Canceled">
 <DiscountCard DiscountCardID="0" EnteredAsPhoneNumber="false" SubtractAmount="0.00" SubtractedBonus="0")"
           R"( DiscountCardNo="9000000001" BonusCard="true"/>
 <ChequeLines>
  <ChequeLine ChequeLineNo="1" NoPayBonus="false" NoAddBonus="false" NoDiscounts="false" Price="89.90")"
           R"( Quantity="2.000" Amount="179.80" MinAmount="0.00" MinPrice="0.00" MaxDiscount="100.0")"
           R"( BonusDiscount="0.00">
   <Item ItemID="1042" Barcode=""/>
   <Discounts/>
   <Coupon CouponNo="item-1"/>
  </ChequeLine>
 </ChequeLines>
 <Discounts/>
 <Payments/>
 <Messages/>
 <Coupon CouponNo="cheque-1"/>
</Cheque>
)";
}

void giveOneOfEach(TillAtWork& till)
{
    giveCoupons(till, { u"cheque-1"_s }, { { 1, { u"item-1"_s } } });
}

const std::string oneOfEach = "cheque: cheque-1; 1: item-1";

/// A till that is told of cancelled documents by the event of either code, which mean the same.
class CancelledDocument : public testing::TestWithParam<int> {
protected:
    void tell(TillAtWork& till, const QSharedPointer<AbstractDocument>& document)
    {
        till.tell(TillAtWork::event(GetParam(), document));
    }
};

} // namespace

TEST_P(CancelledDocument, IsSentWithItsCouponsWhichAreThenForgotten)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    giveOneOfEach(till);
    giveLoyaltyData(till.plugin);
    till.server.answerText("Accrual", u"Спасибо"_s);

    tell(till, till.document());

    till.server.expect("Accrual", chequeParameter(cancelledCheque()));
    EXPECT_EQ(till.told(), "post Accrual") << "no slip, and no save";
    EXPECT_EQ(till.log(),
              "info: Отправка отмененного чека на сервер в online режиме\n"
              "info: Отправка отмененного чека на сервер\n"
              "info: Отмененный чек отправлен в online режиме");
    EXPECT_EQ(couponsInMemory(till.plugin), "");
    EXPECT_EQ(couponsStored(till), oneOfEach) << "the stored ones are left to the next save";
    EXPECT_EQ(loyaltyDataOf(till.plugin), loyalty_data::asGiven) << "the rest of the loyalty data is left alone";
    EXPECT_EQ(till.lastError(), ": ");
}

TEST_P(CancelledDocument, LostConnectionQueuesTheSameCheque)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    giveOneOfEach(till);
    till.server.refuse();

    tell(till, till.document());

    till.server.expect("Accrual", chequeParameter(cancelledCheque()));
    EXPECT_EQ(till.told(), "post Accrual\nenqueue vantiro OfflineAccrual");
    EXPECT_EQ(till.log(),
              "info: Отправка отмененного чека на сервер в online режиме\n"
              "info: Отправка отмененного чека на сервер\n"
              "error: Произошла ошибка при выполнении запроса соединение отклонено\n"
              "error: Ошибка отправки отмененного чека на сервер в online режиме\n"
              "info: Отправка отмененного чека на сервер в режиме offline\n"
              "info: Отмененный чек отправлен в offline режиме");
    ASSERT_EQ(till.queue.records().size(), 1);
    EXPECT_EQ(readable(sortedAttributes(till.queue.records().constFirst().message[u"body"_s].toString())),
              readable(sortedAttributes(soap::request("  <tem:OfflineAccrual>\n" + chequeParameter(cancelledCheque())
                                                      + "  </tem:OfflineAccrual>\n"))))
        << "the coupons too: they are forgotten only afterwards";
    EXPECT_EQ(couponsInMemory(till.plugin), "");
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
}

TEST_P(CancelledDocument, ErrorOfAGatewayQueuesItToo)
{
    TillAtWork till;
    till.server.end(RestOutcome::http(404, ""));
    tell(till, till.document());
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
    EXPECT_EQ(till.told(), "post Accrual\nenqueue vantiro OfflineAccrual");
}

TEST_P(CancelledDocument, FaultIsLoggedAndForgetsTheCoupons)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    giveOneOfEach(till);
    till.server.fault("Чек не принят: %1");

    tell(till, till.document());

    till.server.expect("Accrual", chequeParameter(cancelledCheque()));
    EXPECT_EQ(till.told(), "post Accrual");
    EXPECT_EQ(till.log(),
              "info: Отправка отмененного чека на сервер в online режиме\n"
              "info: Отправка отмененного чека на сервер\n"
              "error: Чек не принят: %1");
    EXPECT_EQ(couponsInMemory(till.plugin), "");
    EXPECT_EQ(till.lastError(), ": ");
}

TEST_P(CancelledDocument, UselessReplyIsLoggedAndForgetsTheCoupons)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    giveOneOfEach(till);
    till.server.end(RestOutcome::http(200, "no XML"));

    tell(till, till.document());

    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
    EXPECT_EQ(till.told(), "post Accrual");
    EXPECT_TRUE(QString::fromStdString(till.log()).endsWith(u"\nerror: Некорректный ответ от сервера"_s));
    EXPECT_EQ(couponsInMemory(till.plugin), "");
}

TEST_P(CancelledDocument, OfflineDocumentIsOfferedToTheServerAllTheSame)
{
    TillAtWork till;
    till.goOffline();
    till.server.answer("<AccrualResponse/>");
    tell(till, till.document());
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
    EXPECT_EQ(till.told(), "post Accrual");
}

TEST_P(CancelledDocument, CouponsOfOneKindAloneAreForgottenToo)
{
    TillAtWork till(TillAtWork::saleWithCard().type(3), couponsApart());
    giveCoupons(till, { u"cheque-1"_s }, {});
    tell(till, till.document());
    EXPECT_EQ(couponsInMemory(till.plugin), "");

    giveCoupons(till, {}, { { 1, { u"item-1"_s } } });
    tell(till, till.document());
    EXPECT_EQ(couponsInMemory(till.plugin), "");
}

// The queue is the last resort: when it fails, the document counts as not sent, and another event tries again.
TEST_P(CancelledDocument, FailureOfTheQueuePassesOnWithTheCouponsKept)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    giveOneOfEach(till);
    till.server.refuse();
    till.queue.fail(tr::Tr(u"диск полон"_s));

    EXPECT_EQ(passedOn([&] { tell(till, till.document()); }), "диск полон");

    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
    EXPECT_EQ(till.log(),
              "info: Отправка отмененного чека на сервер в online режиме\n"
              "info: Отправка отмененного чека на сервер\n"
              "error: Произошла ошибка при выполнении запроса соединение отклонено\n"
              "error: Ошибка отправки отмененного чека на сервер в online режиме\n"
              "info: Отправка отмененного чека на сервер в режиме offline");
    EXPECT_EQ(couponsInMemory(till.plugin), oneOfEach);

    till.server.answer("<AccrualResponse/>");
    tell(till, till.document());
    till.server.expect("Accrual", chequeParameter(cancelledCheque()));
}

TEST_P(CancelledDocument, OtherExceptionOfTheCallPassesOnAndQueuesNothing)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    giveOneOfEach(till);
    till.server.answer("<AccrualResponse/>");
    till.server.whilePosting([&till] {
        till.server.whilePosting({});
        throw BasicException(tr::Tr(u"память исчерпана"_s));
    });

    EXPECT_EQ(passedOn([&] { tell(till, till.document()); }), "память исчерпана");

    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(couponsInMemory(till.plugin), oneOfEach);

    tell(till, till.document()); // not marked as sent
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Events, CancelledDocument, testing::Values(12, 22),
                         [](const auto& row) { return std::to_string(row.param); });

// Which documents go out; coupons are forgotten whatever the kind.

namespace {

struct Cancelled {
    const char* name;
    DocumentBuilder document;
    bool isSent;

    friend std::ostream& operator<<(std::ostream& stream, const Cancelled& cancelled)
    {
        return stream << cancelled.name;
    }
};

class KindOfCancelledDocument : public testing::TestWithParam<Cancelled> { };

const Goods goods(1, u"1042"_s, 89.90, 2.0);

} // namespace

TEST_P(KindOfCancelledDocument, DecidesWhetherItIsSent)
{
    TillAtWork till(GetParam().document, couponsApart());
    giveOneOfEach(till);
    if (GetParam().isSent) {
        till.server.answer("<AccrualResponse/>");
    }

    till.tell(TillAtWork::event(12, till.document()));

    if (GetParam().isSent) {
        EXPECT_TRUE(till.server.take("Accrual").contains(u" Status=\"Canceled\""_s));
    } else {
        EXPECT_EQ(till.told(), "");
        EXPECT_EQ(till.log(), "");
    }
    EXPECT_EQ(couponsInMemory(till.plugin), "");
}

INSTANTIATE_TEST_SUITE_P(
    CancelledDocument, KindOfCancelledDocument,
    testing::Values(Cancelled { "Sale", DocumentBuilder().line(goods), true },
                    Cancelled { "Return", DocumentBuilder().type(2).line(goods), true },
                    Cancelled { "ReturnBySaleWhoseSaleIsUnknown", DocumentBuilder().type(25).line(goods), true },
                    Cancelled { "SaleWithDeletedLinesAlone", DocumentBuilder().deletedLine(goods), true },
                    Cancelled { "SaleWithoutLines", DocumentBuilder(), false },
                    Cancelled { "ReturnWithoutLines", DocumentBuilder().type(2), false },
                    Cancelled { "TypeZero", DocumentBuilder().type(0).line(goods), false },
                    Cancelled { "TypeThree", DocumentBuilder().type(3).line(goods), false },
                    Cancelled { "TypeTwentySix", DocumentBuilder().type(26).line(goods), false }),
    [](const auto& row) { return std::string(row.param.name); });

TEST(CancelledDocumentLines, DeletedOnesStandInForTheLiveOnes)
{
    TillAtWork till(DocumentBuilder().deletedLine(goods).deletedLine(Goods(2, u"1043"_s, 50.0)), couponsApart());
    giveCoupons(till, {}, { { 2, { u"item-2"_s } } });
    till.server.answer("<AccrualResponse/>");

    till.tell(TillAtWork::event(12, till.document()));

    const QString request = till.server.take("Accrual");
    EXPECT_TRUE(request.contains(u" PositionCount=\"2\""_s));
    EXPECT_TRUE(request.contains(u" Amount=\"229.80\""_s));
    EXPECT_TRUE(request.contains(u"   <Coupon CouponNo=\"item-2\"/>\n  </ChequeLine>"_s));
}
