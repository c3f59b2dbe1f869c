#include "host/facilities/exceptions.h"
#include "tests/front/closing_till.h"
#include "till/document/cheque_contents.h"
#include "till/store/document_json.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// A cheque that is set aside and comes back: it keeps the number, identity and shift that the server knows it by.

namespace {

const QString key = u"deferredCheck"_s;
const QString ownGroup = u"LoyaltySystem/7"_s; // the key that the till keeps the system's values under

/// What is stored as the identity of the open document, as compact JSON.
[[nodiscard]] std::string storedCheck(const TillAtWork& till)
{
    const QVariant stored = till.document()->getValue(ownGroup, key, QVariant());
    return QJsonDocument(stored.toJsonObject()).toJson(QJsonDocument::Compact).toStdString();
}

/// Stores such an identity, as an earlier setting aside would have.
void storeCheck(TillAtWork& till, const QJsonObject& check)
{
    till.document()->setValue(ownGroup, key, QVariant(check));
}

/// The cheque comes back, under the number and shift that the till gives now.
void bringBack(TillAtWork& till)
{
    till.contents().head.deferred = true;
    till.contents().head.number = 2000;
    till.contents().head.shift = 18;
}

/// The three attributes of the cheque in a request.
[[nodiscard]] std::string identityIn(const QString& request)
{
    QStringList parts;
    for (const QString& name : { u" ShiftNo=\""_s, u" ChequeUID=\""_s, u" ChequeNo=\""_s }) {
        const qsizetype at = request.indexOf(name);
        parts.append(at < 0 ? u"none"_s : request.mid(at + name.size()).section(u'"', 0, 0));
    }
    return parts.join(u' ').toStdString();
}

[[nodiscard]] std::string identityOfNextRequest(TillAtWork& till)
{
    till.server.fault("Отказано");
    EXPECT_FALSE(till.plugin.request(till.document()));
    return identityIn(till.server.take("GetDiscounts"));
}

const TillAtWork::Settings restoring { { u"Vantiro:restoreLoyaltyState"_s, true } };

constexpr const char* ofFirstNumber = "17 11116E73-1C03-5DE6-9130-5F9925AE8AB4 1042";

} // namespace

TEST(SettingAside, StoresNumberIdentityAndShiftAsTexts)
{
    TillAtWork till;

    till.plugin.beforePutoutCheck();

    EXPECT_EQ(storedCheck(till),
              R"({"chequeNo":"1042","chequeUid":"11116E73-1C03-5DE6-9130-5F9925AE8AB4","shiftNo":"17"})");
    EXPECT_EQ(till.document()->getValue(ownGroup, key, QVariant()).metaType(), QMetaType::fromType<QJsonObject>());
}

TEST(SettingAside, IdentityStandsUnderTheSystemsOwnKeyAndNotBesideTheState)
{
    TillAtWork till;

    till.plugin.beforePutoutCheck();

    EXPECT_FALSE(till.stored(key).isValid());
}

TEST(SettingAside, TouchesNothingElse)
{
    TillAtWork till;
    fillState(till);

    till.plugin.beforePutoutCheck();

    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), "");
    EXPECT_EQ(till.contents().pluginDataJson.toStdString(), "");
    EXPECT_EQ(stateOf(till), wholeState);
    EXPECT_EQ(identityOfNextRequest(till), ofFirstNumber) << "still that of the document";
}

TEST(SettingAside, AgainStoresWhatTheDocumentSaysThen)
{
    TillAtWork till;
    till.plugin.beforePutoutCheck();
    bringBack(till);

    till.plugin.beforePutoutCheck();

    EXPECT_EQ(storedCheck(till),
              R"({"chequeNo":"2000","chequeUid":"11116E73-1C03-5DE6-9130-5F9925AE8AB4","shiftNo":"18"})");
}

