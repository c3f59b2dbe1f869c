#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QUrl>

#include <curl/curl.h>

#include <chrono>

namespace till::diagnosis {

/// What a server's certificate says of itself. A plain value.
struct Certificate {
    QString subject;
    QString issuer;
    QString names; // that it is made for; empty when it tells none
    QDateTime from; // these two invalid when they cannot be read
    QDateTime until;
};

/// One attempt to exchange something with a server, as far as it came. A plain value.
struct Exchange {
    CURLcode code = CURLE_FAILED_INIT;
    QString detail; // libcurl's words on a failure
    bool isRefused = false; // the machine answers, the port does not
    std::chrono::milliseconds time { 0 }; // without the look-up of the name

    QString peer; // the address of the connection
    bool isSecured = false; // TLS was agreed and the certificate is trusted
    Certificate certificate; // of an https server

    int status = 0; // 0: no whole reply
    bool isTooLarge = false; // then the body is cut off
    QByteArray body;
};

/// Only connects, without TLS whatever the scheme. libcurl tells nothing of a connection whose TLS has failed.
/// [any-thread] [blocks: the timeout at the longest]
[[nodiscard]] Exchange connectTo(const QUrl& url, std::chrono::seconds timeout);

/// Posts as the till's own client does: a connection of its own, no proxy, no redirects, TLS verified. More than 64 KiB
/// are not taken for a reply. [any-thread] [blocks: the timeout at the longest]
[[nodiscard]] Exchange post(const QUrl& url, const QByteArray& body, const QList<QByteArray>& headers,
                            std::chrono::seconds timeout);

/// Only makes the TLS connection, whoever the server is, and tells its certificate; nothing is sent over it. The code
/// says whether the certificate is made for the host of the address. [any-thread] [blocks: the timeout at the longest]
[[nodiscard]] Exchange lookAtCertificate(const QUrl& url, std::chrono::seconds timeout);

} // namespace till::diagnosis
