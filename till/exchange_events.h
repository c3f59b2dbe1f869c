#pragma once

#include "host/export.h"

#include <QByteArray>
#include <QString>

#include <functional>

namespace till {

/// One exchange of the till's HTTP client, as it went over the wire, without its headers: they hold credentials. A
/// plain value.
struct ExchangeEvent {
    QString address; // without credentials
    QString action; // the last part of SOAPAction, empty when there is none
    QByteArray request;
    int status = 0; // 0: no reply
    QByteArray reply;
    QString failure; // empty when all went well
    qint64 milliseconds = 0;
};

/// Calls the observer after every exchange, on the thread that made it, one at a time; an empty one ends it. It must
/// not throw, and must not exchange anything itself. [any-thread]
VANTIRO_HOST_API void observeExchanges(std::function<void(const ExchangeEvent&)> observer);

/// From now on the function answers in place of the network; an empty one gives the network back. It gets the address,
/// the action and the request, and fills in the rest; without a status nobody has answered. It must not throw.
/// [any-thread]
VANTIRO_HOST_API void answerExchanges(std::function<void(ExchangeEvent&)> answer);

/// Lets the function answer, if there is one, and tells so. For the HTTP client. [any-thread]
[[nodiscard]] bool answerExchange(ExchangeEvent& event);

/// Tells the observer, if there is one. For the HTTP client. [any-thread]
void tellExchange(const ExchangeEvent& event);

} // namespace till
