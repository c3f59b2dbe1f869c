#pragma once

#include "host/export.h"
#include "host/facilities/rest_client.h"

#include <QString>

namespace till {

/// What became of a message that was posted. A plain value.
struct Verdict {
    enum class Kind {
        delivered, // the service has answered it
        refused, // the service has answered that it will not have it, or the message can never be understood
        unanswered, // no server was reached, or none that speaks for the service: the next message would fare alike
        misanswered, // something replied, but not as the service does: the message may have been executed
    };

    Kind kind = Kind::unanswered;
    QString reason; // one line without credentials, of some hundred characters at the longest; empty when delivered
};

/// The verdict on the last `post` of the client. A status alone delivers nothing: the reply must be an envelope with
/// the response to the operation. Does not throw. [any-thread]
[[nodiscard]] VANTIRO_HOST_API Verdict verdictOn(RestClient& client, const QString& operation);

} // namespace till
