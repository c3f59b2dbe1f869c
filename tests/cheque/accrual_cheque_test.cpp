#include "tests/cheque/cheque_support.h"
#include "tests/cheque/null_detail.h"
#include "tests/support/document_builder.h"
#include "tests/support/log_recorder.h"
#include "tests/support/xml_compare.h"

using namespace Qt::StringLiterals;

namespace {

using Bonuses = QList<QSharedPointer<BonusImpact>>;
using Certificates = QList<QSharedPointer<MoneyItem>>;

class AccrualCheque : public ChequeTest {
protected:
    AccrualCheque()
    {
        document.card(u"9000000001"_s).line(Goods(1, u"1001"_s, 100.0).minPrice(50.0)).line(Goods(2, u"1002"_s, 80.0));
    }

    [[nodiscard]] QDomDocument accrualCheque(const Bonuses& bonuses = {}, const Certificates& certificates = {}) const
    {
        return client.buildAccrualXmlCheck(ordinaryCheque(document.build()), bonuses, {}, {}, certificates);
    }

    [[nodiscard]] static Certificates certificates(const QMap<QString, double>& sums)
    {
        DocumentBuilder paid;
        for (auto sum = sums.constBegin(); sum != sums.constEnd(); ++sum) {
            paid.certificate(sum.key(), sum.value());
        }
        return paid.build()->getMoneyItems();
    }

    /// "Cheque / card / line 1 / line 2": what is said of the points.
    [[nodiscard]] static std::string points(const QDomDocument& cheque)
    {
        return attribute(cheque.documentElement(), "SubtractedBonus") + " / "
            + attribute(below(cheque.documentElement(), "DiscountCard"), "SubtractAmount") + " / "
            + attribute(lineOf(cheque, 1), "BonusDiscount") + " / " + attribute(lineOf(cheque, 2), "BonusDiscount");
    }

