#include "tests/front/kept_state.h"
#include "tests/front/passed_on.h"

#include <QMetaType>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// Which events mean anything, how their arguments are read, and the event that has none.

namespace {

[[nodiscard]] Event eventOf(int code)
{
    return Event(static_cast<EActivityListener::Event>(code));
}

/// A host's own way of handing objects round, which converts to the pointers of the contract.
struct Handle {
    QSharedPointer<AbstractDocument> document;
    QSharedPointer<GoodsItem> position;
};

/// Makes handles convertible for as long as it lives.
class HandleConversions {
public:
    HandleConversions()
    {
        EXPECT_TRUE((QMetaType::registerConverter<Handle, QSharedPointer<AbstractDocument>>(
            [](const Handle& handle) { return handle.document; })));
        EXPECT_TRUE((QMetaType::registerConverter<Handle, QSharedPointer<GoodsItem>>(
            [](const Handle& handle) { return handle.position; })));
    }

    ~HandleConversions()
    {
        const QMetaType handle = QMetaType::fromType<Handle>();
        QMetaType::unregisterConverterFunction(handle, QMetaType::fromType<QSharedPointer<AbstractDocument>>());
        QMetaType::unregisterConverterFunction(handle, QMetaType::fromType<QSharedPointer<GoodsItem>>());
    }

private:
    Q_DISABLE_COPY_MOVE(HandleConversions)
};

[[nodiscard]] QVariant handleOf(const QSharedPointer<AbstractDocument>& document)
{
    return QVariant::fromValue(Handle { document, nullptr });
}

/// A document whose stored values cannot be read.
class UnreadableCheque : public till::Cheque {
public:
    [[nodiscard]] QVariant getValue(const QString&, const QString&, const QVariant&) const override
    {
        throw BasicException(tr::Tr(u"данные повреждены"_s));
    }
};

} // namespace

TEST(Events, OthersChangeNothingAndAreNotLogged)
{
    TillAtWork till(TillAtWork::saleWithoutCard(), couponsApart());
    giveCoupons(till, { u"cheque-1"_s }, { { 1, { u"item-1"_s } } });
    giveLoyaltyData(till.plugin);
    static_cast<void>(till.log());

    for (int code = -1; code <= 300; ++code) {
        if (code == 9 || code == 10 || code == 12 || code == 21 || code == 22) {
            continue;
        }
        till.plugin.handleEvent(
            TillAtWork::event(code, till.document())
                .addArgument(u"position"_s, QVariant::fromValue(till.document()->getGoodsItems().constFirst())));
        EXPECT_EQ(till.told(), "") << code;
        EXPECT_EQ(till.log(), "") << code;
    }

    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: cheque-1; 1: item-1");
    EXPECT_EQ(loyaltyDataOf(till.plugin), loyalty_data::asGiven);
}

TEST(Events, OfCodeElevenIsOneOfTheOthers)
{
    TillAtWork till(TillAtWork::saleWithoutCard().closed());
    till.tell(TillAtWork::event(11, till.document()));
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), "");
}

// Event 9.

TEST(RestoringEvent, BringsTheStoredStateBackAndDoesNothingElse)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.store(u"pointsForSpend"_s, 12.5);
    till.store(u"checkCoupons"_s, QStringList { u"cheque-1"_s });
    till.store(u"positionCoupons"_s, QVariantMap { { u"1"_s, QStringList { u"item-1"_s } } });
    giveLoyaltyData(till.plugin);
    static_cast<void>(till.log());

    till.tell(eventOf(9));

    EXPECT_EQ(till.plugin.pointsForSpend, 12.5);
    EXPECT_EQ(till.card()->fields.pointsForSpend, 12.5);
    EXPECT_EQ(till.plugin.discountImpacts.size(), 0);
    EXPECT_EQ(till.plugin.bonusImpacts.size(), 0);
    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: cheque-1; 1: item-1");
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), "");
}

