#pragma once

#include <QtGlobal>

#include <curl/curl.h>

#include <array>
#include <memory>
#include <mutex>

namespace till {

/// What all HTTP exchanges of the process have in common: libcurl itself, the names it has resolved and the TLS
/// sessions it can resume. Connections are not shared. Lives until the process ends and the last exchange that holds it
/// is over.
class HttpLibrary {
public:
    /// The one object of the process, made on first use; throws `std::runtime_error` when libcurl cannot be started,
    /// and tries again on the next call. [any-thread]
    [[nodiscard]] static std::shared_ptr<const HttpLibrary> get();

    HttpLibrary();

    /// For `CURLOPT_SHARE`; valid as long as this object. [any-thread]
    [[nodiscard]] CURLSH* share() const;

private:
    struct Start {
        Start();
        ~Start();
        Q_DISABLE_COPY_MOVE(Start)
    };

    struct CloseShare {
        void operator()(CURLSH* handle) const;
    };

    static void lock(CURL* handle, curl_lock_data data, curl_lock_access access, void* self) noexcept;
    static void unlock(CURL* handle, curl_lock_data data, void* self) noexcept;

    // The share takes its locks while it is closed, and libcurl is stopped last.
    Start start;
    std::array<std::mutex, CURL_LOCK_DATA_LAST> locks;
    std::unique_ptr<CURLSH, CloseShare> shared;
};

}
