#include "tests/cheque/golden_documents.h"

#include "tests/support/document_builder.h"

using namespace Qt::StringLiterals;

namespace {

const QString cardNumber = u"9000000001"_s;

QStringList withCard()
{
    return { u"ordinary"_s, u"accrual"_s, u"any"_s, u"canceled"_s };
}

// A cheque without a card goes out as an "any" cheque as well.
QStringList withoutCard()
{
    return { u"ordinary"_s, u"accrual"_s, u"any"_s, u"canceled"_s };
}

QStringList bySale()
{
    return { u"ordinary"_s, u"accrual"_s, u"back"_s, u"any"_s, u"canceled"_s };
}

Detail positionDiscount(int code)
{
    return Detail(record_name::positionDiscount).code(code);
}

QList<GoldenDocument> sales()
{
    QList<GoldenDocument> documents;
    documents.append({ .name = u"01-no-card"_s,
                       .forms = withoutCard(),
                       .document = DocumentBuilder()
                                       .closed()
                                       .line(Goods(1, u"1001"_s, 89.9, 2.0).barcode(u"4600051000057"_s).minPrice(60.0))
                                       .line(Goods(2, u"1002"_s, 45.5).takesNoPoints().takesNoDiscount())
                                       .build() });
    documents.append({ .name = u"02-card"_s,
                       .forms = withCard(),
                       .document = DocumentBuilder()
                                       .card(cardNumber)
                                       .line(Goods(1, u"2001"_s, 349.0).barcode(u"4601234567893"_s).minPrice(300.0))
                                       .build() });
    documents.append({ .name = u"03-certificates"_s,
                       .forms = withCard(),
                       .document = DocumentBuilder()
                                       .card(cardNumber)
                                       .line(Goods(1, u"3001"_s, 1500.0).barcode(u"4600000000017"_s))
                                       .cash(719.5)
                                       .certificate(u"CERT-0001"_s, 500.0, 70)
                                       .certificate(u"CERT-0003"_s, 10.0, 71)
                                       .certificate(u"CERT-0002"_s, 250.5, 74)
                                       .payment(u"CERT-0004"_s, 20.0, 2, 70)
                                       .build() });
    documents.append({ .name = u"04-certificate-without-card"_s,
                       .forms = withoutCard(),
                       .document = DocumentBuilder()
                                       .closed()
                                       .line(Goods(1, u"3002"_s, 300.0).barcode(u"4600000000024"_s))
                                       .certificate(u"777000111"_s, 300.0)
                                       .build() });
    return documents;
}

QList<GoldenDocument> spentPoints()
{
    QList<GoldenDocument> documents;
    const auto once = bonusImpact({ { 1, 30.0 }, { 2, 20.0 } });
    documents.append(
        { .name = u"05-bonus-of-one-impact"_s,
          .forms = withCard(),
          .document = DocumentBuilder()
                          .card(cardNumber)
                          .line(Goods(1, u"4001"_s, 100.0, 2.0).barcode(u"4600000000031"_s).minPrice(50.0).costs(170.0))
                          .line(Goods(2, u"4002"_s, 80.0).barcode(u"4600000000048"_s).minPrice(40.0).costs(60.0))
                          .line(Goods(3, u"4003"_s, 15.0).barcode(u"4600000000055"_s).earnsNothing())
                          .impact(once)
                          .build(),
          .spent = { once } });
    const auto first = bonusImpact({ { 1, 10.0 } });
    const auto second = bonusImpact({ { 1, 20.0 }, { 2, 5.0 } });
    documents.append({ .name = u"06-bonus-of-two-impacts"_s,
                       .forms = withCard(),
                       .document = DocumentBuilder()
                                       .card(cardNumber)
                                       .line(Goods(1, u"4001"_s, 100.0).barcode(u"4600000000031"_s).costs(70.0))
                                       .line(Goods(2, u"4002"_s, 50.0).barcode(u"4600000000048"_s).costs(45.0))
                                       .impact(first)
                                       .impact(second)
                                       .build(),
                       .spent = { first, second } });
    return documents;
}

QList<GoldenDocument> discounts()
{
    QList<GoldenDocument> documents;
    documents.append(
        { .name = u"07-percent-discount"_s,
          .forms = withCard(),
          .document = DocumentBuilder()
                          .card(cardNumber)
                          .line(Goods(1, u"5001"_s, 200.0).barcode(u"4600000000062"_s).minPrice(100.0).costs(185.0))
                          .line(Goods(2, u"5002"_s, 99.9).barcode(u"4600000000079"_s).costs(89.91))
                          .discount(positionDiscount(41).percent(7.5), { { 1, 15.0 } })
                          .discount(Detail(u"Скидка по карте"_s).code(12).percent(10).source(0), { { 2, 9.99 } })
                          .build() });
    documents.append(
        { .name = u"08-fixed-price"_s,
          .forms = withoutCard(),
          .document = DocumentBuilder()
                          .closed()
                          .line(Goods(1, u"5003"_s, 120.0, 3.0).barcode(u"4600000000086"_s).minPrice(90.0).costs(300.0))
                          .discount(positionDiscount(55).fixedPrice().rate(100), { { 1, 60.0 } })
                          .build() });
    documents.append(
        { .name = u"09-tender-discount"_s,
          .forms = withoutCard(),
          .document
          = DocumentBuilder()
                .closed()
                .line(Goods(1, u"5004"_s, 500.0).barcode(u"4600000000093"_s).costs(475.0))
                .line(Goods(2, u"5005"_s, 60.0).barcode(u"4600000000109"_s).costs(54.0))
                .discount(Detail(u"Скидка за оплату картой"_s).code(9).rate(5).tender().source(0), { { 1, 25.0 } })
                .discount(Detail(u"Скидка за оплату картой"_s).code(9).percent(10).tender().source(0), { { 2, 6.0 } })
                .build() });
    documents.append({ .name = u"10-sum-discount"_s,
                       .forms = withoutCard(),
                       .document = DocumentBuilder()
                                       .closed()
                                       .line(Goods(1, u"5006"_s, 75.0, 2.0).barcode(u"4600000000116"_s).costs(125.0))
                                       .discount(Detail(u"Скидка на сумму"_s).code(3).source(0), { { 1, 20.0 } })
                                       .discount(positionDiscount(77), { { 1, 5.0 } })
                                       .build() });
    documents.append(
        { .name = u"11-granted-discounts"_s,
          .forms = withCard(),
          .document = DocumentBuilder()
                          .card(cardNumber)
                          .line(Goods(1, u"5007"_s, 100.0).barcode(u"4600000000123"_s).minPrice(10.0).costs(95.0))
                          .line(Goods(2, u"5008"_s, 200.0).barcode(u"4600000000130"_s).minPrice(150.0))
                          .discount(positionDiscount(41).percent(5), { { 1, 5.0 } })
                          .build(),
          .granted = { discountImpact(Detail(record_name::chequeDiscount).code(90).onCheque().sum(10.0)),
                       discountImpact(positionDiscount(41).percent(5).on(1).sum(5.0)),
                       discountImpact(positionDiscount(42).percent(12.5).on(2).sum(25.0)),
                       discountImpact(positionDiscount(43).on(9).sum(1.0)) } });
    documents.append(
        { .name = u"27-no-discount-upon-discount"_s,
          .forms = withCard(),
          .document = DocumentBuilder()
                          .card(cardNumber)
                          .line(Goods(1, u"8301"_s, 100.0).barcode(u"4600000000239"_s).minPrice(60.0).costs(90.0))
                          .line(Goods(2, u"8302"_s, 50.0).barcode(u"4600000000246"_s).minPrice(30.0).costs(45.0))
                          .line(Goods(3, u"8303"_s, 20.0).barcode(u"4600000000253"_s).minPrice(5.0))
                          .line(Goods(4, u"8304"_s, 60.0).barcode(u"4600000000260"_s).costs(50.0))
                          .discount(Detail(u"Акция"_s).percent(10).source(0), { { 1, 10.0 } })
                          .discount(positionDiscount(44), { { 2, 5.0 } })
                          .discount(Detail(u"Акция"_s).source(0), { { 4, 6.0 } })
                          .impact(bonusImpact({ { 4, 4.0 } }))
                          .build(),
          .spent = { bonusImpact({ { 4, 4.0 } }) },
          .forbidDiscountForDiscountedPosition = true });
    return documents;
}

QList<GoldenDocument> minimumPrices()
{
    const auto document
        = DocumentBuilder()
              .closed()
              .line(Goods(1, u"6001"_s, 50.0).barcode(u"4600000000147"_s).minPrice(50.0).takesNoPoints().earnsNothing())
              .line(Goods(2, u"6002"_s, 99.996).barcode(u"4600000000154"_s).minPrice(100.0))
              .line(Goods(3, u"6003"_s, 10.01).barcode(u"4600000000161"_s).minPrice(10.0).takesNoPoints())
              .build();
    const QStringList names { u"12-minimum-price-both-allowed"_s, u"13-minimum-price-earns-nothing"_s,
                              u"14-minimum-price-takes-no-points"_s, u"15-minimum-price-neither"_s };
    QList<GoldenDocument> documents;
    for (int mode = 0; mode < names.size(); ++mode) {
        documents.append(
            { .name = names.at(mode), .forms = withoutCard(), .document = document, .noBonusForMinprice = mode });
    }
    return documents;
}

QList<GoldenDocument> couponsAndDeletedLines()
{
    QList<GoldenDocument> documents;
    documents.append({ .name = u"16-coupons"_s,
                       .forms = withCard(),
                       .document = DocumentBuilder()
                                       .card(cardNumber)
                                       .line(Goods(1, u"7001"_s, 30.0).barcode(u"4600000000178"_s))
                                       .line(Goods(2, u"7002"_s, 40.0).barcode(u"4600000000185"_s))
                                       .build(),
                       .positionCoupons = { { 1, { u"P-2"_s, u"P-1"_s } }, { 7, { u"LOST"_s } } },
                       .coupons = { u"vantiro-10"_s, u"A-1"_s } });
    const auto spent = bonusImpact({ { 2, 3.0 } });
    documents.append(
        { .name = u"17-all-lines-deleted"_s,
          .forms = withCard(),
          .document = DocumentBuilder()
                          .card(cardNumber)
                          .costs(5.0)
                          .deletedLine(Goods(1, u"1001"_s, 89.9, 2.0).barcode(u"4600051000057"_s).minPrice(60.0))
                          .deletedLine(Goods(2, u"1003"_s, 10.0))
                          .discount(positionDiscount(41).percent(5), { { 1, 8.99 } })
                          .impact(spent)
                          .build(),
          .positionCoupons = { { 1, { u"P-1"_s } } },
          .coupons = { u"C-1"_s },
          .spent = { spent } });
    return documents;
}

QList<GoldenDocument> returns()
{
    const Goods half = Goods(1, u"1001"_s, 89.9, 0.5).barcode(u"4600051000057"_s).minPrice(60.0);
    const auto record = saleSource(901, at("2024-02-29T23:59:59"), QDateTime(), uR"({"vantiro":{"chequeNo":"12"}})"_s);
    QList<GoldenDocument> documents;
    documents.append({ .name = u"18-return-by-key"_s,
                       .forms = bySale(),
                       .document = DocumentBuilder()
                                       .type(EDocumentType::returnBySale)
                                       .closed()
                                       .sourceKey(4711)
                                       .card(cardNumber)
                                       .line(Goods(1, u"2001"_s, 349.0).barcode(u"4601234567893"_s).minPrice(300.0))
                                       .build() });
    documents.append({ .name = u"19-return-by-record"_s,
                       .forms = bySale(),
                       .document = DocumentBuilder().closed().line(half).buildReturn(record) });
    documents.append({ .name = u"20-return-whose-sale-is-lost"_s,
                       .forms = { u"ordinary"_s, u"accrual"_s, u"any"_s, u"canceled"_s },
                       .document = DocumentBuilder().closed().line(half).buildReturn(nullptr) });
    documents.append({ .name = u"21-return-without-sale"_s,
                       .forms = withCard(),
                       .document = DocumentBuilder()
                                       .type(EDocumentType::goodsReturn)
                                       .card(cardNumber)
                                       .line(Goods(1, u"8001"_s, 100.0).barcode(u"4600000000192"_s).costs(90.0))
                                       .impact(bonusImpact({ { 1, 10.0 } }))
                                       .certificate(u"CERT-0007"_s, 40.0)
                                       .build() });
    return documents;
}

QList<GoldenDocument> oddTexts()
{
    QList<GoldenDocument> documents;
    documents.append(
        { .name = u"22-hostile-text"_s,
          .forms = withCard(),
          .document = DocumentBuilder()
                          .card(u"9000 \"Иванов & Ко\""_s)
                          .line(Goods(1, u"Сыр \"Российский\" & <50%> ]]> 'вес'"_s, 100.0).barcode(u"46\n00\t1"_s))
                          .certificate(u"<серт> №1]]>"_s, 40.0)
                          .build(),
          .positionCoupons = { { 1, { u"%1 %2 &amp;"_s } } },
          .coupons = { u"Скидка\r\n«10%» <b>"_s, u"&lt;&#10;"_s } });
    // What a scanner in the wrong mode may send: separators of fields, escapes, halves of characters.
    documents.append({ .name = u"28-control-characters"_s,
                       .forms = withCard(),
                       .document = DocumentBuilder()
                                       .card(u"90000\x1E\x04"
                                             u"00001"_s)
                                       .line(Goods(1,
                                                   u"84\U0001F600\xD83D"
                                                   u"01\xFFFE"_s,
                                                   12.0)
                                                 .barcode(u"01046004\x1D"
                                                          u"39931256"_s))
                                       .certificate(u"CERT\x1B-0006\x01"_s, 2.0)
                                       .build(),
                       .positionCoupons = { { 1, { u"\x02P-1\x03"_s } } },
                       .coupons = { u"C\xDC00-\xFFFF\x08"
                                    u"1"_s } });
    return documents;
}

QList<GoldenDocument> oddNumbers()
{
    QList<GoldenDocument> documents;
    const auto negative = bonusImpact({ { 1, -1.0 } });
    documents.append({ .name = u"23-negative-sums"_s,
                       .forms = withoutCard(),
                       .document = DocumentBuilder()
                                       .closed()
                                       .costs(-15.5)
                                       .line(Goods(1, u"8101"_s, 25.5, -1.0).barcode(u"4600000000208"_s).minPrice(20.0))
                                       .line(Goods(2, u"8102"_s, 10.0).barcode(u"4600000000215"_s))
                                       .line(Goods(3, u"8103"_s, 1.0).barcode(u"4600000000222"_s).costs(-0.001))
                                       .discount(Detail(u"Округление"_s).source(0), { { 1, -3.0 } })
                                       .impact(negative)
                                       .certificate(u"CERT-0005"_s, -5.0)
                                       .build(),
                       .spent = { negative } });
    documents.append({ .name = u"24-zero-sums"_s,
                       .forms = withCard(),
                       .document = DocumentBuilder()
                                       .card(cardNumber)
                                       .line(Goods(1, u"8201"_s, 0.0).takesNoDiscount().takesNoPoints().earnsNothing())
                                       .line(Goods(2, QString(), 5.0, 0.0).minPrice(4.0))
                                       .discount(positionDiscount(41).percent(0), { { 2, 0.0 } })
                                       .impact(bonusImpact({ { 2, 0.0 } }))
                                       .build(),
                       .spent = { bonusImpact({ { 2, 0.0 } }) } });
    const auto fraction = bonusImpact({ { 2, 0.004 } });
    documents.append(
        { .name = u"29-fractions"_s,
          .forms = withoutCard(),
          .document
          = DocumentBuilder()
                .closed()
                .costs(1234567.894)
                .line(Goods(1, u"8501"_s, 99.99, 0.333).barcode(u"4600000000277"_s).minPrice(10.1).costs(33.29667))
                .line(Goods(2, u"8502"_s, 11.0).barcode(u"4600000000284"_s).costs(10.004))
                .line(Goods(3, u"8503"_s, 12.345678, 1.23456).barcode(u"4600000000291"_s).minPrice(1.5).costs(15.24))
                .discount(positionDiscount(41).percent(33.3), { { 3, 0.125 } })
                .impact(fraction)
                .build(),
          .spent = { fraction } });
    return documents;
}

QList<GoldenDocument> oddIdentities()
{
    const Goods goods = Goods(1, u"2001"_s, 349.0).barcode(u"4601234567893"_s).minPrice(300.0);
    QList<GoldenDocument> documents;
    documents.append({ .name = u"26-brought-back"_s,
                       .forms = withCard(),
                       .document = DocumentBuilder().card(cardNumber).line(goods).build(),
                       .checkData = { { u"chequeNo"_s, u"77"_s },
                                      { u"chequeUid"_s, u"B01D8779-68C6-576D-BEF4-26488C9C9223"_s },
                                      { u"shiftNo"_s, u"16"_s } } });
    documents.append({ .name = u"30-unknown-type"_s,
                       .forms = withoutCard(),
                       .document = DocumentBuilder().type(7).closed().line(goods).build() });
    return documents;
}

}

