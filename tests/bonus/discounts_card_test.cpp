#include "tests/bonus/bonus_client.h"
#include "tests/support/cheque_service.h"
#include "tests/support/fixed_time.h"
#include "tests/bonus/impact_text.h"
#include "tests/support/sample_cheque.h"

#include <gtest/gtest.h>

namespace {

/// A document that remembers which cards it was asked for.
class AskedCheque : public till::Cheque {
public:
    [[nodiscard]] QSharedPointer<DocumentCardRecord> getCardRecord(int cardMode) override
    {
        askedModes.append(cardMode);
        return till::Cheque::getCardRecord(cardMode);
    }

    QList<int> askedModes;
};

const QString discountOnBoth
    = QStringLiteral(R"(<A><Cheque><Discount DiscountID="1" Amount="1"/></Cheque><ChequeLine ChequeLineNo="1">)"
                     R"(<Discount DiscountID="2" Type="Percent" Percent="10" Amount="2"/></ChequeLine></A>)");

/// The modes that the document was asked for after the reply had come.
QList<int> askedAfterReply(const QString& inner)
{
    ChequeService service;
    BonusClient client;
    const auto document = QSharedPointer<AskedCheque>::create();
    service.whilePosting([&] { document->askedModes.clear(); });
    service.answerText("GetDiscounts", inner);

    EXPECT_TRUE(client.getDiscounts(document, {}, {}).isEmpty());

    EXPECT_TRUE(service.take().body.contains("tem:GetDiscounts"));
    return document->askedModes;
}

}

TEST(DiscountsCard, EachRecordGetsTheCardOfTheDocument)
{
    const FixedTime clock(QDateTime(QDate(2026, 1, 31), QTime(10, 16)));
    ChequeService service;
    BonusClient client;
    const auto document = sample::cheque(EDocumentType::sale);
    const auto card = sample::addCard(*document);
    service.answerText("GetDiscounts", discountOnBoth);

    const auto impacts = client.getDiscounts(document, {}, {});

    EXPECT_EQ(
        impactTexts(impacts),
        "'Скидка Vantiro на чек' at 2026-01-31T10:16:00, type 2, rate none, mode 2, object 0, position 0, sum 1, "
        "code 1, source 2, minimum price kept, card 9000000001, index int 77, details {}\n"
        "'Скидка Vantiro на позицию' at 2026-01-31T10:16:00, type 1, rate double 10, mode 2, object 1, position 1, "
        "sum 2, code 2, source 2, minimum price kept, card 9000000001, index int 77, details {}\n");
    for (const auto& impact : impacts) {
        EXPECT_EQ(impact->getTotals()->getCardRecord(), card);
    }
    service.expect("GetDiscounts", chequeParameter(sample::openChequeWithCard()));
}

TEST(DiscountsCard, CardOfAnotherModeIsNoCard)
{
    ChequeService service;
    BonusClient client;
    const auto document = sample::cheque(EDocumentType::sale);
    till::CardFields fields;
    fields.number = QStringLiteral("5000000005");
    fields.codeInternal = 55;
    document->setCard(6, 1, QSharedPointer<till::Card>::create(fields));
    service.answerText("GetDiscounts", discountOnBoth);

    const auto impacts = client.getDiscounts(document, {}, {});

    ASSERT_EQ(impacts.size(), 2);
    for (const auto& impact : impacts) {
        EXPECT_TRUE(impact->getTotals()->getCardRecord().isNull());
        EXPECT_FALSE(impact->getTotals()->getCardIndex().isValid());
    }
    service.expect("GetDiscounts", chequeParameter(sample::openCheque()));
}

TEST(DiscountsCard, EmptyTextLeavesTheCardAlone)
{
    EXPECT_TRUE(askedAfterReply(QString()).isEmpty());
}

TEST(DiscountsCard, DocumentWithoutDiscountsStillLooksForTheCard)
{
    EXPECT_EQ(askedAfterReply(QStringLiteral("<Answer/>")), QList<int> { 7 });
}
