#pragma once

#include "tests/support/loopback_server.h"
#include "till/program/doctor_finding.h"
#include "till/program/doctor_settings.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>
#include <QUrl>

#include <string>

namespace vantiro_test {

/// The findings as they are printed, each with its line end.
[[nodiscard]] std::string linesOf(const till::diagnosis::Findings& findings);

/// A folder with a configuration of this content, from which `Config` answers as long as this lives.
class ConfigFile {
public:
    explicit ConfigFile(const QByteArray& content);
    ~ConfigFile();
    Q_DISABLE_COPY_MOVE(ConfigFile)

    [[nodiscard]] QString path() const;
    /// What the file itself leads to, with PATH in place of its path.
    [[nodiscard]] std::string fileLines() const;

private:
    QTemporaryDir folder;
};

/// One server, asked with a timeout of a second.
[[nodiscard]] till::diagnosis::ServiceSettings settingsOf(const QUrl& url);

/// What asking the first server leads to, with URL in place of its address and N in place of milliseconds.
[[nodiscard]] std::string serverLines(const till::diagnosis::ServiceSettings& settings);

/// A whole SOAP message with this in its body.
[[nodiscard]] QByteArray soapMessage(const QByteArray& content);
/// A message that answers the request of a healthy service.
[[nodiscard]] Answer healthyAnswer(const HttpRequest& request);

/// The text with N in place of every "in 12 ms".
[[nodiscard]] std::string withoutTimes(const QString& text);

}
