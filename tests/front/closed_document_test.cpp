#include "host/document/document_bonus_record.h"
#include "tests/front/kept_state.h"
#include "tests/support/client_under_test.h"
#include "tests/support/sorted_attributes.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace Qt::StringLiterals;

// A closed document: the look for a better server, and the cheque that no hook has told the server of.

namespace {

const std::string pinged = "info: Пинг серверов\n"
                           "info: Пинг не требуется - уже выбран самый приоритетный сервер\n";

/// The cheque of `saleWithoutCard`, closed: as it is told at its end, and to nobody's card.
[[nodiscard]] QByteArray closedCheque(const QByteArray& type = "Sale")
{
    return R"(<Cheque xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")"
           R"( xmlns:xsd="http://www.w3.org/2001/XMLSchema" ShiftNo="17")"
           R"( ChequeUID="11116E73-1C03-5DE6-9130-5F9925AE8AB4" ChequeNo="1042" OpenTime="2024-03-05T14:07:09")"
           R"( CloseTime="2024-03-05T14:09:30" Amount="179.80" SubtractedBonus="0.00" PositionCount="1" ChequeType=")"
        + type
        + R"(" Status="Closed">
 <ChequeLines>
  <ChequeLine ChequeLineNo="1" NoPayBonus="false" NoAddBonus="false" NoDiscounts="false" Price="89.90")"
          R"( Quantity="2.000" Amount="179.80" MinAmount="0.00" MinPrice="0.00" MaxDiscount="100.0")"
          R"( BonusDiscount="0.00">
   <Item ItemID="1042" Barcode=""/>
   <Discounts/>
  </ChequeLine>
 </ChequeLines>
 <Discounts/>
 <Payments/>
 <Messages/>
</Cheque>
)";
}

[[nodiscard]] DocumentBuilder closedSale()
{
    return TillAtWork::saleWithoutCard().closed();
}

void close(TillAtWork& till)
{
    till.tell(TillAtWork::event(10, till.document()));
}

} // namespace

TEST(ClosedDocument, WithoutACardIsSentAndItsLoyaltyDataForgotten)
{
    TillAtWork till(closedSale());
    giveLoyaltyData(till.plugin);
    till.server.answer("<AccrualResponse/>");

    close(till);

    till.server.expect("Accrual", chequeParameter(closedCheque()));
    EXPECT_EQ(till.told(), "post Accrual") << "no slip, no save, nothing queued";
    EXPECT_EQ(till.log(),
              pinged
                  + "info: Отправка чека на сервер в online режиме\n"
                    "info: Отправка чека на сервер\n"
                    "info: Чек отправлен в online режиме");
    EXPECT_EQ(loyaltyDataOf(till.plugin), loyalty_data::none);
    EXPECT_EQ(till.lastError(), ": ");
}

