#pragma once

#include <QByteArray>
#include <QList>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>
#include <QUrl>

namespace vantiro_test {

/// Certificates made on the spot, in a folder of their own.
class CertificateMaker {
public:
    struct Order {
        QByteArray names = "IP:127.0.0.1"; // that it is made for
        int days = 90; // from now; negative: it has ended
        bool byAuthority = false; // signed by an authority made for it, and not by itself
    };

    explicit CertificateMaker(const Order& order);

    [[nodiscard]] QString certificate() const;
    [[nodiscard]] QString key() const;
    /// The authority's certificate, or else the certificate itself.
    [[nodiscard]] QString authority() const;

private:
    void run(const QStringList& arguments);

    bool byAuthority;
    QTemporaryDir folder;
};

/// Speaks TLS with that certificate in front of a plain server on this machine. Connections whose handshake fails do
/// not reach the server.
class TlsFront {
public:
    TlsFront(const CertificateMaker& maker, quint16 plainPort);
    ~TlsFront();
    Q_DISABLE_COPY_MOVE(TlsFront)

    [[nodiscard]] QUrl url() const;

private:
    QProcess process;
    QByteArray port;
};

/// Makes libcurl trust the certificates of the file, as if they were the system's, as long as this lives.
class TrustedFile {
public:
    explicit TrustedFile(const QString& file);
    ~TrustedFile();
    Q_DISABLE_COPY_MOVE(TrustedFile)
};

}
