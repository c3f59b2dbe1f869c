#pragma once

#include "host/facilities/rest_client.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

/// A service that answers every operation the same way until it is told otherwise. While one of these lives, it is what
/// `MockFactory<RestClient>` gives out. A card holds 1000 points, of which 50 can be spent; every coupon is valid; no
/// discount is granted, no message told and no slip sent; points are taken from position 1. [cheque-thread]
class AnsweringService : public RestClient {
public:
    AnsweringService();
    ~AnsweringService() override;

    /// The result of the operation, as text.
    void answer(const QString& action, const QString& result);
    /// The operation is refused with this text.
    void refuse(const QString& action, const QString& text);
    /// The body of the reply, as it stands.
    void answerRaw(const QString& action, const QByteArray& body);
    /// Grants discounts: the inner document of `GetDiscounts`.
    void grant(const QString& discounts);

    /// Nobody answers.
    bool down = false;
    /// Runs within each post, before it is answered.
    std::function<void(const QString& action)> within;

    struct Asked {
        QString action;
        QString body;
    };
    QList<Asked> asked;
    /// The bodies of the requests of the operation.
    [[nodiscard]] QStringList bodies(const QString& action) const;

    void post(const QUrl& url, const QByteArray& body, const QHash<QString, QString>& headers) override;
    [[nodiscard]] int getHttpStatus() override;
    [[nodiscard]] tr::Tr getErrorText() override;
    [[nodiscard]] QByteArray getResponseBody() override;
    void setTimeout(int seconds) override;
    [[nodiscard]] bool isSuccess() override;
    [[nodiscard]] bool hasConnectionError() override;
    [[nodiscard]] bool hasHttpError() override;

private:
    struct Reply {
        int status = 200;
        QByteArray body;
    };

    QHash<QString, Reply> replies;
    Reply latest;
};

/// What stands between the tags or quotes behind the mark, at its first place: `valueBehind(body, "ChequeUID=\"")`.
[[nodiscard]] std::string valueBehind(const QString& text, const QString& mark);
