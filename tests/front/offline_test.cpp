#include "client/exceptions.h"
#include "tests/front/till_at_work.h"
#include "tests/support/client_under_test.h"

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <utility>

using namespace Qt::StringLiterals;

// On-line or off-line is a matter of the document: a lost connection takes it off-line for good, and the next document
// tries the server again.

namespace {

[[nodiscard]] bool identify(TillAtWork& till)
{
    QSharedPointer<DocumentCardRecord> card = till.card();
    return till.plugin.identifyByCard(card, ECardNumberType {});
}

/// A hook that asks the server, and the first thing it asks.
struct Hook {
    const char* rule;
    std::function<bool(TillAtWork&)> run;
    const char* question;
};

void PrintTo(const Hook& row, std::ostream* out)
{
    *out << row.rule;
}

const Hook request { "Request", [](TillAtWork& till) { return till.plugin.request(till.document()); }, "GetDiscounts" };
const Hook offer { "HasPointsForSpend", [](TillAtWork& till) { return till.plugin.hasPointsForSpend(); },
                   "GetCardDiscountAmount" };
const Hook spend { "SpendPoints", [](TillAtWork& till) { return till.plugin.spendPoints(); }, "SubtractBonus45" };
const Hook coupon { "AddCoupon", [](TillAtWork& till) { return till.addCoupon(u"vantiro-10"_s); }, "IsCouponValid" };
const Hook card { "IdentifyByCard", [](TillAtWork& till) { return identify(till); }, "IsCardValid" };

std::string ruleOf(const testing::TestParamInfo<Hook>& row)
{
    return row.param.rule;
}

class OfflineMode : public testing::TestWithParam<Hook> {
protected:
    TillAtWork till;
};

class OfflineForGood : public OfflineMode { };

}

TEST(OfflineFlag, AbsentMeansOnline)
{
    const TillAtWork till;
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
    EXPECT_FALSE(till.plugin.isOfflineMode(till.document()));
}

TEST(OfflineFlag, IsTheBooleanUnderTheClassName)
{
    const TillAtWork till;
    till.document()->setValue(u"Vantiro"_s, u"offlineMode"_s, true);
    EXPECT_TRUE(till.plugin.isOfflineMode(till.document()));
    till.document()->setValue(u"Vantiro"_s, u"offlineMode"_s, false);
    EXPECT_FALSE(till.plugin.isOfflineMode(till.document()));
}

TEST(OfflineFlag, OfOthersIsNone)
{
    const TillAtWork till;
    till.document()->setValue(u"vantiro"_s, u"offlineMode"_s, true);
    till.document()->setValue(u"Other"_s, u"offlineMode"_s, true);
    till.document()->setValue(u"LoyaltySystem/7"_s, u"offlineMode"_s, true);
    till.document()->setValue(u"Vantiro"_s, u"offlinemode"_s, true);
    EXPECT_FALSE(till.plugin.isOfflineMode(till.document()));
}

TEST(OfflineFlag, IsThatOfTheGivenDocument)
{
    TillAtWork till;
    till.goOffline();
    const QSharedPointer<AbstractDocument> given = TillAtWork::saleWithCard().identity(u"2"_s).build();
    EXPECT_FALSE(till.plugin.isOfflineMode(given));
    EXPECT_TRUE(till.plugin.isOfflineMode(till.document()));
}

INSTANTIATE_TEST_SUITE_P(Of, OfflineMode, testing::Values(request, offer, spend, coupon, card), ruleOf);

TEST_P(OfflineMode, IsEnteredByALostConnection)
{
    till.server.refuse();

    EXPECT_FALSE(GetParam().run(till));

    EXPECT_FALSE(till.server.take(GetParam().question).isEmpty());
    EXPECT_TRUE(till.plugin.isOfflineMode(till.document()));
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));
    const std::string told = till.told();
    EXPECT_NE(told.find("\nsave"), std::string::npos) << told;
}

TEST_P(OfflineMode, IsNotEnteredByAFault)
{
    till.server.fault("Отказано");

    EXPECT_FALSE(GetParam().run(till));

    EXPECT_FALSE(till.server.take(GetParam().question).isEmpty());
    EXPECT_FALSE(till.plugin.isOfflineMode(till.document()));
}

TEST_P(OfflineMode, IsNotEnteredByAReplyThatCannotBeRead)
{
    till.server.end(RestOutcome::http(200, "no XML"));

    EXPECT_FALSE(GetParam().run(till));

    EXPECT_FALSE(till.server.take(GetParam().question).isEmpty());
    EXPECT_FALSE(till.plugin.isOfflineMode(till.document()));
}

TEST_P(OfflineMode, EndsWithTheDocument)
{
    till.server.refuse();
    EXPECT_FALSE(GetParam().run(till));
    EXPECT_FALSE(till.server.take(GetParam().question).isEmpty());

    till.open(TillAtWork::saleWithCard().identity(u"2"_s).build());

    EXPECT_FALSE(till.plugin.isOfflineMode(till.document()));
    till.requestWell(); // the server is asked at once, without a retry of its own kind
}

INSTANTIATE_TEST_SUITE_P(After, OfflineForGood, testing::Values(request, offer, spend, coupon, card), ruleOf);

