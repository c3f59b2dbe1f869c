#include "tests/support/loopback_server.h"
#include "tests/till/rest_client_support.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <thread>

using namespace vantiro_test;
using testing::HasSubstr;

namespace {

/// Sets a variable of the environment for as long as it lives.
class Variable {
public:
    Variable(const char* variable, const QByteArray& value)
        : name(variable)
        , wasSet(qEnvironmentVariableIsSet(variable))
        , former(qgetenv(variable))
    {
        qputenv(name, value);
    }

    ~Variable()
    {
        if (wasSet) {
            qputenv(name, former);
        } else {
            qunsetenv(name);
        }
    }

    Q_DISABLE_COPY_MOVE(Variable)

private:
    const char* name;
    bool wasSet;
    QByteArray former;
};

TEST(RestClientEnvironment, ProxiesAreNotUsed)
{
    const LoopbackServer server(Answer::reply(200));
    const LoopbackServer proxy(Answer::reply(200));
    const QByteArray address = proxy.url().toEncoded();
    const Variable lower("http_proxy", address);
    const Variable upper("HTTP_PROXY", address);
    const Variable secure("https_proxy", address);
    const Variable all("all_proxy", address);
    const Variable upperAll("ALL_PROXY", address);
    const Variable exceptions("no_proxy", "");

    EXPECT_EQ(endingOfPost(server.url(), { { "Authorization", "Basic c2VjcmV0" } }), "success 200");
    QUrl tls = server.url();
    tls.setScheme("https");
    EXPECT_EQ(endingOfPost(tls), "no reply 0");
    EXPECT_EQ(server.connections(), 2);
    EXPECT_EQ(proxy.connections(), 0);
}

TEST(RestClientEnvironment, KeptPasswordsAreNotUsed)
{
    const QTemporaryDir home;
    QFile file(home.filePath(".netrc"));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write("machine 127.0.0.1 login cashier password secret\n");
    file.close();
    const Variable variable("HOME", home.path().toUtf8());

    const LoopbackServer server(Answer::reply(200));
    EXPECT_EQ(endingOfPost(server.url()), "success 200");
    EXPECT_TRUE(server.requests().at(0).header("Authorization").isNull());
}

TEST(RestClientEnvironment, SignalOfABrokenPipeDoesNotEndTheTill)
{
    struct sigaction former { };
    struct sigaction deadly { };
    deadly.sa_handler = SIG_DFL;
    ASSERT_EQ(sigaction(SIGPIPE, &deadly, &former), 0);

    // Hangs up in the middle of each request, so that the client goes on sending to nobody.
    const DeafPort port;
    std::thread server([&port] {
        for (int count = 0; count < 10; ++count) {
            const int connection = accept4(port.socket(), nullptr, nullptr, SOCK_CLOEXEC);
            char byte = 0;
            EXPECT_EQ(recv(connection, &byte, 1, 0), 1);
            close(connection);
        }
    });
    const QByteArray body(8 * 1024 * 1024, 'x');
    for (int count = 0; count < 10; ++count) {
        RestClient client;
        client.post(port.url(), body, {});
        EXPECT_EQ(ending(client), "no reply 0");
        EXPECT_THAT(errorText(client), HasSubstr("соединение оборвалось до конца ответа"));
    }
    server.join();
    sigaction(SIGPIPE, &former, nullptr);
}

}
