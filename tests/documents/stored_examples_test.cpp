#include "tests/documents/page.h"
#include "tests/front/till_at_work.h"
#include "tests/support/sorted_attributes.h"
#include "till/store/document_json.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

using namespace Qt::StringLiterals;

// What the pages show as JSON can be read, and is what the plug-in writes.

namespace {

const QString shownMoment = u"2024-03-05T14:08:00.000+03:00"_s;

[[nodiscard]] QList<Block> jsonBlocks(const QString& page)
{
    QList<Block> blocks = Page(projectText(page)).blocks();
    blocks.removeIf([](const Block& block) { return block.language != u"json"; });
    return blocks;
}

/// The block of JSON that stands in the section.
[[nodiscard]] QJsonObject shown(const QString& page, const QString& section)
{
    for (const Block& block : jsonBlocks(page)) {
        if (block.heading.section(u" / "_s, -1) == section) {
            return QJsonDocument::fromJson(block.text.toUtf8()).object();
        }
    }
    ADD_FAILURE() << page.toStdString() << " shows no JSON in " << section.toStdString();
    return {};
}

[[nodiscard]] std::string readable(const QJsonObject& object)
{
    return QJsonDocument(object).toJson().toStdString();
}

/// The till in the time zone that the pages show.
class Examples : public testing::Test {
protected:
    Examples()
    {
        ::setenv("TZ", "MSK-3", 1);
        ::tzset();
    }

    ~Examples() override
    {
        if (former.isNull()) {
            ::unsetenv("TZ");
        } else {
            ::setenv("TZ", former.constData(), 1);
        }
        ::tzset();
    }

private:
    const QByteArray former = qgetenv("TZ");
};

/// A spending is stamped with the time of the machine.
[[nodiscard]] QJsonObject atThePagesTime(QJsonObject details)
{
    for (auto entry = details.begin(); entry != details.end(); ++entry) {
        if (entry.key() == u"dateTime") {
            entry.value() = shownMoment;
        } else if (entry->isObject()) {
            entry.value() = atThePagesTime(entry->toObject());
        }
    }
    return details;
}

[[nodiscard]] QJsonObject pluginValuesOf(const TillAtWork& till)
{
    QJsonObject groups = QJsonDocument::fromJson(till::toJson(till.document())).object()[u"pluginValues"_s].toObject();
    QJsonObject own = groups[u"Vantiro"_s].toObject();
    QJsonArray spent = own[u"bonusImpacts"_s].toArray();
    for (QJsonValueRef one : spent) {
        one = atThePagesTime(one.toObject());
    }
    own[u"bonusImpacts"_s] = spent;
    groups[u"Vantiro"_s] = own;
    return groups;
}

void addCoupon(TillAtWork& till, const QString& number)
{
    till.server.answerText("IsCouponValid", u"true"_s);
    EXPECT_TRUE(till.addCoupon(number));
    EXPECT_FALSE(till.server.take("IsCouponValid").isEmpty());
}

} // namespace

TEST(Json, OfEachPageIsRead)
{
    int blocks = 0;
    for (const QString& page : projectPages()) {
        for (const Block& block : jsonBlocks(page)) {
            QJsonParseError error;
            EXPECT_FALSE(QJsonDocument::fromJson(block.text.toUtf8(), &error).isNull())
                << page.toStdString() << ": " << error.errorString().toStdString() << " in\n"
                << block.text.toStdString();
            ++blocks;
        }
    }
    EXPECT_GE(blocks, 3);
}

TEST_F(Examples, QueuedMessageIsTheOneThatThePlugInQueues)
{
    TillAtWork till(TillAtWork::saleWithCard().closed(),
                    { { u"Vantiro:user"_s, u"till"_s }, { u"Vantiro:password"_s, u"secret"_s } });
    till.goOffline();
    EXPECT_TRUE(till.plugin.commit(till.document()));
    ASSERT_EQ(till.queue.records().size(), 1);

    QJsonObject queued = till.queue.records().constFirst().message;
    queued[u"body"_s] = sortedAttributes(queued[u"body"_s].toString());
    QJsonObject headers = queued[u"headers"_s].toObject();
    EXPECT_EQ(headers[u"Authorization"_s].toString().toStdString(), "Basic dGlsbDpzZWNyZXQ=");
    headers[u"Authorization"_s] = u"Basic ***"_s; // as the page shows it
    queued[u"headers"_s] = headers;

    EXPECT_EQ(readable(shown(u"docs/queue-record.md"_s, u"The message"_s)), readable(queued));
}

TEST_F(Examples, StoredStateIsTheOneThatThePlugInStores)
{
    TillAtWork till(TillAtWork::saleWithCard(), { { u"Vantiro:checkCouponPrefix"_s, u"vantiro-c"_s } });
    addCoupon(till, u"vantiro-c1"_s);
    addCoupon(till, u"vantiro-7"_s);
    till.requestWell("50.25");
    till.plugin.updatePluginData(till.document(), false);
    const QJsonObject asked = pluginValuesOf(till);
    till.spendWell(30.5);
    till.plugin.beforePutoutCheck();

    QJsonObject stored = pluginValuesOf(till);
    QJsonObject own = stored[u"Vantiro"_s].toObject();
    EXPECT_EQ(own[u"discountImpacts"_s].toArray().size(), 0) << "a spending ends the discounts";
    // The page shows both kinds of impact at once: the discounts as they stood before the spending.
    own[u"discountImpacts"_s] = asked[u"Vantiro"_s].toObject()[u"discountImpacts"_s];
    stored[u"Vantiro"_s] = own;

    EXPECT_EQ(readable(shown(u"docs/stored-state.md"_s, u"An example"_s)), readable(stored));
}

TEST_F(Examples, PlugInDataJsonIsTheOneOfARevealedCheque)
{
    TillAtWork till;
    till.plugin.beforePutoutCheck();
    till.contents().head.deferred = true;
    till.plugin.revealCheck();

    const QByteArray json = till.contents().pluginDataJson.toUtf8();
    EXPECT_EQ(readable(shown(u"docs/stored-state.md"_s, u"The plug-in data JSON"_s)),
              readable(QJsonDocument::fromJson(json).object()));
}