TEST(Revealing, DocumentThatWasNotSetAsideChangesNothing)
{
    TillAtWork till;
    fillState(till);
    storeCheck(till, { { u"chequeNo"_s, u"1"_s } });
    till.store(u"pointsForSpend"_s, 20.0);

    till.plugin.revealCheck();

    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), "");
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(20.0));
    EXPECT_EQ(till.contents().pluginDataJson.toStdString(), "");
    EXPECT_EQ(stateOf(till), wholeState);
    EXPECT_EQ(identityOfNextRequest(till), ofFirstNumber);
}

TEST(Revealing, LaterRequestsKeepNumberIdentityAndShift)
{
    TillAtWork till;
    till.plugin.beforePutoutCheck();
    bringBack(till);
    EXPECT_EQ(identityOfNextRequest(till), "18 11116E73-1C03-5DE6-9130-5F9925AE8AB4 2000") << "before it has come back";

    till.plugin.revealCheck();

    EXPECT_EQ(identityOfNextRequest(till), ofFirstNumber);
    EXPECT_EQ(identityOfNextRequest(till), ofFirstNumber);
    till.server.answerText("Accrual", u""_s);
    EXPECT_TRUE(till.plugin.commit(till.document()));
    EXPECT_EQ(identityIn(till.server.take("Accrual")), ofFirstNumber) << "up to the close";
    EXPECT_TRUE(till.plugin.rollback(till.document()));
    EXPECT_TRUE(till.plugin.cancel());
    EXPECT_EQ(identityOfNextRequest(till), ofFirstNumber) << "until the host says that the cheque is over";
}

TEST(Revealing, IdentityIsTheStoredOneEvenForADocumentOfAnother)
{
    TillAtWork till(TillAtWork::saleWithCard().identity(u"another"_s));
    storeCheck(till,
               { { u"chequeNo"_s, u"12"_s },
                 { u"chequeUid"_s, u"B01D8779-68C6-576D-BEF4-26488C9C9223"_s },
                 { u"shiftNo"_s, u"3"_s } });
    bringBack(till);

    till.plugin.revealCheck();

    EXPECT_EQ(identityOfNextRequest(till), "3 B01D8779-68C6-576D-BEF4-26488C9C9223 12");
}

TEST(Revealing, IdentityComesBackFromTheStore)
{
    QSharedPointer<AbstractDocument> stored;
    {
        TillAtWork before;
        before.plugin.beforePutoutCheck();
        stored = till::documentFromJson(till::toJson(before.document()));
    }
    TillAtWork till(stored);
    bringBack(till);

    till.plugin.revealCheck();

    EXPECT_EQ(identityOfNextRequest(till), ofFirstNumber);
    EXPECT_EQ(till.contents().pluginDataJson.toStdString(), R"({"vantiro":{"chequeNo":"1042"}})");
}

TEST(Revealing, LeavesTheFirstNumberForALaterReturnAndSaves)
{
    TillAtWork till;
    till.plugin.beforePutoutCheck();
    bringBack(till);
    till.contents().pluginDataJson = u"{\"vantiro\":{\"chequeNo\":\"1\"}}"_s;

    till.plugin.revealCheck();

    EXPECT_EQ(till.contents().pluginDataJson.toStdString(), R"({"vantiro":{"chequeNo":"1042"}})");
    EXPECT_EQ(till.told(), "save");
    EXPECT_EQ(till.log(), "");
}

TEST(Revealing, WithoutAnIdentityTheNumberIsNullAndSentEmpty)
{
    TillAtWork till;
    bringBack(till);

    till.plugin.revealCheck();

    EXPECT_EQ(till.contents().pluginDataJson.toStdString(), R"({"vantiro":{"chequeNo":null}})");
    EXPECT_EQ(till.told(), "save");
    EXPECT_EQ(identityOfNextRequest(till), "18 11116E73-1C03-5DE6-9130-5F9925AE8AB4 ");
}

