#pragma once

#include "host/facilities/rest_client.h"

#include <string>

namespace vantiro_test {

using Headers = QHash<QString, QString>;

/// How the last `post` ended, by all that the client tells of it: "success 200", "HTTP error 404", "no reply 0", or
/// "nothing 0" before the first one. Answers that contradict one another give a text that no test expects.
[[nodiscard]] inline std::string ending(RestClient& client)
{
    std::string text;
    text += client.isSuccess() ? "success " : "";
    text += client.hasHttpError() ? "HTTP error " : "";
    text += client.hasConnectionError() ? "no reply " : "";
    return (text.empty() ? "nothing " : text) + std::to_string(client.getHttpStatus());
}

/// Posts a short body with a new client and tells the ending.
[[nodiscard]] inline std::string endingOfPost(const QUrl& url, const Headers& headers = {})
{
    RestClient client;
    client.post(url, "body", headers);
    return ending(client);
}

[[nodiscard]] inline std::string errorText(RestClient& client)
{
    return client.getErrorText().ru().toStdString();
}

}