TEST(ClosedDocument, SlipOfTheReplyIsPrinted)
{
    TillAtWork till(closedSale());
    till.server.answerText("Accrual", u"Спасибо"_s);

    close(till);

    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
    EXPECT_EQ(readable(sortedAttributes(QString::fromStdString(till.told()))),
              readable(sortedAttributes(uR"(post Accrual
print -1: <report name="custom" type="document" cached="false" title="vantiro check">
 <text>Спасибо</text>
</report>
)"_s)));
    EXPECT_EQ(till.log(),
              pinged
                  + "info: Отправка чека на сервер в online режиме\n"
                    "info: Отправка чека на сервер\n"
                    "info: lastReport = <doc>\n <noformat>Спасибо</noformat>\n</doc>\n\n"
                    "info: Чек отправлен в online режиме");
}

TEST(ClosedDocument, SlipIsPrintedOnce)
{
    TillAtWork till(closedSale());
    till.server.answerText("Accrual", u"Спасибо"_s);
    close(till);
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
    static_cast<void>(till.told());
    till.server.answerText("Accrual", QString());

    close(till);

    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
    EXPECT_EQ(till.told(), "post Accrual");
}

TEST(ClosedDocument, SlipOfNoKnownFormPrintsNothing)
{
    TillAtWork till(closedSale());
    till.server.answerText("Accrual", u"<slip/>"_s);

    close(till);

    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
    EXPECT_EQ(till.told(), "post Accrual");
    EXPECT_EQ(till.log(),
              pinged
                  + "info: Отправка чека на сервер в online режиме\n"
                    "info: Отправка чека на сервер\n"
                    "info: lastReport = <slip/>\n\n"
                    "error: Ошибка преобразования отчёта от Vantiro\n"
                    "info: Чек отправлен в online режиме");
}

TEST(ClosedDocument, FaultIsLoggedAndTheChequeNotSentAgain)
{
    TillAtWork till(closedSale());
    giveLoyaltyData(till.plugin);
    till.server.fault("Чек уже учтён на %1%");

    close(till);

    till.server.expect("Accrual", chequeParameter(closedCheque()));
    EXPECT_EQ(till.told(), "post Accrual");
    EXPECT_EQ(till.log(),
              pinged
                  + "info: Отправка чека на сервер в online режиме\n"
                    "info: Отправка чека на сервер\n"
                    "error: Чек уже учтён на %1%");
    EXPECT_EQ(loyaltyDataOf(till.plugin), loyalty_data::none);
    EXPECT_EQ(till.lastError(), ": ");
}

TEST(ClosedDocument, UselessReplyIsLoggedAndTheChequeNotSentAgain)
{
    TillAtWork till(closedSale());
    giveLoyaltyData(till.plugin);
    till.server.end(RestOutcome::http(200, ""));

    close(till);

    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
    EXPECT_EQ(till.told(), "post Accrual");
    EXPECT_TRUE(QString::fromStdString(till.log()).endsWith(u"\nerror: Некорректный ответ от сервера"_s));
    EXPECT_EQ(loyaltyDataOf(till.plugin), loyalty_data::none);
    EXPECT_EQ(till.lastError(), ": ");
}

TEST(ClosedDocument, LostConnectionQueuesTheSameCheque)
{
    TillAtWork till(closedSale());
    giveLoyaltyData(till.plugin);
    till.server.refuse();

    close(till);

    till.server.expect("Accrual", chequeParameter(closedCheque()));
    EXPECT_EQ(till.told(), "post Accrual\nenqueue vantiro OfflineAccrual");
    EXPECT_EQ(till.log(),
              pinged
                  + "info: Отправка чека на сервер в online режиме\n"
                    "info: Отправка чека на сервер\n"
                    "error: Произошла ошибка при выполнении запроса соединение отклонено\n"
                    "error: Ошибка отправки чека на сервер в online режиме\n"
                    "info: Отправка чека на сервер в режиме offline\n"
                    "info: Чек отправлен в offline режиме");
    ASSERT_EQ(till.queue.records().size(), 1);
    EXPECT_EQ(readable(sortedAttributes(till.queue.records().constFirst().message[u"body"_s].toString())),
              readable(sortedAttributes(soap::request("  <tem:OfflineAccrual>\n" + chequeParameter(closedCheque())
                                                      + "  </tem:OfflineAccrual>\n"))));
    EXPECT_EQ(loyaltyDataOf(till.plugin), loyalty_data::none);
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
}

TEST(ClosedDocument, ErrorOfAGatewayQueuesItToo)
{
    TillAtWork till(closedSale());
    till.server.end(RestOutcome::http(503, "busy"));

    close(till);

    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
    EXPECT_EQ(till.told(), "post Accrual\nenqueue vantiro OfflineAccrual");
}

TEST(ClosedDocument, OfflineDocumentIsOfferedToTheServerAllTheSame)
{
    TillAtWork till(closedSale());
    till.goOffline();
    till.server.answer("<AccrualResponse/>");

    close(till);

    till.server.expect("Accrual", chequeParameter(closedCheque()));
    EXPECT_EQ(till.told(), "post Accrual");
}

TEST(ClosedDocument, EventsDocumentIsSentWhateverIsOpen)
{
    TillAtWork till(TillAtWork::saleWithCard().identity(u"2"_s).number(1043));
    till.card()->setPointsForSpend(30.0);
    till.server.answer("<AccrualResponse/>");

    till.tell(TillAtWork::event(10, closedSale().build()));

    till.server.expect("Accrual", chequeParameter(closedCheque()));
    EXPECT_EQ(till.card()->fields.pointsForSpend, 0.0) << "the loyalty data forgotten are those of the open document";
}

TEST(ClosedDocument, StoredStateStaysAsItWas)
{
    TillAtWork till(closedSale());
    till.store(u"pointsForSpend"_s, 12.5);
    till.server.answer("<AccrualResponse/>");

    close(till);

    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(12.5));
}

// Which documents go out.

namespace {

struct Closed {
    const char* name;
    DocumentBuilder document;
    QByteArray chequeType; // empty: it is not sent
    int otherCardType = 0; // of the card of mode 5, if there is one

    friend std::ostream& operator<<(std::ostream& stream, const Closed& closed)
    {
        return stream << closed.name;
    }
};

class KindOfClosedDocument : public testing::TestWithParam<Closed> { };

} // namespace

TEST_P(KindOfClosedDocument, DecidesWhetherItIsSent)
{
    TillAtWork till(GetParam().document);
    if (const auto other = till.contents().card(5)) {
        till.contents().setCard(5, GetParam().otherCardType, other);
    }
    giveLoyaltyData(till.plugin);
    const bool isSent = !GetParam().chequeType.isEmpty();
    if (isSent) {
        till.server.answer("<AccrualResponse/>");
    }

    close(till);

    if (isSent) {
        till.server.expect("Accrual", chequeParameter(closedCheque(GetParam().chequeType)));
        EXPECT_EQ(loyaltyDataOf(till.plugin), loyalty_data::none);
    } else {
        EXPECT_EQ(till.told(), "");
        EXPECT_EQ(till.log() + '\n', pinged) << "the look for a better server is for every document";
        EXPECT_EQ(loyaltyDataOf(till.plugin), loyalty_data::asGiven);
    }
}

INSTANTIATE_TEST_SUITE_P(
    ClosedDocument, KindOfClosedDocument,
    testing::Values(Closed { "SaleWithThisSystemsCard", closedSale().card(u"9000000001"_s), "" },
                    Closed { "ReturnWithThisSystemsCard", closedSale().type(2).card(u"9000000001"_s), "" },
                    Closed { "SaleWithACardOfTypeThree", closedSale().cardOfMode(5, u"1"_s), "", 3 },
                    Closed { "SaleWithACardOfAnotherType", closedSale().cardOfMode(5, u"1"_s), "Sale", 2 },
                    Closed { "ReturnWithACardOfTypeThree", closedSale().type(2).cardOfMode(5, u"1"_s), "Return", 3 },
                    Closed { "ReturnBySaleWithACardOfTypeThree", closedSale().type(25).cardOfMode(5, u"1"_s), "Return",
                             3 },
                    Closed { "Sale", closedSale(), "Sale" }, Closed { "Return", closedSale().type(2), "Return" },
                    Closed { "ReturnBySaleWhoseSaleIsUnknown", closedSale().type(25), "Return" },
                    Closed { "TypeZero", closedSale().type(0), "" }, Closed { "TypeThree", closedSale().type(3), "" },
                    Closed { "TypeTwentyFour", closedSale().type(24), "" },
                    Closed { "TypeTwentySix", closedSale().type(26), "" }),
    [](const auto& row) { return std::string(row.param.name); });

TEST(ClosedDocument, WithPointsOfTheHostsOwnIsNotSent)
{
    TillAtWork till(closedSale());
    giveLoyaltyData(till.plugin);
    till.contents().bonusRecords = { DocumentBonusRecord() };

    close(till);

    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log() + '\n', pinged);
    EXPECT_EQ(loyaltyDataOf(till.plugin), loyalty_data::asGiven);
}
