#include "till/program/doctor_exchange.h"

#include <QHash>
#include <QTimeZone>

#include <array>
#include <cerrno>
#include <memory>
#include <new>
#include <stdexcept>

namespace till::diagnosis {

namespace {

constexpr qsizetype bodyLimit = 64 * 1024; // bytes; real replies have some hundred

struct CloseHandle {
    void operator()(CURL* handle) const
    {
        curl_easy_cleanup(handle);
    }
};
using Handle = std::unique_ptr<CURL, CloseHandle>;

struct FreeLines {
    void operator()(curl_slist* lines) const
    {
        curl_slist_free_all(lines);
    }
};
using Lines = std::unique_ptr<curl_slist, FreeLines>;

/// libcurl counts how often it is started, so that the till's own client may use it beside.
struct Library {
    Library()
    {
        if (curl_global_init(CURL_GLOBAL_DEFAULT) != CURLE_OK) {
            throw std::runtime_error("libcurl cannot be started");
        }
    }
    ~Library()
    {
        curl_global_cleanup();
    }
    Q_DISABLE_COPY_MOVE(Library)
};

size_t takeBody(const char* data, size_t size, size_t count, void* target) noexcept
{
    auto& exchange = *static_cast<Exchange*>(target);
    const auto bytes = static_cast<qsizetype>(size * count);
    if (exchange.body.size() + bytes > bodyLimit) {
        exchange.isTooLarge = true;
        return 0;
    }
    try {
        exchange.body.append(data, bytes);
    } catch (const std::bad_alloc&) {
        return 0;
    }
    return size * count;
}

template <class Value>
void set(const Handle& handle, CURLoption option, Value value)
{
    if (curl_easy_setopt(handle.get(), option, value) != CURLE_OK) {
        throw std::runtime_error("libcurl does not take an option that the till needs");
    }
}

[[nodiscard]] Handle prepared(const QUrl& url, std::chrono::seconds timeout, Exchange& exchange, char* errorText)
{
    static const Library library;
    Handle handle(curl_easy_init());
    if (handle == nullptr) {
        throw std::bad_alloc();
    }
    const auto limit = static_cast<long>(std::chrono::milliseconds(timeout).count());
    set(handle, CURLOPT_URL, url.toEncoded(QUrl::RemoveUserInfo | QUrl::RemoveFragment).constData());
    set(handle, CURLOPT_PROTOCOLS_STR, "http,https");
    set(handle, CURLOPT_PROXY, ""); // also switches off the proxies of the environment
    set(handle, CURLOPT_FRESH_CONNECT, 1L);
    set(handle, CURLOPT_FORBID_REUSE, 1L);
    set(handle, CURLOPT_NOSIGNAL, 1L);
    set(handle, CURLOPT_TIMEOUT_MS, limit);
    set(handle, CURLOPT_CONNECTTIMEOUT_MS, limit);
    set(handle, CURLOPT_QUICK_EXIT, 1L);
    set(handle, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    set(handle, CURLOPT_CERTINFO, 1L);
    set(handle, CURLOPT_PATH_AS_IS, 1L);
    set(handle, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    set(handle, CURLOPT_HTTP09_ALLOWED, 0L);
    set(handle, CURLOPT_FOLLOWLOCATION, 0L);
    set(handle, CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
    set(handle, CURLOPT_ERRORBUFFER, errorText);
    set(handle, CURLOPT_WRITEFUNCTION, &takeBody);
    set(handle, CURLOPT_WRITEDATA, &exchange);
    return handle;
}

/// The time as libcurl writes it: "Nov 21 08:16:01 2026 GMT".
[[nodiscard]] QDateTime momentOf(const QByteArray& text)
{
    const time_t seconds = curl_getdate(text.constData(), nullptr);
    return seconds < 0 ? QDateTime() : QDateTime::fromSecsSinceEpoch(seconds, QTimeZone::utc());
}

[[nodiscard]] Certificate certificateOf(const Handle& handle)
{
    curl_certinfo* chain = nullptr;
    Certificate certificate;
    if (curl_easy_getinfo(handle.get(), CURLINFO_CERTINFO, &chain) != CURLE_OK || chain == nullptr
        || chain->num_of_certs < 1) {
        return certificate;
    }
    QHash<QByteArray, QByteArray> fields;
    for (const curl_slist* line = chain->certinfo[0]; line != nullptr; line = line->next) { // the server's own is first
        const QByteArray text(line->data);
        const qsizetype colon = text.indexOf(':');
        fields.insert(text.first(qMax(colon, 0)), text.sliced(colon + 1));
    }
    certificate.subject = QString::fromUtf8(fields.value("Subject"));
    certificate.issuer = QString::fromUtf8(fields.value("Issuer"));
    certificate.names = QString::fromUtf8(fields.value("X509v3 Subject Alternative Name")).simplified();
    certificate.from = momentOf(fields.value("Start date"));
    certificate.until = momentOf(fields.value("Expire date"));
    return certificate;
}

[[nodiscard]] std::chrono::milliseconds timeOf(const Handle& handle, CURLINFO info)
{
    curl_off_t microseconds = 0;
    curl_easy_getinfo(handle.get(), info, &microseconds);
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::microseconds(microseconds));
}

void perform(const Handle& handle, Exchange& exchange, const char* errorText)
{
    exchange.code = curl_easy_perform(handle.get());

    long number = 0;
    curl_easy_getinfo(handle.get(), CURLINFO_OS_ERRNO, &number);
    exchange.isRefused = exchange.code == CURLE_COULDNT_CONNECT && number == ECONNREFUSED;
    curl_easy_getinfo(handle.get(), CURLINFO_RESPONSE_CODE, &number);
    exchange.status = exchange.code == CURLE_OK || exchange.isTooLarge ? static_cast<int>(number) : 0;
    const char* peer = nullptr;
    curl_easy_getinfo(handle.get(), CURLINFO_PRIMARY_IP, &peer);
    curl_off_t secureTime = 0;
    curl_easy_getinfo(handle.get(), CURLINFO_APPCONNECT_TIME_T, &secureTime);
    exchange.peer = QString::fromUtf8(peer);
    exchange.isSecured = secureTime > 0;
    exchange.certificate = certificateOf(handle);
    exchange.time = timeOf(handle, CURLINFO_TOTAL_TIME_T) - timeOf(handle, CURLINFO_NAMELOOKUP_TIME_T);
    exchange.detail = QString::fromUtf8(errorText).trimmed();
}

} // namespace

Exchange connectTo(const QUrl& url, std::chrono::seconds timeout)
{
    constexpr int portOfHttps = 443;
    constexpr int portOfHttp = 80;
    QUrl plain = url;
    plain.setPort(url.port(url.scheme() == u"https" ? portOfHttps : portOfHttp));
    plain.setScheme(QStringLiteral("http"));

    Exchange exchange;
    std::array<char, CURL_ERROR_SIZE> errorText {};
    const Handle handle = prepared(plain, timeout, exchange, errorText.data());
    set(handle, CURLOPT_CONNECT_ONLY, 1L);
    perform(handle, exchange, errorText.data());
    return exchange;
}

Exchange post(const QUrl& url, const QByteArray& body, const QList<QByteArray>& headers, std::chrono::seconds timeout)
{
    Exchange exchange;
    std::array<char, CURL_ERROR_SIZE> errorText {};
    const Handle handle = prepared(url, timeout, exchange, errorText.data());
    Lines lines;
    for (const QByteArray& header : headers + QList<QByteArray> { "Accept:", "Expect:" }) {
        curl_slist* const longer = curl_slist_append(lines.get(), header.constData());
        if (longer == nullptr) {
            throw std::bad_alloc();
        }
        static_cast<void>(lines.release());
        lines.reset(longer);
    }
    set(handle, CURLOPT_POST, 1L);
    set(handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    set(handle, CURLOPT_POSTFIELDS, body.constData());
    set(handle, CURLOPT_HTTPHEADER, lines.get());
    set(handle, CURLOPT_SSL_VERIFYPEER, 1L);
    set(handle, CURLOPT_SSL_VERIFYHOST, 2L);
    perform(handle, exchange, errorText.data());
    return exchange;
}

Exchange lookAtCertificate(const QUrl& url, std::chrono::seconds timeout)
{
    Exchange exchange;
    std::array<char, CURL_ERROR_SIZE> errorText {};
    const Handle handle = prepared(url, timeout, exchange, errorText.data());
    set(handle, CURLOPT_CONNECT_ONLY, 1L);
    set(handle, CURLOPT_SSL_VERIFYPEER, 0L);
    set(handle, CURLOPT_SSL_VERIFYHOST, 2L);
    perform(handle, exchange, errorText.data());
    return exchange;
}

} // namespace till::diagnosis
