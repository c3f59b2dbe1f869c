#include "tests/support/loopback_server.h"
#include "tests/till/rest_client_support.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <netdb.h>

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

using namespace std::chrono_literals;
using namespace vantiro_test;
using testing::HasSubstr;

namespace {

constexpr auto hungName = "hung.invalid";
constexpr auto absentName = "absent.invalid";

/// What the tests see and steer of the system's resolver, which is replaced below for the names of these tests.
struct Resolver {
    std::mutex mutex;
    std::condition_variable changed;
    std::map<std::string, int> asked;
    bool hangs = true; // for the hung name
    int hanging = 0;

    [[nodiscard]] int timesAsked(const std::string& name)
    {
        const std::lock_guard lock(mutex);
        return asked[name];
    }

    void hang()
    {
        std::unique_lock lock(mutex);
        ++hanging;
        changed.wait(lock, [this] { return !hangs; });
        --hanging;
        changed.notify_all();
    }

    void release()
    {
        std::unique_lock lock(mutex);
        hangs = false;
        changed.notify_all();
        changed.wait(lock, [this] { return hanging == 0; });
        hangs = true;
    }
};

Resolver& resolver()
{
    static Resolver instance;
    return instance;
}

}

// Takes the place of the system's own for the whole test program, so that no name of a test leaves this machine.
extern "C" [[gnu::visibility("default")]] int getaddrinfo(const char* node, const char* service, const addrinfo* hints,
                                                          addrinfo** result)
{
    static const auto original = reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
    const std::string name = node == nullptr ? "" : node;
    {
        const std::lock_guard lock(resolver().mutex);
        ++resolver().asked[name];
    }
    if (name == hungName) {
        resolver().hang();
    }
    if (name == hungName || name == absentName) {
        return EAI_NONAME;
    }
    return original(name.ends_with(".test") ? "127.0.0.1" : node, service, hints, result);
}

namespace {

QUrl withHost(QUrl url, const QString& host)
{
    url.setHost(host);
    return url;
}

TEST(RestClientName, UnknownNameIsNoReply)
{
    const ClosedPort port;
    RestClient client;
    client.post(withHost(port.url(), absentName), "body", {});
    EXPECT_EQ(ending(client), "no reply 0");
    EXPECT_THAT(errorText(client),
                HasSubstr("absent.invalid:" + std::to_string(port.number()) + "/: имя сервера не найдено"));
    EXPECT_EQ(resolver().timesAsked(absentName), 1);
}

TEST(RestClientName, ResolverThatHangsDoesNotStretchTheTimeout)
{
    const ClosedPort port;
    RestClient client;
    client.setTimeout(1);
    const auto start = std::chrono::steady_clock::now();
    client.post(withHost(port.url(), hungName), "body", {});
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(ending(client), "no reply 0");
    EXPECT_THAT(errorText(client), HasSubstr("ответ не пришёл целиком за 1 с"));
    EXPECT_GE(waited, 950ms);
    EXPECT_LT(waited, 1500ms);
    resolver().release();
}

TEST(RestClientName, ResolvedNameIsKeptForLaterClients)
{
    const LoopbackServer server(Answer::reply(200));
    const QUrl url = withHost(server.url(), "shop.test");
    EXPECT_EQ(endingOfPost(url), "success 200");
    EXPECT_EQ(endingOfPost(url), "success 200");
    EXPECT_EQ(resolver().timesAsked("shop.test"), 1);
    EXPECT_EQ(server.connections(), 2);
    EXPECT_EQ(server.requests().at(1).header("Host"), "shop.test:" + QByteArray::number(server.port()));
}

TEST(RestClientName, NameBeyondAsciiIsAskedForInItsNetworkForm)
{
    const LoopbackServer server(Answer::reply(200));
    EXPECT_EQ(endingOfPost(withHost(server.url(), QStringLiteral("лавка.test"))), "success 200");
    EXPECT_EQ(server.requests().at(0).header("Host"), "xn--80aaf6ac.test:" + QByteArray::number(server.port()));
}

TEST(RestClientName, ThreadsAskForNamesAtOnce)
{
    constexpr int threadCount = 8;
    constexpr int postCount = 10;
    const LoopbackServer server(Answer::reply(200));
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int number = 0; number < threadCount; ++number) {
        threads.emplace_back([&server, number] {
            for (int count = 0; count < postCount; ++count) {
                const QString name = QStringLiteral("shop%1.test").arg((number + count) % postCount);
                EXPECT_EQ(endingOfPost(withHost(server.url(), name)), "success 200");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(server.requests().size(), threadCount * postCount);
}

}
