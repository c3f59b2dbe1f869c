#pragma once

#include "host/export.h"
#include "host/facilities/logger.h"
#include "host/facilities/mock_factory.h"
#include "host/facilities/tr.h"

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QString>
#include <QUrl>

#include <memory>

/// One caller's HTTP client, made through `MockFactory<RestClient>`. An object is used by one thread; different
/// objects may be used by different threads at once. The queries tell of the last `post`; before the first one they
/// tell of none: status 0, no body, neither success nor failure.
///
/// A `post` ends in exactly one of three ways, and the plug-in's decisions rest on this alone:
///  - no HTTP reply (`hasConnectionError`): refused, unreachable, timed out, broken off before its end, or an URL that
///    cannot be asked at all, the empty one among them;
///  - a reply with a status from 200 to 299 (`isSuccess`);
///  - a reply with any other status (`hasHttpError`).
class VANTIRO_HOST_API RestClient : public QObject {
    Q_OBJECT

public:
    RestClient();
    ~RestClient() override;

    /// Sends an HTTP POST to the URL as it stands, with exactly these headers and what HTTP itself requires, and
    /// returns when the reply is complete or the timeout has run out. It never throws, never follows a redirect, and
    /// never sends a request twice: a request may have been executed although its reply was lost. It must not run an
    /// event loop, or the till would call the plug-in while it waits here. [blocks: the timeout at the longest]
    virtual void post(const QUrl& url, const QByteArray& body, const QHash<QString, QString>& headers);

    /// The HTTP status of the last reply, 0 when there was none.
    [[nodiscard]] virtual int getHttpStatus();

    /// Why the last `post` failed, in Russian, for the log. Holds no credentials.
    [[nodiscard]] virtual tr::Tr getErrorText();

    /// The body of the last reply as it came, also of an error reply; empty when there was none. A reply larger than
    /// the host takes is no connection error (the request was executed): its body is empty.
    [[nodiscard]] virtual QByteArray getResponseBody();

    /// The longest time that each later `post` may take in all, in seconds. A value below 1 means the host's own
    /// default, never "for ever".
    virtual void setTimeout(int seconds);

    [[nodiscard]] virtual bool isSuccess();
    [[nodiscard]] virtual bool hasConnectionError();
    [[nodiscard]] virtual bool hasHttpError();

    /// Names the log of this object's own traffic; the default is the host's. Not owned, must outlive the object.
    void setLogger(const Log4Qt::Logger* logger);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

extern template class VANTIRO_HOST_API MockFactory<RestClient>;
