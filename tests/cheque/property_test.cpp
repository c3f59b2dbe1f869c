#include "tests/cheque/generated_document.h"
#include "tests/cheque/schema_check.h"
#include "tests/support/xml_compare.h"

#include <QSet>
#include <QXmlStreamReader>

#include <iostream>

using namespace Qt::StringLiterals;

namespace {

constexpr unsigned seed = 20240305;
constexpr int cases = 1000;

/// Printed by hand from whole kopecks.
std::string money(qint64 kopecks)
{
    const qint64 size = qAbs(kopecks);
    const std::string rest = std::to_string(size % 100);
    return (kopecks < 0 ? "-" : "") + std::to_string(size / 100) + (rest.size() == 1 ? ".0" : ".") + rest;
}

/// Sums of doubles may come out at nothing from below.
std::string withoutEmptySign(const std::string& text)
{
    return text == "-0.00" ? "0.00" : text;
}

/// What is left of a text in XML, found by way of whole code points.
std::string carried(const QString& text)
{
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text.at(i).unicode();
        const char16_t after = i + 1 < text.size() ? text.at(i + 1).unicode() : u'\0';
        if (c >= 0xD800 && c < 0xDC00 && after >= 0xDC00 && after < 0xE000) {
            result += text.mid(i++, 2);
        } else if (c == 9 || c == 10 || c == 13 || (c >= 32 && c < 0xD800) || (c >= 0xE000 && c < 0xFFFE)) {
            result += QChar(c);
        }
    }
    return result.toStdString();
}

qint64 sumAt(const QList<GeneratedRecord>& records, int position)
{
    qint64 sum = 0;
    for (const GeneratedRecord& record : records) {
        sum += record.position == position ? record.sum : 0;
    }
    return sum;
}

qint64 sumOf(const QList<GeneratedRecord>& records)
{
    qint64 sum = 0;
    for (const GeneratedRecord& record : records) {
        sum += record.sum;
    }
    return sum;
}

/// What the server's new discounts take off the position; those whose code lies on it already do not count.
qint64 newlyGranted(const GeneratedDocument& made, int position)
{
    QSet<int> codes;
    for (const GeneratedRecord& record : made.carried) {
        if (record.position == position) {
            codes.insert(record.code);
        }
    }
    qint64 sum = 0;
    for (const GeneratedRecord& record : made.granted) {
        if (record.position == position && !codes.contains(record.code)) {
            codes.insert(record.code);
            sum += record.sum;
        }
    }
    return sum;
}

qint64 lastPoints(const GeneratedDocument& made, int position)
{
    qint64 sum = 0;
    for (const GeneratedRecord& record : made.spent) {
        sum = record.position == position ? record.sum : sum;
    }
    return sum;
}

/// Calls the check with each generated document until one fails.
template <class Check>
void forEachDocument(const Check& check)
{
    std::cout << "seed " << seed << ", " << cases << " documents\n";
    DocumentGenerator generator(seed);
    for (int i = 0; i < cases && !testing::Test::HasFailure(); ++i) {
        SCOPED_TRACE("document " + std::to_string(i));
        check(generator.next());
    }
}

class GeneratedCheques : public ChequeTest {
protected:
    [[nodiscard]] QDomDocument ordinary(const GeneratedDocument& made, const GrantedDiscounts& granted) const
    {
        return client.buildXmlCheck(made.document, made.positionCoupons, made.coupons, granted);
    }

    [[nodiscard]] QDomDocument accrual(const GeneratedDocument& made,
                                       const QList<QSharedPointer<MoneyItem>>& certificates) const
    {
        return client.buildAccrualXmlCheck(ordinary(made, {}), made.spentImpacts, made.positionCoupons, made.coupons,
                                           certificates);
    }
};

TEST_F(GeneratedCheques, ParseAndCarryTheirTexts)
{
    forEachDocument([this](const GeneratedDocument& made) {
        QXmlStreamReader reader(client.getXmlCheckString(ordinary(made, made.grantedImpacts)));
        std::string cards;
        std::string items;
        std::string coupons;
        while (!reader.atEnd()) {
            if (reader.readNext() != QXmlStreamReader::StartElement) {
                continue;
            }
            const auto value
                = [&](const QString& name) { return reader.attributes().value(name).toString().toStdString(); };
            if (reader.name() == u"DiscountCard"_s) {
                cards += value(u"DiscountCardNo"_s) + ";";
            } else if (reader.name() == u"Item"_s) {
                items += value(u"ItemID"_s) + "," + value(u"Barcode"_s) + ";";
            } else if (reader.name() == u"Coupon"_s) {
                coupons += value(u"CouponNo"_s) + ";";
            }
        }
        EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();

        std::string expectedItems;
        std::string expectedCoupons;
        for (const GeneratedLine& line : made.lines) {
            expectedItems += carried(line.code) + "," + carried(line.barcode) + ";";
            for (const QString& coupon : made.positionCoupons.value(line.position)) {
                expectedCoupons += carried(coupon) + ";";
            }
        }
        for (const QString& coupon : made.coupons) {
            expectedCoupons += carried(coupon) + ";";
        }
        EXPECT_EQ(cards, made.card.isEmpty() ? "" : carried(made.card) + ";");
        EXPECT_EQ(items, expectedItems);
        EXPECT_EQ(coupons, expectedCoupons);
    });
}

