#include "till/facilities/http_exchange.h"

#include "till/facilities/http_reply.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <new>

namespace till {

namespace {

struct CloseHandle {
    void operator()(CURL* handle) const
    {
        curl_easy_cleanup(handle);
    }
};
using Handle = std::unique_ptr<CURL, CloseHandle>;

size_t takeLine(const char* data, size_t size, size_t count, void* reply) noexcept
{
    const size_t bytes = size * count;
    return static_cast<HttpReply*>(reply)->addLine({ data, static_cast<qsizetype>(bytes) }) ? bytes : 0;
}

size_t takeBody(const char* data, size_t size, size_t count, void* reply) noexcept
{
    const size_t bytes = size * count;
    return static_cast<HttpReply*>(reply)->addBody({ data, static_cast<qsizetype>(bytes) }) ? bytes : 0;
}

template <class... Value>
bool isSet(const Handle& handle, CURLoption option, Value... value)
{
    return curl_easy_setopt(handle.get(), option, value...) == CURLE_OK;
}

bool setConnection(const Handle& handle, const HttpLibrary& library, std::chrono::seconds timeout)
{
    // libcurl keeps its times in 32 bits.
    constexpr std::chrono::milliseconds longest(std::numeric_limits<int>::max());
    const auto limit = static_cast<long>(std::min<std::chrono::milliseconds>(timeout, longest).count());
    return isSet(handle, CURLOPT_SHARE, library.share()) && isSet(handle, CURLOPT_PROTOCOLS_STR, "http,https")
        && isSet(handle, CURLOPT_PROXY, "") // also switches off the proxies of the environment
        // A kept connection that has died makes libcurl send the request again, which may have been executed.
        && isSet(handle, CURLOPT_FRESH_CONNECT, 1L) && isSet(handle, CURLOPT_FORBID_REUSE, 1L)
        && isSet(handle, CURLOPT_TCP_NODELAY, 1L) && isSet(handle, CURLOPT_NOSIGNAL, 1L)
        && isSet(handle, CURLOPT_TIMEOUT_MS, limit)
        && isSet(handle, CURLOPT_CONNECTTIMEOUT_MS, limit)
        // Otherwise libcurl waits after the timeout until the system's resolver has given up.
        && isSet(handle, CURLOPT_QUICK_EXIT, 1L)
        && isSet(handle, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2))
        && isSet(handle, CURLOPT_SSL_VERIFYPEER, 1L) && isSet(handle, CURLOPT_SSL_VERIFYHOST, 2L);
}

bool setRequest(const Handle& handle, const QByteArray& address, const QByteArray& body, const curl_slist* headers)
{
    return isSet(handle, CURLOPT_URL, address.constData()) && isSet(handle, CURLOPT_PATH_AS_IS, 1L)
        && isSet(handle, CURLOPT_DISALLOW_USERNAME_IN_URL, 1L)
        && isSet(handle, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1))
        && isSet(handle, CURLOPT_HTTP09_ALLOWED, 0L) && isSet(handle, CURLOPT_FOLLOWLOCATION, 0L)
        && isSet(handle, CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED)) && isSet(handle, CURLOPT_POST, 1L)
        && isSet(handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()))
        && isSet(handle, CURLOPT_POSTFIELDS, body.constData()) && isSet(handle, CURLOPT_HTTPHEADER, headers);
}

bool setReply(const Handle& handle, HttpReply& reply, char* errorText)
{
    return isSet(handle, CURLOPT_ERRORBUFFER, errorText)
        && isSet(handle, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(HttpReply::bodyLimit))
        && isSet(handle, CURLOPT_HEADERFUNCTION, &takeLine) && isSet(handle, CURLOPT_HEADERDATA, &reply)
        && isSet(handle, CURLOPT_WRITEFUNCTION, &takeBody) && isSet(handle, CURLOPT_WRITEDATA, &reply);
}

// A line of a head that is too long for libcurl itself never reaches the reply.
bool isLineTooLong(CURLcode code)
{
#if LIBCURL_VERSION_NUM >= 0x080600
    return code == CURLE_TOO_LARGE || code == CURLE_OUT_OF_MEMORY;
#else
    return code == CURLE_OUT_OF_MEMORY;
#endif
}

bool isTooLarge(const HttpReply& reply, CURLcode code)
{
    return reply.getStatus() != 0 && (reply.isTooLarge() || code == CURLE_FILESIZE_EXCEEDED || isLineTooLong(code));
}

HttpFailure judge(const HttpReply& reply, CURLcode code, long systemError)
{
    if (isTooLarge(reply, code)) {
        return HttpFailure::none;
    }
    if (reply.isDamaged()) {
        return HttpFailure::notHttp;
    }
    if (code == CURLE_OK && !reply.hasWholeHead()) {
        return HttpFailure::brokenOff;
    }
    return failureOf(code, systemError);
}

// What a server says can get into libcurl's words, and the log takes one line.
QString cleanDetail(const char* text)
{
    QString detail = QString::fromUtf8(text).trimmed();
    for (QChar& character : detail) {
        if (!character.isPrint()) {
            character = u' ';
        }
    }
    return detail;
}

}

HttpResult exchangeHttp(const HttpLibrary& library, const QByteArray& address, const QByteArray& body,
                        const curl_slist* headers, std::chrono::seconds timeout)
{
    const Handle handle(curl_easy_init());
    if (handle == nullptr) {
        throw std::bad_alloc();
    }
    HttpReply reply;
    std::array<char, CURL_ERROR_SIZE> errorText {};
    HttpResult result;
    if (!setConnection(handle, library, timeout) || !setRequest(handle, address, body, headers)
        || !setReply(handle, reply, errorText.data())) {
        return result;
    }

    const CURLcode code = curl_easy_perform(handle.get());

    long systemError = 0;
    curl_easy_getinfo(handle.get(), CURLINFO_OS_ERRNO, &systemError);
    curl_off_t sent = 0;
    curl_easy_getinfo(handle.get(), CURLINFO_SIZE_UPLOAD_T, &sent);
    result.sent = sent;
    result.received = reply.getReceived();
    result.failure = judge(reply, code, systemError);
    if (result.failure == HttpFailure::none) {
        result.status = reply.getStatus();
        result.isTooLarge = isTooLarge(reply, code);
        result.body = result.isTooLarge ? QByteArray() : reply.takeBody();
    }
    try {
        result.detail = cleanDetail(errorText.data());
    } catch (const std::bad_alloc&) {
        result.detail.clear(); // the reply counts, not the words about it
    }
    return result;
}

}
