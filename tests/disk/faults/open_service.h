#pragma once

#include "host/facilities/rest_client.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <functional>

/// A service that answers every operation the same way, in this process. While one of these lives, it is what
/// `MockFactory<RestClient>` gives out. The card holds 1000 points, of which 50 can be spent; every coupon is valid;
/// the cheque gets a discount of 9.80. [cheque-thread]
class OpenService : public RestClient {
public:
    OpenService();
    ~OpenService() override;

    /// Nobody answers.
    bool down = false;
    /// Hears of each request that is answered.
    std::function<void(const QString& operation, const QByteArray& body)> heard;

    void post(const QUrl& url, const QByteArray& body, const QHash<QString, QString>& headers) override;
    [[nodiscard]] int getHttpStatus() override;
    [[nodiscard]] tr::Tr getErrorText() override;
    [[nodiscard]] QByteArray getResponseBody() override;
    void setTimeout(int seconds) override;
    [[nodiscard]] bool isSuccess() override;
    [[nodiscard]] bool hasConnectionError() override;
    [[nodiscard]] bool hasHttpError() override;

private:
    QHash<QString, QString> results;
    QByteArray reply; // empty: nobody answered
};