GoldenDocument documentOfThousandLines()
{
    DocumentBuilder document;
    document.card(cardNumber);
    PositionCoupons coupons;
    QMap<int, double> points;
    for (int n = 1; n <= 1000; ++n) {
        const int price = 1000 + n; // kopecks
        const int minPrice = price / 2;
        const int quantity = 1 + n % 3;
        int sum = price * quantity;
        if (n % 10 == 0) {
            points.insert(n, 1.5);
            sum -= 150;
        }
        if (n % 4 == 0) {
            document.discount(positionDiscount(n).percent(5), { { n, 0.25 } });
            sum -= 25;
        }
        if (n % 100 == 0) {
            coupons.insert(n, { u"P-%1"_s.arg(n) });
        }
        document.line(Goods(n, u"G%1"_s.arg(n), price / 100.0, quantity)
                          .barcode(n % 7 == 0 ? QString() : QString::number(460000000000 + n))
                          .minPrice(minPrice / 100.0)
                          .costs(sum / 100.0));
    }
    const auto spent = bonusImpact(points);
    return { .name = u"25-thousand-lines"_s,
             .forms = withCard(),
             .document = document.impact(spent).build(),
             .positionCoupons = coupons,
             .spent = { spent } };
}

QList<GoldenDocument> goldenDocuments()
{
    return sales() + spentPoints() + discounts() + minimumPrices() + couponsAndDeletedLines() + returns() + oddTexts()
        + oddNumbers() + oddIdentities() + QList<GoldenDocument> { documentOfThousandLines() };
}
