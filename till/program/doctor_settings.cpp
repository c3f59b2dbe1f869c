#include "till/program/doctor_settings.h"

#include "host/facilities/config.h"

#include <arpa/inet.h>

#include <algorithm>
#include <limits>

namespace till::diagnosis {

namespace {

constexpr int defaultTimeout = 5; // seconds
constexpr int longestTimeout = std::numeric_limits<int>::max() / 1000; // libcurl keeps its times in 32 bits

} // namespace

bool Server::isUsable() const
{
    return url.isValid() && !url.host().isEmpty() && (url.scheme() == u"http" || isEncrypted());
}

bool Server::isEncrypted() const
{
    return url.scheme() == u"https";
}

bool Server::isLoopback() const
{
    const QString host = url.host(QUrl::FullyEncoded);
    if (host.compare(u"localhost", Qt::CaseInsensitive) == 0 || host.endsWith(u".localhost", Qt::CaseInsensitive)) {
        return true;
    }
    in_addr four {};
    if (::inet_pton(AF_INET, host.toLatin1().constData(), &four) == 1) {
        constexpr in_addr_t network = 127;
        return (ntohl(four.s_addr) >> 24U) == network;
    }
    in6_addr six {};
    return ::inet_pton(AF_INET6, host.toLatin1().constData(), &six) == 1 && IN6_IS_ADDR_LOOPBACK(&six) != 0;
}

QString Server::title() const
{
    const QString name = QStringLiteral("Server %1").arg(number);
    if (!isUsable()) {
        return name;
    }
    return name + QStringLiteral(" (")
        + url.toDisplayString(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment) + u')';
}

bool ServiceSettings::hasCredentials() const
{
    return !user.isEmpty() || !password.isEmpty();
}

QByteArray ServiceSettings::authorization() const
{
    // In two steps, as the plug-in does it: what it sends is what has to be accepted.
    return "Basic " + QStringLiteral("%1:%2").arg(user).arg(password).toLocal8Bit().toBase64();
}

std::chrono::seconds ServiceSettings::longestWait() const
{
    return servers.size() * timeout;
}

ServiceSettings configuredService()
{
    Config* const config = Singleton<Config>::get();
    ServiceSettings settings;
    const QStringList entries
        = config->getString(QStringLiteral("Vantiro:hosts"), QStringLiteral("http://127.0.0.1/")).split(u',');
    for (const QString& entry : entries) {
        settings.servers.append({ settings.servers.size() + 1, entry, QUrl(entry, QUrl::TolerantMode) });
    }
    const int seconds = config->getInt(QStringLiteral("Vantiro:timeout"), defaultTimeout);
    settings.timeout = std::chrono::seconds(seconds < 1 ? defaultTimeout : std::min(seconds, longestTimeout));
    settings.user = config->getString(QStringLiteral("Vantiro:user"), QString());
    settings.password = config->getString(QStringLiteral("Vantiro:password"), QString());
    return settings;
}

} // namespace till::diagnosis
