#include "tests/support/loopback_server.h"
#include "tests/till/rest_client_support.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <curl/curl.h>
#include <dlfcn.h>
#include <gmock/gmock.h>

#include <chrono>

using namespace vantiro_test;
using testing::HasSubstr;
using testing::Not;

namespace {

// A file of certificates that the client trusts besides the system's; empty for none.
QByteArray trustedFile;

}

// Takes the place of libcurl's own for the whole test program: a certificate of a test cannot be made one of the
// system's, and the client takes no others.
extern "C" [[gnu::visibility("default")]] CURLcode curl_easy_perform(CURL* handle)
{
    static const auto perform = reinterpret_cast<CURLcode (*)(CURL*)>(dlsym(RTLD_NEXT, "curl_easy_perform"));
    static const auto set
        = reinterpret_cast<CURLcode (*)(CURL*, CURLoption, ...)>(dlsym(RTLD_NEXT, "curl_easy_setopt"));
    if (!trustedFile.isEmpty()) {
        EXPECT_EQ(set(handle, CURLOPT_CAINFO, trustedFile.constData()), CURLE_OK);
    }
    return perform(handle);
}

namespace {

constexpr int patience = 20000; // milliseconds

class RestClientTls : public testing::Test {
protected:
    ~RestClientTls() override
    {
        trustedFile.clear();
        server.kill();
        server.waitForFinished(patience);
    }

    // Starts a server with a certificate of its own making, which ends after so many connections. The first one gets
    // the reply.
    void serve(const QByteArray& subject, const QByteArray& reply, int connections = 1)
    {
        QProcess maker;
        maker.start("openssl",
                    { "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes", "-days",
                      "1", "-subj", "/CN=test", "-addext", "subjectAltName=" + subject, "-keyout", keyFile(), "-out",
                      certificateFile() });
        ASSERT_TRUE(maker.waitForFinished(patience));
        ASSERT_EQ(maker.exitCode(), 0) << maker.readAllStandardError().toStdString();

        server.setProcessChannelMode(QProcess::MergedChannels);
        server.start("openssl",
                     { "s_server", "-accept", "127.0.0.1:0", "-cert", certificateFile(), "-key", keyFile(), "-naccept",
                       QString::number(connections), "-msg" });
        ASSERT_TRUE(server.waitForStarted(patience));
        readUntil(QRegularExpression("ACCEPT 127\\.0\\.0\\.1:"));
        const qsizetype start = output.size();
        readUntil(QRegularExpression("\n"));
        port = output.mid(start).trimmed().toInt();
        sayNext(reply);
    }

    // What the server says to whoever is connected, or else to the next one.
    void sayNext(const QByteArray& reply)
    {
        server.write(reply);
        ASSERT_TRUE(server.waitForBytesWritten(patience));
    }

    // Reads on to the end of the next text that matches.
    void readUntil(const QRegularExpression& text)
    {
        const qsizetype start = output.size();
        while (!text.match(QString::fromLatin1(output.mid(start))).hasMatch()) {
            if (unread.isEmpty()) {
                ASSERT_TRUE(server.waitForReadyRead(patience)) << output.toStdString();
                unread = server.readAll();
            }
            output += unread.first(1);
            unread.remove(0, 1);
        }
    }

    // All that the server says until it ends.
    [[nodiscard]] std::string allOutput()
    {
        EXPECT_TRUE(server.waitForFinished(patience));
        return (output + unread + server.readAll()).toStdString();
    }

    [[nodiscard]] QString keyFile() const
    {
        return folder.filePath("key.pem");
    }

    [[nodiscard]] QString certificateFile() const
    {
        return folder.filePath("certificate.pem");
    }

    [[nodiscard]] QUrl url() const
    {
        return QUrl(QStringLiteral("https://127.0.0.1:%1/").arg(port));
    }

    QTemporaryDir folder;
    QProcess server;
    QByteArray output; // of the server, as far as it was looked at
    QByteArray unread;
    int port = 0;
    RestClient client;
};

constexpr auto untrusted = "сертификат сервера не вызывает доверия";
constexpr auto ok = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok";

TEST_F(RestClientTls, TrustedServerIsAsked)
{
    serve("IP:127.0.0.1", ok);
    trustedFile = certificateFile().toUtf8();
    client.post(url(), "body", { { "X-Key", "1" } });
    EXPECT_EQ(ending(client), "success 200");
    EXPECT_EQ(client.getResponseBody(), "ok");
    EXPECT_EQ(errorText(client), "");
    EXPECT_THAT(allOutput(), HasSubstr("X-Key: 1\r\n"));
}

TEST_F(RestClientTls, SessionIsKeptForLaterClients)
{
    serve("IP:127.0.0.1", ok, 2);
    trustedFile = certificateFile().toUtf8();
    client.post(url(), "body", {});
    EXPECT_EQ(ending(client), "success 200");
    readUntil(QRegularExpression("DONE\n|ERROR\n")); // with the first connection
    EXPECT_THAT(output.toStdString(), HasSubstr(", Certificate\n"));

    output.clear();
    sayNext(ok);
    RestClient later;
    later.post(url(), "body", {});
    EXPECT_EQ(ending(later), "success 200");
    const std::string said = allOutput();
    EXPECT_THAT(said, HasSubstr(", ServerHello\n"));
    EXPECT_THAT(said, Not(HasSubstr(", Certificate\n")));
}

TEST_F(RestClientTls, UntrustedServerGetsNothing)
{
    serve("IP:127.0.0.1", ok);
    client.post(url(), "body", { { "X-Key", "1" } });
    EXPECT_EQ(ending(client), "no reply 0");
    EXPECT_THAT(errorText(client), HasSubstr(untrusted));
    EXPECT_THAT(allOutput(), Not(HasSubstr("X-Key")));
}

TEST_F(RestClientTls, ServerOfAnotherNameGetsNothing)
{
    serve("DNS:other.example", ok);
    trustedFile = certificateFile().toUtf8();
    client.post(url(), "body", { { "X-Key", "1" } });
    EXPECT_EQ(ending(client), "no reply 0");
    EXPECT_THAT(errorText(client), HasSubstr(untrusted));
    EXPECT_THAT(allOutput(), Not(HasSubstr("X-Key")));
}

TEST_F(RestClientTls, ReplyWithoutItsEndIsNoReply)
{
    serve("IP:127.0.0.1", "HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\nok");
    trustedFile = certificateFile().toUtf8();
    client.setTimeout(1);
    client.post(url(), "body", {});
    EXPECT_EQ(ending(client), "no reply 0");
    EXPECT_EQ(client.getResponseBody(), "");
}

TEST(RestClientTlsToPlainPort, IsNoReply)
{
    const LoopbackServer server(Answer::reply(200));
    QUrl url = server.url();
    url.setScheme("https");
    RestClient client;
    client.post(url, "body", {});
    EXPECT_EQ(ending(client), "no reply 0");
    EXPECT_THAT(errorText(client), HasSubstr("защищённое соединение не установлено"));
    EXPECT_EQ(server.requests().size(), 0);
}

TEST(RestClientTlsToPlainPort, SilentPortEndsWithTheTimeout)
{
    const DeafPort port;
    QUrl url = port.url();
    url.setScheme("https");
    RestClient client;
    client.setTimeout(1);
    const auto start = std::chrono::steady_clock::now();
    client.post(url, "body", {});
    EXPECT_EQ(ending(client), "no reply 0");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1500));
}

}
