#include "tests/doctor/doctor_support.h"

#include "till/facilities/config_file.h"
#include "till/program/doctor_config.h"
#include "till/program/doctor_server.h"

#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace till::diagnosis;

namespace vantiro_test {

std::string linesOf(const Findings& findings)
{
    QString lines;
    for (const Finding& finding : findings) {
        lines += lineOf(finding) + u'\n';
    }
    return lines.toStdString();
}

ConfigFile::ConfigFile(const QByteArray& content)
{
    QFile file(path());
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_TRUE(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
    EXPECT_EQ(file.write(content), content.size());
    file.close();
    till::setConfigFile(path());
}

ConfigFile::~ConfigFile()
{
    till::setConfigFile(QString());
}

QString ConfigFile::path() const
{
    return folder.filePath(QStringLiteral("till.ini"));
}

std::string ConfigFile::fileLines() const
{
    QString lines = QString::fromStdString(linesOf(checkConfigFile(path(), true)));
    return lines.replace(path(), QStringLiteral("PATH")).toStdString();
}

ServiceSettings settingsOf(const QUrl& url)
{
    ServiceSettings settings;
    settings.servers.append(Server { 1, url.toString(), url });
    settings.timeout = std::chrono::seconds(1);
    return settings;
}

std::string serverLines(const ServiceSettings& settings)
{
    const Server& server = settings.servers.constFirst();
    Findings findings;
    checkServer(server, settings, [&](const Finding& finding) { findings.append(finding); });
    QString lines = QString::fromStdString(linesOf(findings));
    lines.replace(u'(' + server.url.toString() + u')', QStringLiteral("(URL)"));
    return withoutTimes(lines);
}

QByteArray soapMessage(const QByteArray& content)
{
    return "<s:Envelope xmlns:s=\"http://schemas.xmlsoap.org/soap/envelope/\"><s:Body>" + content
        + "</s:Body></s:Envelope>";
}

Answer healthyAnswer(const HttpRequest& request)
{
    return request.header("SOAPAction").endsWith("/Ping")
        ? Answer::reply(200, soapMessage("<PingResponse/>"))
        : Answer::reply(200, soapMessage("<IsCardValidResult>false</IsCardValidResult>"));
}

std::string withoutTimes(const QString& text)
{
    QString result = text;
    return result.replace(QRegularExpression(QStringLiteral("in \\d+ ms")), QStringLiteral("in N ms")).toStdString();
}

}
