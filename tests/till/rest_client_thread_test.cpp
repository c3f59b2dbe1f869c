#include "tests/support/loopback_server.h"
#include "tests/till/rest_client_support.h"

#include <gmock/gmock.h>

#include <functional>
#include <thread>
#include <vector>

using namespace vantiro_test;

namespace {

constexpr int threadCount = 8;
constexpr int postCount = 25;

void inThreads(const std::function<void(int)>& work)
{
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int number = 0; number < threadCount; ++number) {
        threads.emplace_back(work, number);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST(RestClientThreads, ClientsOfDifferentThreadsKeepApart)
{
    const LoopbackServer server([](const HttpRequest& request) { return Answer::reply(200, request.body); });
    inThreads([&server](int number) {
        for (int count = 0; count < postCount; ++count) {
            const QByteArray body = QByteArray::number(number) + ' ' + QByteArray::number(count);
            RestClient client;
            client.post(server.url(), body, {});
            EXPECT_EQ(ending(client), "success 200");
            EXPECT_EQ(client.getResponseBody(), body);
        }
    });
    EXPECT_EQ(server.requests().size(), threadCount * postCount);
    EXPECT_EQ(server.connections(), threadCount * postCount);
}

TEST(RestClientThreads, FailuresOfOneThreadDoNotReachAnother)
{
    const LoopbackServer server(Answer::reply(200));
    const LoopbackServer cut(Answer::reply(200, "body").cutAfter(20).hangUp());
    const ClosedPort closed;
    inThreads([&](int number) {
        const bool isGood = number % 2 == 0;
        for (int count = 0; count < postCount; ++count) {
            RestClient client;
            client.post(isGood ? server.url() : count % 2 == 0 ? cut.url() : closed.url(), "body", {});
            EXPECT_EQ(ending(client), isGood ? "success 200" : "no reply 0");
        }
    });
}

}