TEST(RestoringEvent, RestoresTheOpenDocumentWhateverItsArgumentsSay)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.store(u"checkCoupons"_s, QStringList { u"cheque-1"_s });
    const QSharedPointer<AbstractDocument> other = TillAtWork::saleWithCard().identity(u"2"_s).build();
    other->setValue(u"Vantiro"_s, u"checkCoupons"_s, QStringList { u"cheque-2"_s });

    till.tell(TillAtWork::event(9, other));

    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: cheque-1");
}

TEST(RestoringEvent, FailureToReadPassesOn)
{
    TillAtWork till(QSharedPointer<UnreadableCheque>::create(), couponsApart());
    giveLoyaltyData(till.plugin);

    EXPECT_EQ(passedOn([&till] { till.tell(eventOf(9)); }), "данные повреждены");

    EXPECT_EQ(loyaltyDataOf(till.plugin), loyalty_data::asGiven);
    EXPECT_EQ(till.told(), "");
}

// Arguments of another type are converted where there is a conversion.

TEST(EventArgument, ClosedDocumentMayComeConverted)
{
    const HandleConversions conversions;
    TillAtWork till;
    till.server.answer("<AccrualResponse/>");

    till.tell(
        eventOf(10).addArgument(u"document"_s, handleOf(TillAtWork::saleWithoutCard().number(77).closed().build())));

    EXPECT_TRUE(till.server.take("Accrual").contains(u" ChequeNo=\"77\""_s));
}

TEST(EventArgument, CancelledDocumentMayComeConverted)
{
    const HandleConversions conversions;
    TillAtWork till;
    till.server.answer("<AccrualResponse/>");

    till.tell(eventOf(12).addArgument(u"document"_s, handleOf(TillAtWork::saleWithCard().number(77).build())));

    EXPECT_TRUE(till.server.take("Accrual").contains(u" ChequeNo=\"77\""_s));
}

TEST(EventArgument, DocumentBeforeCancellationMayComeConverted)
{
    const HandleConversions conversions;
    TillAtWork till;
    till.server.answer("<AccrualResponse/>");

    till.tell(TillAtWork::event(22, till.document())
                  .addArgument(u"documentBeforeStorno"_s, handleOf(TillAtWork::saleWithCard().number(77).build())));

    EXPECT_TRUE(till.server.take("Accrual").contains(u" ChequeNo=\"77\""_s));
}

TEST(EventArgument, RemovedPositionAndItsDocumentMayComeConverted)
{
    const HandleConversions conversions;
    TillAtWork till(TillAtWork::saleWithCard().line(Goods(2, u"1043"_s, 50.0)), couponsApart());
    giveCoupons(till, {}, { { 2, { u"item-2"_s } } });
    const Handle handle { till.document(), till.contents().remove(2) };

    till.tell(eventOf(21)
                  .addArgument(u"position"_s, QVariant::fromValue(handle))
                  .addArgument(u"document"_s, QVariant::fromValue(handle)));

    EXPECT_EQ(till.told(), "coupon off item-2\nsave");
    EXPECT_EQ(couponsStored(till), "");
}

TEST(EventArgument, ThatCannotBeConvertedIsANullPointer)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    giveCoupons(till, {}, { { 0, { u"item-0"_s } }, { 1, { u"item-1"_s } } });

    for (const QVariant& position :
         { QVariant(1), QVariant(u"1"_s), QVariant::fromValue(till.document()), QVariant::fromValue(Handle()) }) {
        till.tell(TillAtWork::event(21, till.document()).addArgument(u"position"_s, position));
        EXPECT_EQ(till.told(), "") << position.typeName();
    }

    EXPECT_EQ(couponsInMemory(till.plugin), "0: item-0; 1: item-1");
}

TEST(EventArgument, NamesAreExact)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    giveCoupons(till, {}, { { 1, { u"item-1"_s } } });

    till.tell(TillAtWork::event(21, till.document())
                  .addArgument(u"Position"_s, QVariant::fromValue(till.document()->getGoodsItems().constFirst())));

    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(couponsInMemory(till.plugin), "1: item-1");
}
