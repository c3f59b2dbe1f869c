#include "till/document/cheque.h"
#include "till/document/return_by_sale.h"

#include <gtest/gtest.h>

namespace {

TEST(ReturnBySale, IsToldByADynamicCast)
{
    const QSharedPointer<AbstractDocument> ordinary = QSharedPointer<till::Cheque>::create();
    const QSharedPointer<AbstractDocument> bySale = QSharedPointer<till::ReturnBySale>::create(nullptr);

    EXPECT_EQ(dynamic_cast<BackBySaleDocument*>(ordinary.data()), nullptr);
    EXPECT_NE(dynamic_cast<BackBySaleDocument*>(bySale.data()), nullptr);
    EXPECT_TRUE(ordinary.dynamicCast<BackBySaleDocument>().isNull());
    EXPECT_FALSE(bySale.objectCast<BackBySaleDocument>().isNull());
}

TEST(ReturnBySale, KnowsItsSale)
{
    const auto source = QSharedPointer<SaleDocumentSource>::create();
    source->chequeNumber = 77;
    till::ReturnBySale document(source);

    EXPECT_EQ(document.getSource(), source);
}

TEST(ReturnBySale, SaleMayBeUnknown)
{
    till::ReturnBySale document(nullptr);

    EXPECT_TRUE(document.getSource().isNull());
}

TEST(ReturnBySale, HasItsOwnTypeAndTheRestOfTheHead)
{
    till::ChequeHead head;
    head.number = 1043;
    till::ReturnBySale document(nullptr, head, QStringLiteral("abc"));

    EXPECT_EQ(document.getDocumentType(), 25);
    EXPECT_EQ(document.getChequeNumber(), 1043);
    EXPECT_EQ(document.getDocumentIdentity(), QStringLiteral("abc"));
}

TEST(ReturnBySale, HoldsLinesAsAChequeDoes)
{
    till::ReturnBySale document(nullptr);
    till::LineFields fields;
    fields.price = 10.5;
    document.addLine(fields);
    document.addLine(fields);
    document.remove(1);

    EXPECT_EQ(document.getPositionCount(), 1);
    EXPECT_EQ(document.getDocumentSum(), 10.5);
    EXPECT_EQ(document.getDeletedGoodsItems().size(), 1);
}

}
