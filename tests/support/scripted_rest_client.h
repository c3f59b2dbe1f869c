#pragma once

#include "host/facilities/rest_client.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <map>
#include <mutex>
#include <thread>

/// How one `post` ends.
struct RestOutcome {
    int status = 0; // 0: no HTTP reply
    QByteArray body;
    QString error; // the Russian text of `getErrorText`

    /// No HTTP reply, for the reason that the text tells.
    [[nodiscard]] static RestOutcome connectionError(const QString& text);
    /// A reply. The error text of a status outside 200 to 299 is "состояние " and the status.
    [[nodiscard]] static RestOutcome http(int status, const QByteArray& body);
};

/// What one `post` was given.
struct RestPost {
    QUrl url;
    QByteArray body;
    QHash<QString, QString> headers;
};

/// Servers that answer by a script. While one of these lives, it is what `MockFactory<RestClient>` gives out, to all
/// callers alike; afterwards the factory makes real clients again. Two must not live at once.
///
/// A `post` to an address that cannot be asked gets no HTTP reply and uses up nothing of the script. Any other one ends
/// as `at` says for its URL, or else takes the next outcome of `next`. A `post` beyond the script fails the test and
/// gets no reply; so does an outcome that nobody has asked for when this object goes.
///
/// The queries tell each thread of its own last `post`, as the separate clients of separate threads would. Whether a
/// caller has taken a fresh client cannot be seen, only that it has set the timeout anew. The log that a caller sets
/// stays unseen as well: the contract keeps it inside the client. [any-thread]
class ScriptedRestClient : public RestClient {
public:
    ScriptedRestClient();
    ~ScriptedRestClient() override;

    /// Adds an outcome to the script.
    void next(const RestOutcome& outcome);
    /// Every `post` to the URL ends like this from now on.
    void at(const QString& url, const RestOutcome& outcome);
    /// Runs within each `post`, before its outcome is settled.
    void whilePosting(const std::function<void()>& action);

    /// In the order in which they were made.
    [[nodiscard]] QList<RestPost> posts() const;
    /// The URLs of the posts, in order.
    [[nodiscard]] QStringList asked() const;
    /// All that was asked of the client, in order: "timeout 5", "post http://server/".
    [[nodiscard]] QStringList calls() const;

    void post(const QUrl& url, const QByteArray& body, const QHash<QString, QString>& headers) override;
    [[nodiscard]] int getHttpStatus() override;
    [[nodiscard]] tr::Tr getErrorText() override;
    [[nodiscard]] QByteArray getResponseBody() override;
    void setTimeout(int seconds) override;
    [[nodiscard]] bool isSuccess() override;
    [[nodiscard]] bool hasConnectionError() override;
    [[nodiscard]] bool hasHttpError() override;

private:
    struct Last {
        bool posted = false;
        RestOutcome outcome;
    };

    [[nodiscard]] RestOutcome settle(const QUrl& url);
    [[nodiscard]] Last last() const;

    mutable std::mutex mutex; // guards all below
    QList<RestOutcome> script;
    QHash<QString, RestOutcome> byUrl;
    std::function<void()> action;
    QList<RestPost> made;
    QStringList log;
    std::map<std::thread::id, Last> lastOfThread;
};
