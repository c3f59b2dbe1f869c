#include "host/framework/basic_plugin.h"

#include <QCoreApplication>
#include <QPluginLoader>

#include <chrono>
#include <cstdio>

// A host in a process of its own, with the till loaded and the plug-in not: tells in nanoseconds how long it takes
// until the plug-in is ready. A library that is no plug-in of a till is only loaded.

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    if (argc != 2) {
        return 2;
    }
    const QString file = QString::fromLocal8Bit(argv[1]);

    const auto start = std::chrono::steady_clock::now();
    QPluginLoader loader(file);
    QObject* const instance = loader.instance();
    BasicPlugin* const plugin = qobject_cast<BasicPlugin*>(instance);
    const bool ready = plugin == nullptr || plugin->init();
    const auto end = std::chrono::steady_clock::now();

    if (instance == nullptr || !ready) {
        std::fprintf(stderr, "%s\n", qPrintable(loader.errorString()));
        return 1;
    }
    std::printf("%s %lld\n", plugin == nullptr ? "loaded" : "initialized",
                static_cast<long long>(std::chrono::nanoseconds(end - start).count()));
    if (plugin != nullptr) {
        plugin->deinit();
    }
    return 0;
}
