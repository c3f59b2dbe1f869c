#include "till/program/doctor_resolve.h"

#include <netdb.h>

#include <array>
#include <exception>
#include <future>
#include <memory>
#include <thread>

namespace till::diagnosis {

namespace {

[[nodiscard]] Resolution resolveNow(const QByteArray& host)
{
    Resolution resolution { .isInTime = true, .failure = {}, .addresses = {} };
    addrinfo hints {};
    hints.ai_socktype = SOCK_STREAM; // each address once
    addrinfo* found = nullptr;
    const int status = ::getaddrinfo(host.constData(), nullptr, &hints, &found);
    if (status != 0) {
        resolution.failure = QString::fromLocal8Bit(::gai_strerror(status));
        return resolution;
    }
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> list(found, &::freeaddrinfo);
    for (const addrinfo* entry = found; entry != nullptr; entry = entry->ai_next) {
        std::array<char, NI_MAXHOST> text {};
        if (::getnameinfo(entry->ai_addr, entry->ai_addrlen, text.data(), text.size(), nullptr, 0, NI_NUMERICHOST)
            == 0) {
            resolution.addresses.append(QString::fromLatin1(text.data()));
        }
    }
    return resolution;
}

} // namespace

Resolution resolve(const QString& host, std::chrono::seconds time)
{
    // The system's own look-up cannot be broken off, so that it runs on a thread that nobody has to wait for.
    const auto promise = std::make_shared<std::promise<Resolution>>();
    std::future<Resolution> answer = promise->get_future();
    std::thread([promise, name = host.toUtf8()] {
        try {
            promise->set_value(resolveNow(name));
        } catch (...) {
            promise->set_exception(std::current_exception());
        }
    }).detach();
    return answer.wait_for(time) == std::future_status::ready ? answer.get() : Resolution();
}

} // namespace till::diagnosis