// All that might write the flag back: none of it reaches the server any more.
TEST_P(OfflineForGood, NothingAsksTheServerOrWritesTheFlagBack)
{
    till.server.refuse();
    EXPECT_FALSE(GetParam().run(till));
    EXPECT_FALSE(till.server.take(GetParam().question).isEmpty());
    static_cast<void>(till.told());

    EXPECT_TRUE(till.plugin.request(till.document()));
    EXPECT_FALSE(till.plugin.hasPointsForSpend());
    EXPECT_TRUE(till.plugin.spendPoints());
    EXPECT_FALSE(identify(till));
    EXPECT_EQ(till.told(), "") << "neither a request nor a save";
    EXPECT_FALSE(till.addCoupon(u"vantiro-10"_s));

    till.server.expectNothing();
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));
}

TEST(OfflineDocument, StaysOfflineBesideAnother)
{
    TillAtWork till;
    const QSharedPointer<AbstractDocument> first = till.document();
    till.server.refuse();
    EXPECT_FALSE(till.plugin.request(first));
    EXPECT_FALSE(till.server.take("GetDiscounts").isEmpty());

    till.open(TillAtWork::saleWithCard().identity(u"2"_s).build());
    till.requestWell();
    EXPECT_FALSE(till.plugin.isOfflineMode(till.document()));

    till.open(first);
    EXPECT_TRUE(till.plugin.request(first));
    EXPECT_EQ(till.told(), "");
    EXPECT_TRUE(till.plugin.isOfflineMode(first));
}

TEST(OfflineDocument, StaysOfflineUnderAnotherPlugin)
{
    const QSharedPointer<AbstractDocument> document = TillAtWork::saleWithCard().build();
    {
        TillAtWork till(document);
        till.server.refuse();
        EXPECT_FALSE(till.plugin.request(document));
        EXPECT_FALSE(till.server.take("GetDiscounts").isEmpty());
    }
    TillAtWork restarted(document);
    EXPECT_TRUE(restarted.plugin.restoreLoyaltySystem());

    EXPECT_TRUE(restarted.plugin.request(document));

    EXPECT_EQ(restarted.told(), "");
    EXPECT_TRUE(restarted.plugin.isOfflineMode(document));
}

namespace {

/// A plug-in whose look at the flag fails as a service would.
class UnsureVantiro : public Vantiro {
public:
    [[nodiscard]] bool isOfflineMode(const QSharedPointer<AbstractDocument>&) const override
    {
        throw VantiroException(tr::Tr(u"unsure"_s, u"Неизвестно"_s));
    }
};

/// A store that fails as a service would.
class RefusingSaves : public SaveToFileLogic {
public:
    RefusingSaves()
        : former(std::exchange(MockFactory<SaveToFileLogic>::mocked, this))
    {
    }

    ~RefusingSaves() override
    {
        MockFactory<SaveToFileLogic>::mocked = former;
    }

    void save(const QSharedPointer<AbstractDocument>&, const QString&) override
    {
        throw VantiroException(tr::Tr(u"notSaved"_s, u"Не сохранено"_s));
    }

private:
    SaveToFileLogic* former;
};

}

TEST(OfflineLook, StandsOutsideTheGuardOfRequestAndSpending)
{
    const TillAtWork till;
    UnsureVantiro plugin;
    plugin.setDocument(till.document());
    EXPECT_EQ(failureOf([&] { plugin.request(till.document()); }), "VantiroException unsure: Неизвестно");
    EXPECT_EQ(failureOf([&] { plugin.hasPointsForSpend(); }), "VantiroException unsure: Неизвестно");
    EXPECT_EQ(failureOf([&] { plugin.spendPoints(); }), "VantiroException unsure: Неизвестно");
    EXPECT_EQ(plugin.getLastErrorString().ru().toStdString(), "");
}

TEST(OfflineLook, StandsInsideTheGuardOfIdentification)
{
    const TillAtWork till;
    UnsureVantiro plugin;
    plugin.setDocument(till.document());
    QSharedPointer<DocumentCardRecord> presented = till.card();
    EXPECT_FALSE(plugin.identifyByCard(presented, ECardNumberType {}));
    EXPECT_EQ(plugin.getLastErrorString().ru().toStdString(), "Неизвестно");
}

// The state is stored within the guard, so a service failure there is one of the hook's own steps.
TEST(StateStore, FailingLikeTheServiceFailsTheRequest)
{
    TillAtWork till;
    till.answerRequest();
    const RefusingSaves saves;

    EXPECT_FALSE(till.plugin.request(till.document()));

    for (const QByteArray action : { "GetDiscounts", "GetMessages", "GetCardDiscountAmount" }) {
        EXPECT_FALSE(till.server.take(action).isEmpty());
    }
    EXPECT_EQ(till.lastError(), "notSaved: Не сохранено");
    EXPECT_TRUE(till.log().ends_with("\nerror: Не сохранено"));
}

TEST(StateStore, FailingLikeTheServiceFailsTheSpending)
{
    TillAtWork till;
    till.plugin.setPointsForSpend(till.document(), 30.0);
    till.answerSpending("30.00");
    const RefusingSaves saves;

    EXPECT_FALSE(till.plugin.spendPoints());

    EXPECT_FALSE(till.server.take("SubtractBonus45").isEmpty());
    EXPECT_EQ(till.lastError(), "notSaved: Не сохранено");
    EXPECT_TRUE(till.log().ends_with("\nerror: Не сохранено"));
    EXPECT_EQ(till.plugin.bonusImpacts.size(), 1) << "the points are gone, and the record says so";
}
