#include "bench/common/bare_post.h"

#include <curl/curl.h>

#include <memory>
#include <stdexcept>
#include <utility>

namespace {

size_t take(const char* data, size_t size, size_t count, void* body)
{
    static_cast<QByteArray*>(body)->append(data, static_cast<qsizetype>(size * count));
    return size * count;
}

}

BarePost::BarePost(QByteArray itsAddress)
    : address(std::move(itsAddress))
{
}

QByteArray BarePost::post(const std::string& operation, const QByteArray& body) const
{
    const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle(curl_easy_init(), curl_easy_cleanup);
    const std::string action = "SOAPAction: http://tempuri.org/IVantiroService/" + operation;
    const std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers(
        curl_slist_append(curl_slist_append(nullptr, "Content-Type: text/xml; charset=UTF-8"), action.c_str()),
        curl_slist_free_all);
    QByteArray reply;
    curl_easy_setopt(handle.get(), CURLOPT_URL, address.constData());
    curl_easy_setopt(handle.get(), CURLOPT_HTTPHEADER, headers.get());
    curl_easy_setopt(handle.get(), CURLOPT_POSTFIELDS, body.constData());
    curl_easy_setopt(handle.get(), CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
    curl_easy_setopt(handle.get(), CURLOPT_PROXY, ""); // none of the environment
    curl_easy_setopt(handle.get(), CURLOPT_FRESH_CONNECT, 1L);
    curl_easy_setopt(handle.get(), CURLOPT_FORBID_REUSE, 1L);
    curl_easy_setopt(handle.get(), CURLOPT_WRITEFUNCTION, &take);
    curl_easy_setopt(handle.get(), CURLOPT_WRITEDATA, &reply);
    const CURLcode code = curl_easy_perform(handle.get());
    long status = 0;
    curl_easy_getinfo(handle.get(), CURLINFO_RESPONSE_CODE, &status);
    constexpr long success = 200;
    if (code != CURLE_OK || status != success) {
        throw std::runtime_error("libcurl has got no reply to " + operation);
    }
    return reply;
}