TEST_F(GeneratedCheques, AreValidInEveryForm)
{
    QList<QString> texts;
    forEachDocument([this, &texts](const GeneratedDocument& made) {
        texts.append(client.getXmlCheckString(ordinary(made, made.grantedImpacts)));
        texts.append(client.getXmlCheckString(accrual(made, made.document->getMoneyItems())));
        texts.append(client.getXmlCheckString(client.buildAccrualAnyXmlCheck(made.document)));
        texts.append(client.getXmlCheckString(
            client.buildAccrualCanceledXmlCheck(made.document, made.positionCoupons, made.coupons)));
    });

    ASSERT_EQ(texts.size(), 4 * cases);
    constexpr qsizetype atOnce = 500;
    for (qsizetype i = 0; i < texts.size(); i += atOnce) {
        EXPECT_TRUE(areValidCheques(texts.mid(i, atOnce)));
    }
}

TEST_F(GeneratedCheques, AmountOfALineIsItsSumWithPointsAndWithoutGrantedDiscounts)
{
    int checked = 0;
    forEachDocument([this, &checked](const GeneratedDocument& made) {
        const QDomDocument cheque = ordinary(made, made.grantedImpacts);
        for (const GeneratedLine& line : made.lines) {
            const QDomElement element = lineOf(cheque, line.position);
            const qint64 amount = line.sum + sumAt(made.spent, line.position) - newlyGranted(made, line.position);
            EXPECT_EQ(withoutEmptySign(attribute(element, "Amount")), money(amount));
            EXPECT_EQ(attribute(element, "BonusDiscount"), money(lastPoints(made, line.position)));
            EXPECT_EQ(attribute(element, "Price"), money(line.price));
            ++checked;
        }
    });
    EXPECT_GE(checked, cases);
}

TEST_F(GeneratedCheques, HeadShowsTheSumWithoutWhatIsGrantedAndAllPoints)
{
    forEachDocument([this](const GeneratedDocument& made) {
        const QDomDocument document = ordinary(made, made.grantedImpacts);
        const QDomElement cheque = document.documentElement();

        EXPECT_EQ(withoutEmptySign(attribute(cheque, "Amount")),
                  money(made.sum - sumOf(made.granted) - made.grantedOnCheque));
        EXPECT_EQ(attribute(cheque, "SubtractedBonus"), money(sumOf(made.spent)));
        EXPECT_EQ(attribute(cheque, "PositionCount"), std::to_string(made.lines.size()));
    });
}

TEST_F(GeneratedCheques, AccrualDiffersFromItsSourceInTheNamedAttributesAlone)
{
    forEachDocument([this](const GeneratedDocument& made) {
        QDomDocument expected = ordinary(made, {});
        QDomElement root = expected.documentElement();
        root.setAttribute(u"Status"_s, u"Closed"_s);
        root.setAttribute(u"SubtractedBonus"_s, QString::fromStdString(money(sumOf(made.spent))));
        if (!made.card.isEmpty()) {
            below(root, "DiscountCard")
                .setAttribute(u"SubtractAmount"_s, QString::fromStdString(money(sumOf(made.spent))));
        }
        for (const GeneratedLine& line : made.lines) {
            lineOf(expected, line.position)
                .setAttribute(u"BonusDiscount"_s, QString::fromStdString(money(sumAt(made.spent, line.position))));
        }

        EXPECT_TRUE(sameXml(accrual(made, {}), expected.toString()));
    });
}

TEST_F(GeneratedCheques, CertificatesOfAnAccrualAddUp)
{
    forEachDocument([this](const GeneratedDocument& made) {
        const QDomDocument document = accrual(made, made.document->getMoneyItems());
        const QDomElement cheque = document.documentElement();
        qint64 total = sumOf(made.spent);
        QDomElement payment = below(cheque, "Payments/Payment");
        QDomElement card = cheque.firstChildElement();
        if (!made.card.isEmpty()) {
            card = card.nextSiblingElement();
        }
        for (qsizetype i = 0; i < made.certificates.size(); ++i) {
            total += made.certificates.at(i);
            EXPECT_EQ(attribute(payment, "PaymentNo"), std::to_string(i + 1));
            EXPECT_EQ(attribute(payment, "Amount"), money(made.certificates.at(i)));
            EXPECT_EQ(attribute(card, "SubtractAmount"), money(made.certificates.at(i)));
            payment = payment.nextSiblingElement();
            card = card.nextSiblingElement();
        }
        EXPECT_TRUE(payment.isNull());
        EXPECT_EQ(card.tagName().toStdString(), "ChequeLines");
        EXPECT_EQ(attribute(cheque, "SubtractedBonus"), money(total));
    });
}

TEST(TextWithoutEntities, IsNeverChanged)
{
    const QStringList entities { u"&amp;"_s, u"&lt;"_s, u"&gt;"_s, u"&apos;"_s, u"&quot;"_s, u"&#xD;"_s };
    const QStringList pieces { u"&"_s,  u"amp"_s, u";"_s, u"&amp"_s,  u"lt;"_s,  u"&Lt;"_s,  u"&GT;"_s,
                               u"<"_s,  u">"_s,   u"'"_s, u"\""_s,    u"#xD"_s,  u"&#xd;"_s, u"&#13;"_s,
                               u"\r"_s, u"\n"_s,  u" "_s, u"Баллы"_s, u"quot"_s, u"apos;"_s, u"&nbsp;"_s };
    std::cout << "seed " << seed << ", " << cases << " texts\n";
    DocumentGenerator generator(seed);
    const OpenClient client;

    for (int checked = 0; checked < cases;) {
        QString text;
        for (int count = generator.below(12); count >= 0; --count) {
            text += pieces.at(generator.below(static_cast<int>(pieces.size())));
        }
        if (std::any_of(entities.cbegin(), entities.cend(),
                        [&](const QString& entity) { return text.contains(entity); })) {
            continue;
        }
        ASSERT_EQ(client.removeEscapeFromXml(text).toStdString(), text.toStdString());
        ++checked;
    }
}

} // namespace