TEST(Revealing, WithoutAnIdentityNothingIsStoredAsOne)
{
    TillAtWork till;
    bringBack(till);

    till.plugin.revealCheck();

    EXPECT_FALSE(till.document()->getValue(ownGroup, key, QVariant()).isValid());
}

TEST(Revealing, PointsToSpendAreLostUnlessTheSettingKeepsThem)
{
    TillAtWork till;
    fillState(till);
    till.store(u"pointsForSpend"_s, 20.0);
    till.store(u"discountImpacts"_s, QVariantList { QVariant(), QVariant() });
    till.plugin.beforePutoutCheck();
    bringBack(till);

    till.plugin.revealCheck();

    EXPECT_EQ(till.plugin.pointsForSpend, 0.0);
    EXPECT_EQ(till.card()->fields.pointsForSpend, 0.0);
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(0.0));
    EXPECT_EQ(std::string(till.stored(u"pointsForSpend"_s).typeName()), "double");
    EXPECT_EQ(till.stored(u"discountImpacts"_s).toList().size(), 2) << "points alone";
    EXPECT_EQ(till.plugin.discountImpacts.size(), 1);
    EXPECT_EQ(till.plugin.bonusImpacts.size(), 1);
}

TEST(Revealing, PointsToSpendStayWithoutACard)
{
    TillAtWork till(TillAtWork::saleWithoutCard());
    till.plugin.pointsForSpend = 20.0;
    till.store(u"pointsForSpend"_s, 20.0);
    bringBack(till);

    till.plugin.revealCheck();

    EXPECT_EQ(till.plugin.pointsForSpend, 20.0);
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(20.0));
    EXPECT_EQ(till.told(), "save");
}

TEST(Revealing, WithTheSettingTheWholeStateComesBack)
{
    TillAtWork till(TillAtWork::saleWithCard(), restoring);
    till.requestWell("50.00");
    till.spendWell(30.0);
    till.plugin.pointsForSpend = 12.5;
    till.plugin.updatePluginData(till.document(), false);
    till.plugin.beforePutoutCheck();
    till.plugin.afterPutoutCheck();
    EXPECT_EQ(till.plugin.bonusImpacts.size(), 0) << "another cheque may be open meanwhile";
    EXPECT_EQ(till.plugin.pointsForSpend, 0.0);
    static_cast<void>(till.told());
    bringBack(till);

    till.plugin.revealCheck();

    EXPECT_EQ(till.plugin.pointsForSpend, 12.5);
    EXPECT_EQ(till.card()->fields.pointsForSpend, 12.5);
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(12.5));
    ASSERT_EQ(till.plugin.bonusImpacts.size(), 1);
    EXPECT_EQ(till.plugin.bonusImpacts[0]->getTotals()->getDiscountSum(), 30.0);
    EXPECT_EQ(till.told(), "save");
    EXPECT_EQ(identityOfNextRequest(till), ofFirstNumber);
}

TEST(Revealing, WithTheSettingTheIdentityIsTakenAllTheSame)
{
    TillAtWork till(TillAtWork::saleWithCard(), restoring);
    bringBack(till);

    till.plugin.revealCheck();

    EXPECT_EQ(till.contents().pluginDataJson.toStdString(), R"({"vantiro":{"chequeNo":null}})");
    EXPECT_EQ(identityOfNextRequest(till), "18 11116E73-1C03-5DE6-9130-5F9925AE8AB4 ");
}

TEST(Revealing, FailedSavePassesToTheHostAfterAllElseIsDone)
{
    TillAtWork till;
    fillState(till);
    till.plugin.beforePutoutCheck();
    bringBack(till);
    till.failSaves(u"диск полон"_s);

    EXPECT_THROW(till.plugin.revealCheck(), BasicException);

    EXPECT_EQ(till.plugin.pointsForSpend, 0.0);
    EXPECT_EQ(till.contents().pluginDataJson.toStdString(), R"({"vantiro":{"chequeNo":"1042"}})");
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_EQ(identityOfNextRequest(till), ofFirstNumber);
}
