#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <ctime>

/// While it lives, the till stands in a time zone, given as POSIX has it.
class TillTime {
public:
    explicit TillTime(const char* zone)
        : former(qEnvironmentVariableIsSet("TZ") ? qgetenv("TZ") : QByteArray())
    {
        set(zone);
    }

    ~TillTime()
    {
        set(former);
    }

private:
    Q_DISABLE_COPY_MOVE(TillTime)

    static void set(const QByteArray& zone)
    {
        if (zone.isNull()) {
            qunsetenv("TZ");
        } else {
            qputenv("TZ", zone);
        }
        tzset();
    }

    QByteArray former;
};
