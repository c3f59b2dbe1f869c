#include "host/facilities/config.h"
#include "host/facilities/rest_client.h"
#include "host/framework/basic_loyalty_system.h"
#include "host/framework/task.h"
#include "till/framework/action_dispatcher.h"
#include "till/framework/loyalty_registry.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPluginLoader>
#include <QTextStream>

#include <cstring>

#include <dlfcn.h>

// A host in a process of its own: loads the plug-in as a till does, and prints as JSON what it finds. The test judges.

namespace {

/// Records what it is asked, and answers with the defaults but for the servers.
class RecordingConfig : public Config {
public:
    QString getString(const QString& key, const QString& defaultValue) override
    {
        keys.append(key);
        return key == u"Vantiro:hosts" ? QStringLiteral("http://first/,http://second/") : defaultValue;
    }

    int getInt(const QString& key, int defaultValue) override
    {
        keys.append(key);
        return defaultValue;
    }

    bool getBool(const QString& key, bool defaultValue) override
    {
        keys.append(key);
        return defaultValue;
    }

    QJsonArray keys;
};

/// Records where it is sent. The first server is down.
class RecordingRestClient : public RestClient {
public:
    void post(const QUrl& url, const QByteArray& /*body*/, const QHash<QString, QString>& /*headers*/) override
    {
        urls.append(url.toString());
    }

    bool isSuccess() override
    {
        return urls.size() == 2;
    }

    QJsonArray urls;
};

[[nodiscard]] QString distance(const void* part, const void* whole)
{
    if (part == nullptr) {
        return QStringLiteral("null");
    }
    return part == whole ? QStringLiteral("same") : QStringLiteral("other");
}

/// What `qt_metacast` answers for a name, told by where the answer lies.
[[nodiscard]] QJsonObject metacasts(QObject* instance)
{
    auto* const system = dynamic_cast<BasicLoyaltySystem*>(instance);
    const auto told = [&](const char* name) -> QString {
        const void* const answer = instance->qt_metacast(name);
        if (answer == nullptr) {
            return QStringLiteral("null");
        }
        if (answer == static_cast<const void*>(instance)) {
            return QStringLiteral("object");
        }
        if (answer == static_cast<const void*>(system)) {
            return QStringLiteral("BasicLoyaltySystem");
        }
        return answer == static_cast<const void*>(static_cast<BasicPlugin*>(system)) ? QStringLiteral("BasicPlugin")
                                                                                     : QStringLiteral("elsewhere");
    };
    QJsonObject casts { { QStringLiteral("(null pointer)"), told(nullptr) } };
    for (const char* name : { "Vantiro", "BasicLoyaltySystem", "LoyaltySystem", "norvik.AbstractPlugin",
                              "BaseActivityListener", "QObject", "vantiro", "BasicPlugin" }) {
        casts.insert(QString::fromLatin1(name), told(name));
    }
    return casts;
}

/// Asks for the connection check as a till does, and runs the task that the plug-in gives.
[[nodiscard]] QString checkConnection(const QString& pluginName)
{
    const control::Action action = control::Action().appendArgument(pluginName, QStringLiteral("pluginName"));
    (void)Singleton<till::ActionDispatcher>::get()->carryOut(EContext::any, control::checkConnection, action,
                                                             [](const control::Action&) { return true; });
    const auto task = action.value(QStringLiteral("pingTask"), QVariant()).value<QSharedPointer<BasicTask>>();
    return task ? task->run()->toString() : QStringLiteral("no task");
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QString file = application.arguments().value(1);

    auto* const config = new RecordingConfig; // the singleton lives as long as the process
    Singleton<Config>::instance = config;
    RecordingRestClient client;
    MockFactory<RestClient>::mocked = &client;

    QPluginLoader loader(file);
    QObject* const instance = loader.instance();
    if (instance == nullptr) {
        QTextStream(stderr) << loader.errorString() << Qt::endl;
        return 1;
    }

    QJsonObject facts;
    facts.insert(QStringLiteral("metaData"), loader.metaData());
    facts.insert(QStringLiteral("className"), QString::fromLatin1(instance->metaObject()->className()));
    facts.insert(QStringLiteral("casts"), metacasts(instance));
    facts.insert(QStringLiteral("parent"), distance(instance->parent(), instance));

    auto* const plugin = qobject_cast<BasicPlugin*>(instance);
    auto* const system = qobject_cast<BasicLoyaltySystem*>(instance);
    facts.insert(QStringLiteral("keysBeforeInit"), config->keys);
    facts.insert(QStringLiteral("init"), plugin->init());
    facts.insert(QStringLiteral("keys"), config->keys);
    facts.insert(QStringLiteral("registered"), Singleton<till::LoyaltyRegistry>::get()->systemOf(7) == system);
    facts.insert(QStringLiteral("check"), checkConnection(QStringLiteral("VANTIRO")));
    facts.insert(QStringLiteral("checkOfAnother"), checkConnection(QStringLiteral("another")));
    facts.insert(QStringLiteral("urls"), client.urls);

    using Entry = QObject* (*)();
    const auto entry = reinterpret_cast<Entry>(
        dlsym(dlopen(file.toLocal8Bit().constData(), RTLD_NOW | RTLD_NOLOAD), "qt_plugin_instance"));
    facts.insert(QStringLiteral("secondCall"), distance(entry(), instance));
    delete instance;
    QObject* const renewed = entry();
    facts.insert(QStringLiteral("afterDestruction"),
                 renewed != nullptr && qobject_cast<BasicLoyaltySystem*>(renewed) != nullptr);
    facts.insert(QStringLiteral("afterDestructionTwice"), distance(entry(), renewed));
    delete renewed;

    MockFactory<RestClient>::mocked = nullptr;
    QTextStream(stdout) << QString::fromUtf8(QJsonDocument(facts).toJson()) << Qt::flush;
    return 0;
}
