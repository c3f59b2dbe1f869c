#pragma once

#include "till/facilities/http_failure.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QUrl>

#include <curl/curl.h>

#include <memory>

namespace till {

struct FreeHeaderLines {
    void operator()(curl_slist* lines) const;
};
using HeaderLines = std::unique_ptr<curl_slist, FreeHeaderLines>;

/// Why the request cannot be sent as it stands: its address is not a complete one of http or https, or a header would
/// not reach the server as that one header. `none` when it can. [any-thread]
[[nodiscard]] HttpFailure unusablePart(const QUrl& url, const QHash<QString, QString>& headers);

/// The address as libcurl takes it. The user information and the fragment are not for the server and are left out.
/// [any-thread]
[[nodiscard]] QByteArray requestAddress(const QUrl& url);

/// The address as people may see it: without user information, query and fragment. Empty when the URL names no host,
/// since nobody knows then which part of it is a password. [any-thread]
[[nodiscard]] QString shownAddress(const QUrl& url);

/// The headers as libcurl takes them, in the order of their names, with the ones put off that libcurl would add of its
/// own accord. The headers must have passed `unusablePart`. Throws `std::bad_alloc`. [any-thread]
[[nodiscard]] HeaderLines headerLines(const QHash<QString, QString>& headers);

}
