#include "till/facilities/http_library.h"

#include <stdexcept>

namespace till {

HttpLibrary::Start::Start()
{
    if (curl_global_init(CURL_GLOBAL_DEFAULT) != CURLE_OK) {
        throw std::runtime_error("libcurl cannot be started");
    }
}

HttpLibrary::Start::~Start()
{
    curl_global_cleanup();
}

void HttpLibrary::CloseShare::operator()(CURLSH* handle) const
{
    curl_share_cleanup(handle);
}

std::shared_ptr<const HttpLibrary> HttpLibrary::get()
{
    static const auto library = std::make_shared<const HttpLibrary>();
    return library;
}

HttpLibrary::HttpLibrary()
    : shared(curl_share_init())
{
    const bool ready = shared != nullptr && curl_share_setopt(shared.get(), CURLSHOPT_USERDATA, this) == CURLSHE_OK
        && curl_share_setopt(shared.get(), CURLSHOPT_LOCKFUNC, &HttpLibrary::lock) == CURLSHE_OK
        && curl_share_setopt(shared.get(), CURLSHOPT_UNLOCKFUNC, &HttpLibrary::unlock) == CURLSHE_OK
        && curl_share_setopt(shared.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_DNS) == CURLSHE_OK
        && curl_share_setopt(shared.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION) == CURLSHE_OK;
    if (!ready) {
        throw std::runtime_error("libcurl cannot share its data");
    }
}

CURLSH* HttpLibrary::share() const
{
    return shared.get();
}

void HttpLibrary::lock(CURL*, curl_lock_data data, curl_lock_access, void* self) noexcept
{
    static_cast<HttpLibrary*>(self)->locks.at(data).lock();
}

void HttpLibrary::unlock(CURL*, curl_lock_data data, void* self) noexcept
{
    static_cast<HttpLibrary*>(self)->locks.at(data).unlock();
}

}
