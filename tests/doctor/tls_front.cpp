#include "tests/doctor/tls_front.h"

#include <QFile>

#include <curl/curl.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

namespace vantiro_test {

namespace {

constexpr int patience = 20000; // milliseconds

QByteArray& trustedFile()
{
    static QByteArray file;
    return file;
}

}

CertificateMaker::CertificateMaker(const Order& order)
    : byAuthority(order.byAuthority)
{
    const QStringList newKey { "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes" };
    QFile extensions(folder.filePath("extensions"));
    EXPECT_TRUE(extensions.open(QIODevice::WriteOnly));
    extensions.write("subjectAltName=" + order.names + "\n");
    extensions.close();

    run(QStringList { "req", "-subj", "/CN=test", "-keyout", key(), "-out", folder.filePath("request.pem") } + newKey);
    QStringList signer { "-signkey", key() };
    if (byAuthority) {
        const QString authorityKey = folder.filePath("authority.key");
        run(QStringList { "req", "-x509", "-subj", "/CN=authority", "-keyout", authorityKey, "-out", authority() }
            + newKey);
        signer = { "-CA", authority(), "-CAkey", authorityKey, "-CAcreateserial" };
    }
    run(QStringList { "x509", "-req", "-in", folder.filePath("request.pem"), "-days", QString::number(order.days),
                      "-extfile", extensions.fileName(), "-out", certificate() }
        + signer);
}

QString CertificateMaker::certificate() const
{
    return folder.filePath("certificate.pem");
}

QString CertificateMaker::key() const
{
    return folder.filePath("key.pem");
}

QString CertificateMaker::authority() const
{
    return byAuthority ? folder.filePath("authority.pem") : certificate();
}

void CertificateMaker::run(const QStringList& arguments)
{
    QProcess maker;
    maker.start("openssl", arguments);
    ASSERT_TRUE(maker.waitForFinished(patience));
    ASSERT_EQ(maker.exitCode(), 0) << maker.readAllStandardError().toStdString();
}

TlsFront::TlsFront(const CertificateMaker& maker, quint16 plainPort)
{
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(VANTIRO_PYTHON, { VANTIRO_TLS_FRONT, maker.certificate(), maker.key(), QString::number(plainPort) });
    while (!process.canReadLine() && process.waitForReadyRead(patience)) { }
    port = process.readLine().trimmed();
    EXPECT_FALSE(port.isEmpty());
}

TlsFront::~TlsFront()
{
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(patience));
}

QUrl TlsFront::url() const
{
    return QUrl("https://127.0.0.1:" + port + '/');
}

TrustedFile::TrustedFile(const QString& file)
{
    trustedFile() = QFile::encodeName(file);
}

TrustedFile::~TrustedFile()
{
    trustedFile().clear();
}

}

// Takes the place of libcurl's own for the whole test program: a certificate of a test cannot be made one of the
// system's, and the till takes no others.
extern "C" [[gnu::visibility("default")]] CURLcode curl_easy_perform(CURL* handle)
{
    static const auto perform = reinterpret_cast<CURLcode (*)(CURL*)>(dlsym(RTLD_NEXT, "curl_easy_perform"));
    static const auto set
        = reinterpret_cast<CURLcode (*)(CURL*, CURLoption, ...)>(dlsym(RTLD_NEXT, "curl_easy_setopt"));
    if (!vantiro_test::trustedFile().isEmpty()) {
        EXPECT_EQ(set(handle, CURLOPT_CAINFO, vantiro_test::trustedFile().constData()), CURLE_OK);
    }
    return perform(handle);
}
