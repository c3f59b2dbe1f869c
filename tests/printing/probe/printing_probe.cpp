#include "host/framework/text_printer.h"
#include "till/facilities/log_setup.h"
#include "till/printing/slip_folder.h"
#include "till/program/commands.h"

#include <QFile>
#include <QGuiApplication>

#include <cstdio>
#include <memory>

namespace {

[[nodiscard]] int runSlip(const QStringList& arguments)
{
    try {
        return till::slip({ .file = arguments.value(0),
                            .format = arguments.value(1),
                            .output = arguments.value(3),
                            .columns = arguments.value(2).toInt() });
    } catch (const till::CommandError& error) {
        std::fprintf(stderr, "error: %s\n", error.what());
        return 3;
    }
}

[[nodiscard]] int print(const QStringList& arguments)
{
    till::setSlipFolder(arguments.value(0));
    for (const QString& name : arguments.sliced(1)) {
        QFile file(name);
        if (!file.open(QIODevice::ReadOnly)) {
            return 2;
        }
        TextPrinter().printText(QString::fromUtf8(file.readAll()), -1);
    }
    return 0;
}

[[nodiscard]] int run(QStringList arguments)
{
    const QString action = arguments.takeFirst();
    if (action == u"slip") {
        return runSlip(arguments);
    }
    return action == u"print" ? print(arguments) : 2;
}

} // namespace

/// A till that prints: `printing_probe gui|core slip FILE FORMAT COLUMNS [OUTPUT]` or `printing_probe gui|core print
/// FOLDER FILE...`, with or without the application that pictures need. What the command refuses ends it with status 3.
int main(int argc, char** argv)
{
    const bool withGui = argc > 1 && QString::fromLocal8Bit(argv[1]) == u"gui";
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    const std::unique_ptr<QCoreApplication> application
        = withGui ? std::make_unique<QGuiApplication>(argc, argv) : std::make_unique<QCoreApplication>(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    return arguments.size() > 3 ? run(arguments.sliced(2)) : 2;
}
