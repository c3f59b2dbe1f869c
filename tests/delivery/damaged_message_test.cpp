#include "tests/delivery/delivery_till.h"
#include "tests/support/scripted_rest_client.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using till::Delivery;

// A message that cannot be posted is put aside as it is, with the reason, and blocks nobody.

namespace {

struct Row {
    const char* rule;
    const char* message;
};

class DamagedMessage : public DeliveryTill, public testing::WithParamInterface<Row> { };

} // namespace

TEST_P(DamagedMessage, IsQuarantinedAndThoseBehindGoOn)
{
    ScriptedRestClient rest;
    const QString message = QString::fromUtf8(GetParam().message);
    enqueueRaw(message);
    enqueue(u"good"_s);
    rest.next(RestOutcome::http(200, goodReply));

    const Delivery::Outcome outcome = Delivery({}).run();

    EXPECT_EQ(outcome.delivered, 1);
    EXPECT_EQ(outcome.steppedAside, 1);
    EXPECT_FALSE(outcome.next.has_value());
    EXPECT_EQ(rest.posts().size(), 1);
    EXPECT_EQ(queue(), "1 damaged: the message cannot be read");
    EXPECT_EQ(till::store::queueRecord(1)->message.toStdString(), message.toStdString()) << "not a byte is lost";
}

INSTANTIATE_TEST_SUITE_P(
    Forms, DamagedMessage,
    testing::Values(
        Row { "Empty", "" }, Row { "NoJson", "<e/>" }, Row { "CutOff", R"({"url":"http://first/","request":"Off)" },
        Row { "List", "[]" }, Row { "Number", "1" }, Row { "EmptyObject", "{}" },
        Row { "WithoutOperation", R"({"url":"http://first/","headers":{"a":"b"},"body":"<e/>"})" },
        Row { "WithoutBody", R"({"url":"http://first/","request":"OfflineAccrual","headers":{"a":"b"}})" },
        Row { "WithoutHeaders", R"({"url":"http://first/","request":"OfflineAccrual","body":"<e/>"})" },
        Row { "HeadersAreNoObject",
              R"({"url":"http://first/","request":"OfflineAccrual","headers":"a","body":"<e/>"})" },
        Row { "HeaderIsNoText",
              R"({"url":"http://first/","request":"OfflineAccrual","headers":{"a":1},"body":"<e/>"})" },
        Row { "BodyIsNoText", R"({"url":"http://first/","request":"OfflineAccrual","headers":{"a":"b"},"body":5})" },
        Row { "TextBehindIt",
              R"({"url":"http://first/","request":"OfflineAccrual","headers":{"a":"b"},"body":"<e/>"} x)" }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_F(DeliveryTill, DamagedMessageThatIsReleasedIsPutAsideAgain)
{
    const ScriptedRestClient rest;
    enqueueRaw(u"{"_s);
    Delivery delivery({});
    (void)delivery.run();
    till::store::release(1);
    EXPECT_EQ(queue(), "1 pending");
    EXPECT_EQ(delivery.run().steppedAside, 1);
    EXPECT_EQ(queue(), "1 damaged: the message cannot be read");
}
