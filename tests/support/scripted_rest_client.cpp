#include "tests/support/scripted_rest_client.h"

#include <gtest/gtest.h>

RestOutcome RestOutcome::connectionError(const QString& text)
{
    return { 0, QByteArray(), text };
}

RestOutcome RestOutcome::http(int status, const QByteArray& body)
{
    const bool success = status >= 200 && status <= 299;
    return { status, body, success ? QString() : QStringLiteral("состояние %1").arg(status) };
}

ScriptedRestClient::ScriptedRestClient()
{
    EXPECT_EQ(MockFactory<RestClient>::mocked, nullptr) << "two substitutes at once";
    MockFactory<RestClient>::mocked = this;
}

ScriptedRestClient::~ScriptedRestClient()
{
    MockFactory<RestClient>::mocked = nullptr;
    EXPECT_TRUE(script.isEmpty()) << script.size() << " outcomes of the script were never asked for";
}

void ScriptedRestClient::next(const RestOutcome& outcome)
{
    const std::lock_guard lock(mutex);
    script.append(outcome);
}

void ScriptedRestClient::at(const QString& url, const RestOutcome& outcome)
{
    const std::lock_guard lock(mutex);
    byUrl.insert(url, outcome);
}

void ScriptedRestClient::whilePosting(const std::function<void()>& newAction)
{
    const std::lock_guard lock(mutex);
    action = newAction;
}

QList<RestPost> ScriptedRestClient::posts() const
{
    const std::lock_guard lock(mutex);
    return made;
}

QStringList ScriptedRestClient::asked() const
{
    const std::lock_guard lock(mutex);
    QStringList urls;
    for (const RestPost& post : made) {
        urls.append(post.url.toString());
    }
    return urls;
}

QStringList ScriptedRestClient::calls() const
{
    const std::lock_guard lock(mutex);
    return log;
}

void ScriptedRestClient::post(const QUrl& url, const QByteArray& body, const QHash<QString, QString>& headers)
{
    std::function<void()> currentAction;
    {
        const std::lock_guard lock(mutex);
        made.append({ url, body, headers });
        log.append(QStringLiteral("post ") + url.toString());
        currentAction = action;
    }
    if (currentAction) {
        currentAction();
    }
    const std::lock_guard lock(mutex);
    lastOfThread[std::this_thread::get_id()] = { true, settle(url) };
}

RestOutcome ScriptedRestClient::settle(const QUrl& url)
{
    if (url.isEmpty() || !url.isValid()) {
        return RestOutcome::connectionError(QStringLiteral("негодный адрес"));
    }
    if (const auto found = byUrl.constFind(url.toString()); found != byUrl.constEnd()) {
        return *found;
    }
    if (script.isEmpty()) {
        ADD_FAILURE() << "a post beyond the script, to " << url.toString().toStdString();
        return RestOutcome::connectionError(QStringLiteral("сценарий исчерпан"));
    }
    return script.takeFirst();
}

ScriptedRestClient::Last ScriptedRestClient::last() const
{
    const std::lock_guard lock(mutex);
    const auto found = lastOfThread.find(std::this_thread::get_id());
    return found == lastOfThread.end() ? Last() : found->second;
}

int ScriptedRestClient::getHttpStatus()
{
    return last().outcome.status;
}

tr::Tr ScriptedRestClient::getErrorText()
{
    return tr::Tr(last().outcome.error);
}

QByteArray ScriptedRestClient::getResponseBody()
{
    return last().outcome.body;
}

void ScriptedRestClient::setTimeout(int seconds)
{
    const std::lock_guard lock(mutex);
    log.append(QStringLiteral("timeout %1").arg(seconds));
}

bool ScriptedRestClient::isSuccess()
{
    const int status = last().outcome.status;
    return status >= 200 && status <= 299;
}

bool ScriptedRestClient::hasConnectionError()
{
    const Last state = last();
    return state.posted && state.outcome.status == 0;
}

bool ScriptedRestClient::hasHttpError()
{
    return last().outcome.status != 0 && !isSuccess();
}
