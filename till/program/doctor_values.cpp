#include "host/facilities/config.h"
#include "till/program/doctor_config.h"

#include <QRegExp>

#include <algorithm>
#include <chrono>

namespace till::diagnosis {

namespace {

/// A value that is not what it has to be: the till logs that and takes the default.
[[nodiscard]] bool isWhole(const QString& key)
{
    bool isNumber = false;
    static_cast<void>(Singleton<Config>::get()->getString(key, QStringLiteral("0")).toInt(&isNumber));
    return isNumber;
}

[[nodiscard]] bool isFlag(const QString& key)
{
    // The answer that does not depend on the default is the value's own.
    Config* const config = Singleton<Config>::get();
    return config->getString(key, QStringLiteral("no")) == u"no"
        || config->getBool(key, false) == config->getBool(key, true);
}

/// The plug-in takes a pattern that cannot be read for one that nothing fits, and tells nobody: its class of patterns is
/// asked, which is not that of newer programs.
[[nodiscard]] Findings checkMasks()
{
    Findings findings;
    for (const QString& name : { QStringLiteral("checkCouponMask"), QStringLiteral("positionCouponMask") }) {
        const QString mask = Singleton<Config>::get()->getString(QStringLiteral("Vantiro:") + name, QString());
        if (const QRegExp pattern(mask, Qt::CaseSensitive, QRegExp::RegExp); !pattern.isValid()) {
            findings.append(warning(QStringLiteral("%1 is no regular expression (%2), so no number is such a coupon; "
                                                   "correct it.")
                                        .arg(name, pattern.errorString())));
        }
    }
    return findings;
}

} // namespace

Findings checkValues(const ServiceSettings& settings)
{
    constexpr int modes = 4;
    constexpr std::chrono::seconds patience(60);
    Config* const config = Singleton<Config>::get();
    const QString timeout = QStringLiteral("Vantiro:timeout");
    const QString mode = QStringLiteral("Vantiro:noBonusForMinprice");

    Findings findings;
    if (!isWhole(timeout) || config->getInt(timeout, 1) < 1) {
        findings.append(warning(QStringLiteral("timeout is no whole number of seconds above 0, so %1 hold; correct it.")
                                    .arg(counted(settings.timeout.count(), QStringLiteral("second")))));
    }
    if (!isWhole(mode) || config->getInt(mode, 0) < 0 || config->getInt(mode, 0) >= modes) {
        findings.append(
            warning(QStringLiteral("noBonusForMinprice is no whole number from 0 to 3, so 0 holds; correct it.")));
    }
    for (const QString& flag :
         { QStringLiteral("forbidDiscountForDiscountedPosition"), QStringLiteral("restoreLoyaltyState") }) {
        if (!isFlag(QStringLiteral("Vantiro:") + flag)) {
            findings.append(
                warning(QStringLiteral("%1 is neither true nor false, so false holds; correct it.").arg(flag)));
        }
    }
    findings += checkMasks();
    if (settings.user.isEmpty() != settings.password.isEmpty()) {
        findings.append(
            warning(QStringLiteral("%1 is set without %2; set both, or neither.")
                        .arg(settings.user.isEmpty() ? QStringLiteral("password") : QStringLiteral("user"),
                             settings.user.isEmpty() ? QStringLiteral("user") : QStringLiteral("password"))));
    }
    const std::chrono::seconds longest = settings.longestWait();
    const QString wait = QStringLiteral("A cashier waits for an answer %1 at the longest: %2, %3 each")
                             .arg(counted(longest.count(), QStringLiteral("second")),
                                  counted(settings.servers.size(), QStringLiteral("server")),
                                  counted(settings.timeout.count(), QStringLiteral("second")));
    findings.append(longest > patience ? warning(wait + QStringLiteral("; set a shorter timeout.")) : ok(wait + u'.'));
    return findings;
}

Findings checkAddresses(const ServiceSettings& settings)
{
    Findings findings;
    for (const Server& server : settings.servers) {
        const QString title = server.title();
        if (server.entry.isEmpty()) {
            findings.append(
                warning(title + QStringLiteral(" is an empty entry of hosts, which never answers; remove its comma.")));
            continue;
        }
        if (server.entry != server.entry.trimmed()) {
            findings.append(warning(
                title + QStringLiteral(" has blanks around its address, and they count; remove them from hosts.")));
        }
        if (!server.isUsable()) {
            findings.append(failed(title
                                   + QStringLiteral(" has no usable address; write a complete one in hosts, such as "
                                                    "https://loyalty.example/.")));
            continue;
        }
        if (!server.url.path().endsWith(u'/')) {
            findings.append(
                warning(title
                        + QStringLiteral(" has no slash at its end, and requests go to exactly this address; add "
                                         "the slash unless the service has none.")));
        }
        if (!server.url.userInfo().isEmpty()) {
            findings.append(
                warning(title
                        + QStringLiteral(" has credentials in its address, which are not sent; set user and "
                                         "password instead.")));
        }
        if (!server.isEncrypted() && !server.isLoopback() && settings.hasCredentials()) {
            findings.append(
                warning(title
                        + QStringLiteral(" gets user and password unencrypted over the network; write https:// in "
                                         "hosts.")));
        }
    }
    if (std::ranges::none_of(settings.servers, &Server::isUsable)) {
        findings.append(failed(QStringLiteral("hosts names no usable server; set it in [Vantiro].")));
    }
    return findings;
}

} // namespace till::diagnosis