    DocumentBuilder document; // with a card and two lines
};

TEST_F(AccrualCheque, WithNothingSpentSaysSoEverywhere)
{
    document.impact(bonusImpact({ { 1, 30.0 }, { 2, 20.0 } }));
    EXPECT_EQ(points(ordinaryCheque(document.build())), "50.00 / 50.00 / 30.00 / 20.00");

    const QDomDocument cheque = accrualCheque();

    EXPECT_EQ(points(cheque), "0.00 / 0.00 / 0.00 / 0.00");
    EXPECT_EQ(attribute(cheque.documentElement(), "Status"), "Closed");
}

TEST_F(AccrualCheque, PointsAndCertificatesMeetInTheHeadAlone)
{
    const QDomDocument cheque = accrualCheque({ bonusImpact({ { 1, 10.0 } }) }, certificates({ { u"C-1"_s, 5.0 } }));

    EXPECT_EQ(points(cheque), "15.00 / 10.00 / 10.00 / 0.00");
    EXPECT_EQ(attributesOf(below(cheque.documentElement(), "DiscountCard").nextSiblingElement()),
              "BonusCard = false\n"
              "DiscountCardID = 0\n"
              "DiscountCardNo = C-1\n"
              "EnteredAsPhoneNumber = false\n"
              "SubtractAmount = 5.00\n"
              "SubtractedBonus = 0");
}

TEST_F(AccrualCheque, PointsOfOnePositionAddUpOverTheImpacts)
{
    EXPECT_EQ(points(accrualCheque({ bonusImpact({ { 1, 10.0 }, { 2, 0.5 } }), bonusImpact({ { 1, 20.25 } }) })),
              "30.75 / 30.75 / 30.25 / 0.50");
}

TEST_F(AccrualCheque, PointsOfUnknownPositionsCountInTheTotalsAlone)
{
    EXPECT_EQ(points(accrualCheque({ bonusImpact({ { 1, 10.0 }, { 99, 1.0 } }) })), "11.00 / 11.00 / 10.00 / 0.00");
}

TEST_F(AccrualCheque, PointsCountByTheKeyOfTheirDetail)
{
    const auto bonus = bonusImpact({ { 1, 10.0 } });
    bonus->getDetails().value(1)->setPosition(2);

    EXPECT_EQ(points(accrualCheque({ bonus })), "10.00 / 10.00 / 10.00 / 0.00");
}

TEST_F(AccrualCheque, PointsCountWhateverTheNameOfTheirRecord)
{
    const auto bonus = bonusImpact({ { 2, 10.0 } });
    bonus->getDetails().value(2)->setDiscountName(u"Бонусы"_s);

    EXPECT_EQ(points(accrualCheque({ bonus })), "10.00 / 10.00 / 0.00 / 10.00");
}

TEST_F(AccrualCheque, ImpactWithoutDetailsCountsAsNothing)
{
    const auto bonus = QSharedPointer<BonusImpact>::create(Detail(record_name::bonus).sum(50.0).record());

    EXPECT_EQ(points(accrualCheque({ bonus })), "0.00 / 0.00 / 0.00 / 0.00");
}

TEST_F(AccrualCheque, MissingDetailIsSkipped)
{
    const auto bonus = bonusImpact({ { 1, 10.0 } });
    setNullDetail(*bonus, 2);

    EXPECT_EQ(points(accrualCheque({ bonus })), "10.00 / 10.00 / 10.00 / 0.00");
}

TEST_F(AccrualCheque, SumsAreRoundedByPrintingThem)
{
    const QDomDocument cheque
        = accrualCheque({ bonusImpact({ { 1, 0.004 }, { 2, 0.004 } }) }, certificates({ { u"C-1"_s, 0.004 } }));

    EXPECT_EQ(points(cheque), "0.01 / 0.01 / 0.00 / 0.00");
}

TEST_F(AccrualCheque, CertificatesArePaymentsAndCardsInTheirOrder)
{
    const QDomDocument cheque
        = accrualCheque({}, certificates({ { u"C-1"_s, 500.0 }, { u"C-2"_s, 250.5 }, { u"C-3"_s, 0.0 } }));
    const QDomElement root = cheque.documentElement();

    EXPECT_EQ(childrenOf(root),
              "DiscountCard DiscountCard DiscountCard DiscountCard ChequeLines Discounts Payments Messages");
    std::string cards;
    for (QDomElement card = below(root, "DiscountCard"); card.tagName() == u"DiscountCard"_s;
         card = card.nextSiblingElement()) {
        cards += attribute(card, "DiscountCardNo") + " " + attribute(card, "BonusCard") + "; ";
    }
    EXPECT_EQ(cards, "9000000001 true; C-1 false; C-2 false; C-3 false; ");

    std::string payments;
    for (QDomElement payment = below(root, "Payments/Payment"); !payment.isNull();
         payment = payment.nextSiblingElement()) {
        payments += attributesOf(payment) + "\n";
    }
    EXPECT_EQ(payments,
              "Amount = 500.00\nPaymentNo = 1\nPaymentUID = \nType = 6\n"
              "Amount = 250.50\nPaymentNo = 2\nPaymentUID = \nType = 6\n"
              "Amount = 0.00\nPaymentNo = 3\nPaymentUID = \nType = 6\n");
    EXPECT_EQ(attribute(root, "SubtractedBonus"), "750.50");
}

TEST_F(AccrualCheque, WithoutCardHasTheCardsOfItsCertificatesOnly)
{
    document = DocumentBuilder().line(Goods(1, u"1001"_s, 100.0));

    const QDomElement cheque
        = rootOf(accrualCheque({ bonusImpact({ { 1, 10.0 } }) }, certificates({ { u"C-1"_s, 5.0 } })));

    EXPECT_EQ(childrenOf(cheque), "DiscountCard ChequeLines Discounts Payments Messages");
    EXPECT_EQ(attribute(below(cheque, "DiscountCard"), "DiscountCardNo"), "C-1");
    EXPECT_EQ(attribute(cheque, "SubtractedBonus"), "15.00");
}

TEST_F(AccrualCheque, WithoutCardStaysWithoutOneWhateverWasSpent)
{
    document = DocumentBuilder().line(Goods(1, u"1001"_s, 100.0));

    EXPECT_EQ(childrenOf(accrualCheque({ bonusImpact({ { 1, 10.0 } }) }).documentElement()),
              "ChequeLines Discounts Payments Messages");
}

TEST_F(AccrualCheque, IdentityTimesSumAndCountAreThoseOfItsSource)
{
    document.closed().impact(bonusImpact({ { 1, 30.0 } })).costs(150.0);

    EXPECT_EQ(attributesOf(accrualCheque({ bonusImpact({ { 1, 10.0 } }) }).documentElement()),
              "Amount = 150.00\n"
              "ChequeNo = 1042\n"
              "ChequeType = Sale\n"
              "ChequeUID = 11116E73-1C03-5DE6-9130-5F9925AE8AB4\n"
              "CloseTime = 2024-03-05T14:09:30\n"
              "OpenTime = 2024-03-05T14:07:09\n"
              "PositionCount = 2\n"
              "ShiftNo = 17\n"
              "Status = Closed\n"
              "SubtractedBonus = 10.00\n"
              "xmlns:xsd = http://www.w3.org/2001/XMLSchema\n"
              "xmlns:xsi = http://www.w3.org/2001/XMLSchema-instance");
}

struct ChequeTypeRow {
    int documentType;
    const char* chequeType;
};

class TypeOfAccrualCheque : public AccrualCheque, public testing::WithParamInterface<ChequeTypeRow> { };

TEST_P(TypeOfAccrualCheque, IsThatOfItsSource)
{
    document.type(GetParam().documentType);

    EXPECT_EQ(attribute(accrualCheque().documentElement(), "ChequeType"), GetParam().chequeType);
}

INSTANTIATE_TEST_SUITE_P(Types, TypeOfAccrualCheque,
                         testing::Values(ChequeTypeRow { 1, "Sale" }, ChequeTypeRow { 2, "Return" },
                                         ChequeTypeRow { 7, "" }));

TEST_F(AccrualCheque, CouponsOfTheSourceAreNotCopied)
{
    const QDomDocument source
        = client.buildXmlCheck(document.build(), { { 1, { u"OLD-1"_s } }, { 2, { u"OLD-2"_s } } }, { u"OLD"_s }, {});

    const QDomDocument cheque
        = client.buildAccrualXmlCheck(source, {}, { { 2, { u"P-2"_s, u"P-1"_s } } }, { u"B"_s, u"A"_s }, {});

    EXPECT_EQ(childrenOf(lineOf(cheque, 1)), "Item Discounts");
    EXPECT_EQ(childrenOf(lineOf(cheque, 2)), "Item Discounts Coupon Coupon");
    EXPECT_EQ(couponsOf(lineOf(cheque, 2)), "P-2 P-1");
    EXPECT_EQ(childrenOf(cheque.documentElement()),
              "DiscountCard ChequeLines Discounts Payments Messages Coupon Coupon");
    EXPECT_EQ(couponsOf(cheque.documentElement()), "B A");
}

TEST_F(AccrualCheque, TellsTheLogThatItIsMade)
{
    const QDomDocument source = ordinaryCheque(document.build());
    const LogRecorder log;

    const QDomDocument cheque = client.buildAccrualXmlCheck(source, {}, {}, {}, {});

    EXPECT_EQ(log.lines(), QStringList(u"info vantiro: Создание xml-чека для commit"_s));
}

} // namespace
