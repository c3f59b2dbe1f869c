#include "host/facilities/log_manager.h"
#include "till/program/commands.h"

#include <CLI/CLI.hpp>

#include <QGuiApplication>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <sys/resource.h>

// The command line: what can be asked for, and which function does it. What goes wrong is told in one line on standard
// error, and by the exit status: 1 when the command has failed, 2 when it was not understood.

namespace {

[[nodiscard]] QString text(const std::string& argument)
{
    return QString::fromStdString(argument);
}

/// The options that most commands share.
struct Common {
    std::string config;
    std::string data;
    std::string plugin;
    std::string logLevel = "info";

    void addTo(CLI::App& command, bool withPlugin, bool withLog = true)
    {
        command.add_option("--data", data,
                           "Folder of the till's database and log [the user's data folder/vantiro-till]");
        command.add_option("--config", config, "Configuration file [vantiro-till.ini in the data folder]");
        if (withLog) {
            command.add_option("--log-level", logLevel, "trace, debug, info, warn or error [info]");
        }
        if (withPlugin) {
            command.add_option("--plugin", plugin, "The plug-in libvantiro.so [beside the program, or as installed]");
        }
    }

    [[nodiscard]] till::Places places() const
    {
        return { text(config), text(data), text(plugin), text(logLevel) };
    }
};

/// "NAME=SERVICE,CONTROL", as the sandbox tells its addresses.
[[nodiscard]] QList<till::ControlledServer> serversOf(const std::vector<std::string>& arguments)
{
    QList<till::ControlledServer> servers;
    for (const std::string& argument : arguments) {
        const QString name = text(argument).section(u'=', 0, 0);
        const QString addresses = text(argument).section(u'=', 1);
        const till::ControlledServer server { name, QUrl(addresses.section(u',', 0, 0)),
                                              QUrl(addresses.section(u',', 1)) };
        if (name.isEmpty() || !server.service.isValid() || server.service.isEmpty() || server.control.isEmpty()) {
            throw till::CommandError(
                QStringLiteral("--sandbox wants NAME=SERVICE,CONTROL, not \"%1\"").arg(text(argument)));
        }
        servers.append(server);
    }
    return servers;
}

/// What Qt has to say goes to the log: standard error is for the one sentence that matters.
void logQtMessage(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message)
{
    Log4Qt::Logger* const logger = Log4Qt::LogManager::logger(QStringLiteral("qt"), QString());
    if (type == QtFatalMsg || type == QtCriticalMsg) {
        logger->error(message);
    } else {
        logger->debug(message);
    }
}

/// A core would hold the credentials that the till has in its memory.
void leaveNoCore()
{
    const rlimit none {};
    ::setrlimit(RLIMIT_CORE, &none);
}

/// The name of the innermost command that was given.
[[nodiscard]] std::string commandOf(const CLI::App& app)
{
    const std::vector<CLI::App*> given = app.get_subcommands();
    return given.empty() ? app.get_name() : app.get_name() + ' ' + commandOf(*given.front());
}

/// Tells a mistake in the command line; the exit status.
[[nodiscard]] int refuse(const CLI::App& app, const CLI::ParseError& mistake)
{
    std::fprintf(stderr, "vantiro-till: %s; see %s --help\n", mistake.what(), commandOf(app).c_str());
    return 2;
}

/// Qt's application for the commands that need one; `play` and `demo` fork, and make theirs afterwards.
void withApplication(int argc, char** argv, const std::function<void()>& command)
{
    QGuiApplication application(argc, argv);
    command();
}

} // namespace

