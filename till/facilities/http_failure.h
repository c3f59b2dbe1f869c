#pragma once

#include "host/facilities/tr.h"

#include <curl/curl.h>

#include <chrono>

namespace till {

/// Why an HTTP exchange ended without a whole reply.
enum class HttpFailure {
    none,
    noAddress,
    unusableAddress,
    unusableHeader,
    hostNotFound,
    refused,
    unreachable,
    timedOut,
    untrusted,
    tls,
    brokenOff,
    notHttp,
    other,
};

/// The kind of failure that libcurl reports. `systemError` is the `errno` of the last attempt to connect, or 0.
/// [any-thread]
[[nodiscard]] HttpFailure failureOf(CURLcode code, long systemError);

/// What the failure says to people, in Russian, without the address. `timeout` is the one that was in force.
/// [any-thread]
[[nodiscard]] tr::Tr reasonOf(HttpFailure failure, std::chrono::seconds timeout);

/// What a reply outside of 200 to 299 says to people. [any-thread]
[[nodiscard]] tr::Tr reasonOfStatus(int status);

/// What a reply that is larger than the till takes says to people. [any-thread]
[[nodiscard]] tr::Tr reasonOfSize(int status);

/// The line for the log: the address, the reason and, in brackets, the detail. The address and the detail may be
/// empty. [any-thread]
[[nodiscard]] tr::Tr failureText(const QString& address, const tr::Tr& reason, const QString& detail);

}
