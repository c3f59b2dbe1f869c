#include "client/vantiro_interface.h"

#include "host/facilities/config.h"
#include "host/facilities/log_manager.h"

VantiroInterface::VantiroInterface(const QString& loggerName)
    : logger(Log4Qt::LogManager::logger(loggerName, QString()))
{
}

VantiroInterface::~VantiroInterface() = default;

void VantiroInterface::initialize()
{
    Config* const config = Singleton<Config>::get();

    // An empty part is kept: it holds its place in the priority, and fails like any server that cannot be reached.
    const QStringList addresses = config->getString(QStringLiteral("Vantiro:hosts"), QStringLiteral("http://127.0.0.1/"))
                                      .split(u',', Qt::KeepEmptyParts, Qt::CaseSensitive);
    QList<QUrl> servers;
    servers.reserve(addresses.size());
    for (const QString& address : addresses) {
        servers.append(QUrl(address, QUrl::TolerantMode));
    }
    setHosts(servers);

    setTimeout(config->getInt(QStringLiteral("Vantiro:timeout"), 5));

    constexpr unsigned modes = 4;
    noBonusForMinprice = config->getInt(QStringLiteral("Vantiro:noBonusForMinprice"), 0);
    if (static_cast<unsigned>(noBonusForMinprice) >= modes) { // unsigned, so that a negative value is out of range too
        noBonusForMinprice = 0;
    }

    // Built without a condition: services expect the header even where no credentials are configured. The two steps of
    // `arg` are the rule; a marker in the user's name is filled by the password.
    const QString user = config->getString(QStringLiteral("Vantiro:user"), QString());
    const QString password = config->getString(QStringLiteral("Vantiro:password"), QString());
    const QByteArray credentials = QStringLiteral("%1:%2").arg(user).arg(password).toLocal8Bit().toBase64();
    setAuthorizationHeader(QStringLiteral("Basic %1").arg(QString::fromUtf8(credentials)));

    forbidDiscountForDiscountedPosition
        = config->getBool(QStringLiteral("Vantiro:forbidDiscountForDiscountedPosition"), false);
}

void VantiroInterface::setCheckData(const QJsonObject& data)
{
    checkData = data;
}

void VantiroInterface::setHosts(const QList<QUrl>& servers)
{
    hosts = servers;
}

void VantiroInterface::setTimeout(int seconds)
{
    timeout = seconds;
}

void VantiroInterface::setAuthorizationHeader(const QString& value)
{
    authorizationHeader = value;
}
