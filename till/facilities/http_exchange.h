#pragma once

#include "till/facilities/http_failure.h"
#include "till/facilities/http_library.h"

#include <QByteArray>
#include <QString>

#include <curl/curl.h>

#include <chrono>

namespace till {

struct HttpResult {
    HttpFailure failure = HttpFailure::other; // `none` when a reply came; only then the next three tell of it
    int status = 0;
    bool isTooLarge = false; // then there is no body
    QByteArray body;

    QString detail; // libcurl's words on the failure, in English
    qint64 sent = 0; // bytes of the request's body
    qint64 received = 0; // bytes of the reply's body, kept or not
};

/// Sends the request over a connection of its own, once, and waits for the whole reply. The address and the headers
/// are those of `http_request.h`. Throws `std::bad_alloc` before anything is sent, nothing afterwards.
/// [any-thread] [blocks: the timeout at the longest]
[[nodiscard]] HttpResult exchangeHttp(const HttpLibrary& library, const QByteArray& address, const QByteArray& body,
                                      const curl_slist* headers, std::chrono::seconds timeout);

}
