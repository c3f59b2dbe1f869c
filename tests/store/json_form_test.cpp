#include "tests/store/json_samples.h"
#include "tests/store/store_test.h"
#include "tests/store/till_time.h"
#include "till/document/card.h"
#include "till/document/cheque.h"
#include "till/document/return_by_sale.h"
#include "till/store/document_json.h"

#include <QJsonDocument>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

/// A card that another host might have made.
class ForeignCard : public DocumentCardRecord {
public:
    [[nodiscard]] QVariant getNumber() const override
    {
        return 1;
    }

    [[nodiscard]] int getCodeInternal() const override
    {
        return 1;
    }

    [[nodiscard]] QVariant getBonusBalance() const override
    {
        return {};
    }

    void setBonusBalance(const QVariant& /*balance*/) override { }

    void setPointsForSpend(double /*points*/) override { }

    void setSpentSum(double /*sum*/) override { }
};

[[nodiscard]] std::string refusalToWrite(const QSharedPointer<AbstractDocument>& document)
{
    return refusal([&document] { (void)till::toJson(document); });
}

constexpr const char* endless = "Документ не записывается и не читается: a number is infinite or none";

} // namespace

TEST(StoredForm, IsReadAsItStandsInStoresOfToday)
{
    const TillTime zone("UTC0");
    const auto read = till::documentFromJson(storedReturn).dynamicCast<till::ReturnBySale>();
    ASSERT_TRUE(read);

    EXPECT_EQ(read->getDocumentIdentity().toStdString(), "back");
    EXPECT_EQ(read->getChequeNumber(), 1042);
    EXPECT_EQ(read->getShiftNumber(), 17);
    EXPECT_EQ(read->getOpenTime().toString(Qt::ISODateWithMs).toStdString(), "2024-03-05T14:07:09.123");
    EXPECT_EQ(read->getSourceDocumentId(), QVariant(u"77"_s));
    EXPECT_EQ(read->getDocumentSum(), 59.5);
    EXPECT_EQ(read->getSumToPay(), 20.5);
    ASSERT_TRUE(read->getSource());
    EXPECT_EQ(read->getSource()->chequeNumber, 1041);
    ASSERT_EQ(read->getPositionCount(), 1);
    EXPECT_EQ(read->getGoodsItems().constFirst()->getCode().toStdString(), "0042");
    ASSERT_EQ(read->getDeletedGoodsItems().size(), 1);
    EXPECT_EQ(read->getDeletedGoodsItems().constFirst()->getBcode().toStdString(), "4600051000057");
    EXPECT_EQ(read->getCurrentPosition().number, 2);
    ASSERT_EQ(read->getMoneyItems().size(), 1);
    EXPECT_EQ(read->getMoneyItems().constFirst()->getOpCode(), 70);
    ASSERT_TRUE(read->getCardRecord(7));
    EXPECT_EQ(read->getCardRecord(7)->getBonusBalance(), QVariant(512.25));
    ASSERT_EQ(read->coupons.size(), 1);
    EXPECT_EQ(read->coupons.constFirst()->getNumber().toStdString(), "vantiro-10");
    ASSERT_EQ(read->impacts.size(), 1);
    EXPECT_EQ(read->impacts.constFirst()->getTotals()->getDiscountSum(), 1.25);
    EXPECT_EQ(read->impacts.constFirst()->getTotals()->getDiscountType(), EDiscountType::bonus);
    EXPECT_EQ(read->getBonusRecords().size(), 1);
    EXPECT_EQ(read->getPluginDataJson().toStdString(), R"({"vantiro":{}})");
    EXPECT_EQ(read->getValue(u"Vantiro"_s, u"offlineMode"_s, {}), QVariant(true));
}

TEST(StoredForm, IsOneLineOfJson)
{
    const QByteArray text = till::toJson(till::documentFromJson(storedReturn));

    EXPECT_FALSE(text.contains('\n'));
    EXPECT_TRUE(QJsonDocument::fromJson(text).isObject());
}

TEST(StoredForm, IsTheSameWhenItWasReadAndWrittenAgain)
{
    const QByteArray once = till::toJson(till::documentFromJson(storedReturn));

    EXPECT_EQ(till::toJson(till::documentFromJson(once)).toStdString(), once.toStdString());
}

TEST(StoredForm, CardOfAnotherHostIsRefused)
{
    auto document = QSharedPointer<till::Cheque>::create();
    document->setCard(7, 3, QSharedPointer<ForeignCard>::create());

    EXPECT_EQ(refusalToWrite(document), "Документ не записывается и не читается: a card is not of this till");
}

TEST(StoredForm, NoDocumentIsRefused)
{
    EXPECT_EQ(refusalToWrite(nullptr), "Документ не записывается и не читается: the document is not of this till");
}

TEST(StoredForm, NumberThatIsInfiniteOrNoneIsRefusedWhereverItStands)
{
    const double none = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();

    till::LineFields line;
    line.sum = none;
    auto document = QSharedPointer<till::Cheque>::create();
    document->addLine(line);
    EXPECT_EQ(refusalToWrite(document), endless);

    till::ChequeHead head;
    head.documentSum = -infinite;
    EXPECT_EQ(refusalToWrite(QSharedPointer<till::Cheque>::create(head)), endless);

    document = QSharedPointer<till::Cheque>::create();
    document->setValue(u"Vantiro"_s, u"key"_s, QVariantList { 1, QVariantMap { { u"deep"_s, infinite } } });
    EXPECT_EQ(refusalToWrite(document), endless);

    document = QSharedPointer<till::Cheque>::create();
    const auto impact = QSharedPointer<BonusImpact>::create();
    impact->addDetailForPosition(1, none);
    document->impacts.append(impact);
    EXPECT_EQ(refusalToWrite(document), endless);
}
