#include "tests/store/round_trip.h"

#include <gtest/gtest.h>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

[[nodiscard]] till::LineFields numbered(int posnum)
{
    till::LineFields fields;
    fields.posnum = posnum;
    fields.code = QString::number(posnum);
    return fields;
}

[[nodiscard]] std::string positions(const QList<QSharedPointer<GoodsItem>>& lines)
{
    QStringList numbers;
    for (const QSharedPointer<GoodsItem>& line : lines) {
        numbers.append(QString::number(line->getPosnum()));
    }
    return numbers.join(u' ').toStdString();
}

} // namespace

TEST(StoredLine, EveryFieldComesBack)
{
    till::LineFields fields;
    fields.posnum = 3;
    fields.code = u"000042"_s;
    fields.barcode = u"4600051000057"_s;
    fields.price = 89.9;
    fields.minPrice = 60.05;
    fields.quantity = 1.235;
    fields.sum = 111.03;
    auto document = QSharedPointer<till::Cheque>::create();
    document->addLine(fields);
    const auto read = roundTrip(document);
    ASSERT_EQ(read->getPositionCount(), 1);

    const QSharedPointer<GoodsItem> line = read->getGoodsItems().constFirst();
    EXPECT_EQ(line->getPosnum(), 3);
    EXPECT_EQ(line->getCode().toStdString(), "000042");
    EXPECT_EQ(line->getBcode().toStdString(), "4600051000057");
    EXPECT_EQ(line->getPrice(), 89.9);
    EXPECT_EQ(line->getMinPrice(), 60.05);
    EXPECT_EQ(line->getQuantity(), 1.235);
    EXPECT_EQ(line->getSumb(), 111.03);
}

TEST(StoredLine, IsWrittenAsItIsNow)
{
    auto document = QSharedPointer<till::Cheque>::create();
    till::LineFields& fields = document->addLine(numbered(3))->fields;
    const QList<std::function<void()>> changes {
        [&] { fields.code = u"000042"_s; },
        [&] { fields.barcode = u"4600051000057"_s; },
        [&] { fields.price = 89.9; },
        [&] { fields.minPrice = 60.05; },
        [&] { fields.quantity = 1.235; },
        [&] { fields.sum = 111.03; },
        [&] { fields.sum = 0.0; },
        [&] { fields.sum.reset(); },
        [&] { fields.bonusSpendAllowed = false; },
        [&] { fields.bonusEarnAllowed = false; },
        [&] { fields.discountAllowed = false; },
        [&] { fields.onlyExternalDiscountAllowed = true; },
    };
    for (qsizetype i = 0; i < changes.size(); ++i) {
        const std::string before = till::toJson(document).toStdString();
        EXPECT_EQ(till::toJson(document).toStdString(), before);
        changes[i]();
        EXPECT_NE(till::toJson(document).toStdString(), before) << "change " << i;
        const auto read = roundTrip(document)->getGoodsItems().constFirst().dynamicCast<till::Line>();
        EXPECT_TRUE(read->fields == fields) << "change " << i;
    }
}

TEST(StoredLine, EachFlagComesBackByItself)
{
    for (int flag = 0; flag < 4; ++flag) {
        till::LineFields fields;
        fields.bonusSpendAllowed = flag == 0;
        fields.bonusEarnAllowed = flag == 1;
        fields.discountAllowed = flag == 2;
        fields.onlyExternalDiscountAllowed = flag == 3;
        auto document = QSharedPointer<till::Cheque>::create();
        document->addLine(fields);
        const QSharedPointer<GoodsItem> line = roundTrip(document)->getGoodsItems().constFirst();

        EXPECT_EQ(line->isAllowBonusSpend(), flag == 0);
        EXPECT_EQ(line->isAllowBonusEarn(), flag == 1);
        EXPECT_EQ(line->isAllowDiscount(), flag == 2);
        EXPECT_EQ(line->isAllowOnlyExternalDiscount(), flag == 3);
    }
}

TEST(StoredLine, SumThatIsNotSetStaysNotSet)
{
    till::LineFields fields;
    fields.price = 10.0;
    fields.quantity = 3.0;
    auto document = QSharedPointer<till::Cheque>::create();
    const auto line = document->addLine(fields);
    ASSERT_FALSE(line->fields.sum.has_value());
    const auto read = roundTrip(document)->getGoodsItems().constFirst().dynamicCast<till::Line>();

    EXPECT_FALSE(read->fields.sum.has_value());
    EXPECT_EQ(read->getSumb(), 30.0);
}

TEST(StoredLine, NumbersKeepEveryDigit)
{
    for (const double number : { 0.1 + 0.2, 1.0 / 3.0, 1e-7, 1e15 + 0.3, -0.005, 4.9e-324, 1.7976931348623157e308 }) {
        till::LineFields fields;
        fields.price = number;
        auto document = QSharedPointer<till::Cheque>::create();
        document->addLine(fields);

        EXPECT_EQ(roundTrip(document)->getGoodsItems().constFirst()->getPrice(), number);
    }
}

TEST(StoredLines, LiveAndDeletedComeBackInTheirOrder)
{
    auto document = QSharedPointer<till::Cheque>::create();
    for (const int posnum : { 5, 2, 9, 4, 7 }) {
        document->addLine(numbered(posnum));
    }
    document->remove(9);
    document->remove(2);
    const auto read = roundTrip(document);

    EXPECT_EQ(positions(read->getGoodsItems()), "5 4 7");
    EXPECT_EQ(positions(read->getDeletedGoodsItems()), "9 2");
}

TEST(StoredLines, AllMayBeDeleted)
{
    auto document = QSharedPointer<till::Cheque>::create();
    document->addLine(numbered(1));
    document->addLine(numbered(2));
    document->remove(1);
    document->remove(2);
    const auto read = roundTrip(document);

    EXPECT_EQ(read->getPositionCount(), 0);
    EXPECT_EQ(positions(read->getDeletedGoodsItems()), "1 2");
    EXPECT_NE(read->getCurrentPosition().state, Position::present);
}

TEST(StoredLines, NextLineTakesANumberThatWasNeverGiven)
{
    auto document = QSharedPointer<till::Cheque>::create();
    document->addLine(numbered(1));
    document->addLine(numbered(2));
    document->remove(2);
    const auto read = roundTrip(document);

    EXPECT_EQ(read->addLine({})->getPosnum(), 3);
}

TEST(StoredLines, CurrentPositionComesBack)
{
    auto document = QSharedPointer<till::Cheque>::create();
    for (const int posnum : { 1, 2, 3 }) {
        document->addLine(numbered(posnum));
    }
    document->remove(3);
    document->selectPosition(1);
    const auto read = roundTrip(document);

    EXPECT_EQ(read->getCurrentPosition().state, 1);
    EXPECT_EQ(read->getCurrentPosition().number, 1);
}

TEST(StoredLines, ThousandComeBack)
{
    auto document = QSharedPointer<till::Cheque>::create();
    for (int posnum = 1; posnum <= 1000; ++posnum) {
        document->addLine(numbered(posnum));
    }

    EXPECT_EQ(positions(roundTrip(document)->getGoodsItems()), positions(document->getGoodsItems()));
}