int main(int argc, char** argv)
{
    leaveNoCore();
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0); // pictures of slips need no screen

    CLI::App app("The reference till of the Vantiro loyalty plug-in.", "vantiro-till");
    app.require_subcommand(1);
    app.failure_message(CLI::FailureMessage::simple);
    app.set_version_flag("--version", VANTIRO_VERSION);
    int status = 0;
    qInstallMessageHandler(logQtMessage);

    Common common;
    std::vector<std::string> sandboxes;
    till::PlayOptions playing;
    std::string script;
    const auto preparePlaying = [&] {
        playing.places = common.places();
        playing.servers = serversOf(sandboxes);
        playing.script = text(script);
    };
    const char* const sandboxHelp = "A sandbox service that scripts may control: NAME=SERVICE,CONTROL; repeatable";

    CLI::App& play = *app.add_subcommand("play", "Play a script of the till, against any service");
    play.add_option("FILE", script, "The script, or - for standard input")->required();
    play.add_option("--sandbox", sandboxes, sandboxHelp);
    play.add_flag("--wire", playing.showWire, "Show each request and reply");
    std::string trace;
    play.add_option("--trace", trace, "A new file that tells all that is done, for replay; credentials are masked");
    common.addTo(play, true);
    play.callback([&] {
        preparePlaying();
        playing.trace = text(trace);
        status = till::play(playing);
    });

    CLI::App& replay = *app.add_subcommand(
        "replay", "Do again what a trace tells, without a network; status 1 when anything comes out otherwise");
    std::string recorded;
    replay.add_option("FILE", recorded, "The trace that play --trace has written")->required();
    replay.add_option("--plugin", common.plugin, "The plug-in libvantiro.so [beside the program, or as installed]");
    replay.callback([&] { status = till::replay(text(recorded), text(common.plugin)); });

    CLI::App& shell = *app.add_subcommand("shell", "Work the till by hand, with history and completion");
    shell.add_option("--sandbox", sandboxes, sandboxHelp);
    shell.add_flag("--wire", playing.showWire, "Show each request and reply");
    common.addTo(shell, true);
    shell.callback([&] {
        withApplication(argc, argv, [&] {
            preparePlaying();
            status = till::shell(playing);
        });
    });

    CLI::App& doctor
        = *app.add_subcommand("doctor", "Check configuration, plug-in and servers; status 1 when one fails");
    common.addTo(doctor, true, false); // it writes no log: that is a running till's
    doctor.callback([&] { withApplication(argc, argv, [&] { status = till::doctor(common.places()); }); });

    CLI::App& reconcile = *app.add_subcommand(
        "reconcile",
        "Hold the till's documents and queue against the books of sandbox services; status 1 when they differ");
    reconcile.add_option("--sandbox", sandboxes, sandboxHelp)->required();
    common.addTo(reconcile, false);
    reconcile.callback([&] {
        withApplication(argc, argv, [&] { status = till::reconcileBooks(common.places(), serversOf(sandboxes)); });
    });

    CLI::App& queue = *app.add_subcommand("queue", "Look after the messages that wait for delivery");
    till::QueueOptions queueing;
    qint64 id = 0;
    std::string exportFile;
    queue.require_subcommand(1);
    const auto addQueueAction = [&](const char* name, const char* help, bool needsId, bool takesId) {
        CLI::App& action = *queue.add_subcommand(name, help);
        CLI::Option* number
            = takesId ? action.add_option("ID", id, "The number of the record, as list shows it") : nullptr;
        if (needsId) {
            number->required();
        }
        common.addTo(action, false);
        action.callback([&, name, number] {
            withApplication(argc, argv, [&] {
                queueing.places = common.places();
                queueing.action = QString::fromLatin1(name);
                queueing.file = text(exportFile);
                if (number != nullptr && !number->empty()) {
                    queueing.id = id;
                }
                status = till::queue(queueing);
            });
        });
        return &action;
    };
    addQueueAction("list", "List all records: number, time, state, attempts, reason", false, false);
    addQueueAction("show", "Show one record, without its credentials", true, true);
    addQueueAction("send", "Deliver now: all that is pending, in order, or one record", false, true);
    addQueueAction("hold", "Keep a record back until it is released", true, true);
    addQueueAction("release", "Let a held, refused or damaged record be delivered again", true, true);
    addQueueAction("export", "Write all records as JSON, without credentials", false, false)
        ->add_option("--output", exportFile, "A new file [standard output]");

    CLI::App& slip = *app.add_subcommand("slip", "Render a print form, and say what is wrong with it");
    till::SlipOptions slipping;
    std::string slipFile;
    std::string slipFormat = "text";
    std::string slipOutput;
    slip.add_option("FILE", slipFile, "The print form or plain text, or - for standard input")->required();
    slip.add_option("--format", slipFormat, "text, png or escpos [text]")
        ->check(CLI::IsMember({ "text", "png", "escpos" }));
    slip.add_option("--columns", slipping.columns, "Columns of the paper: 32 (58 mm), 42 or 48 (80 mm) [42]")
        ->check(CLI::IsMember({ 32, 42, 48 }));
    slip.add_option("--output", slipOutput, "A new file [standard output]");
    slip.callback([&] {
        withApplication(argc, argv, [&] {
            slipping.file = text(slipFile);
            slipping.format = text(slipFormat);
            slipping.output = text(slipOutput);
            status = till::slip(slipping);
        });
    });

    CLI::App& demo = *app.add_subcommand("demo", "Play the whole story against two sandbox services of its own");
    till::DemoOptions showing;
    std::vector<std::string> chapters;
    std::string sandbox;
    std::string examples;
    std::string output;
    demo.add_option("CHAPTER", chapters, "Chapters by name, as the files in examples/ [all, in order]");
    demo.add_flag("--wire", showing.showWire, "Show each request and reply");
    demo.add_option("--output", output, "A new folder for slips, logs and databases [vantiro-demo-…]");
    demo.add_option("--sandbox-program", sandbox, "The program vantiro-sandbox [beside this one]");
    demo.add_option("--examples", examples, "The folder of rules and chapters [as built or installed]");
    demo.add_option("--plugin", common.plugin, "The plug-in libvantiro.so [beside the program, or as installed]");
    demo.callback([&] {
        showing.sandbox = text(sandbox);
        showing.examples = text(examples);
        showing.output = text(output);
        showing.plugin = text(common.plugin);
        for (const std::string& chapter : chapters) {
            showing.chapters.append(text(chapter));
        }
        status = till::demo(showing);
    });

    const auto isNamed = [&](const CLI::App* command) { return command->get_name() == argv[1]; };
    if (argc > 1 && argv[1][0] != '-' && std::as_const(app).get_subcommands(isNamed).empty()) {
        std::fprintf(stderr, "vantiro-till: there is no command \"%s\"; vantiro-till --help lists them\n", argv[1]);
        return 2;
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return error.get_exit_code() == 0 ? app.exit(error) : refuse(app, error);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vantiro-till: %s\n", error.what());
        return 1;
    }
    return status;
}
