#include "sandbox/command_line.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace sandbox {

namespace {

[[nodiscard]] std::string footer()
{
    std::string text = "\nFaults on demand: KIND[:OPERATION][:TIMES][:ARG], each part but the first may be empty.\n"
                       "OPERATION is one of the service, such as Accrual, or * for every one; TIMES without a number\n"
                       "is always. Example: --fault drop:SubtractBonus45:1 --fault delay:::500\n\n";
    for (const FaultForm& form : faultForms()) {
        text += "  " + std::string(form.name) + std::string(12 - form.name.size(), ' ') + std::string(form.help);
        text += form.argument.empty() ? "\n" : " (" + std::string(form.argument) + ")\n";
    }
    return text
        + "\nThe control address, on 127.0.0.1, speaks JSON:\n\n"
          "  GET /health                    name, address, whether it is open\n"
          "  GET /requests?since=ID         every request that came; also operation, uid, outcome, server, limit\n"
          "  GET /books                     cheques, entries of points, cards and totals\n"
          "  GET, POST, DELETE /faults      {\"kind\": \"drop\", \"operation\": \"Accrual\", \"times\": 1}; "
          "/faults/ID\n"
          "  POST /stop, POST /start        close and open the service address\n"
          "  POST /shutdown                 end the program\n\n"
          "Several sandboxes may share one state file; they are front ends of one service then.\n"
          "Exit status: 0 after SIGTERM, SIGINT or /shutdown; 1 when the state or a port cannot be used; 2 for\n"
          "mistakes in the command line or the rule file.\n";
}

[[nodiscard]] std::string oneLine(std::string text)
{
    std::ranges::replace(text, '\n', ' ');
    return text;
}

}

CommandLine parseCommandLine(int argc, const char* const* argv)
{
    CommandLine line;
    Options& options = line.options;
    std::vector<std::string> faults;
    CLI::App app(
        "A sandbox of the loyalty service: every operation over SOAP, rules in a file, state in SQLite, faults on "
        "demand.\nPrints one line with its two addresses when it is ready.",
        "vantiro-sandbox");
    app.set_version_flag("--version", VANTIRO_VERSION);
    app.add_option("--rules", options.rules, "The rule file; examples/rules.yaml is a commented one")
        ->required()
        ->type_name("FILE");
    app.add_option("--state", options.state, "The database with cards, cheques and requests; in memory without it")
        ->type_name("FILE");
    app.add_option("--name", options.name, "Its name in the state, the log and the line with the addresses")
        ->type_name("NAME")
        ->capture_default_str();
    app.add_option("--bind", options.address, "The address of this machine that the service listens on")
        ->type_name("ADDRESS")
        ->capture_default_str();
    app.add_option("--port", options.port, "The port of the service; 0 takes a free one")
        ->type_name("N")
        ->check(CLI::Range(0, 65535))
        ->capture_default_str();
    app.add_option("--control", options.controlPort, "The port of the control address; 0 takes a free one")
        ->type_name("N")
        ->check(CLI::Range(0, 65535))
        ->capture_default_str();
    app.add_option("--fault", faults, "A fault on demand, see below; may be given again and again")
        ->type_name("FAULT")
        ->expected(1)
        ->take_all();
    app.add_option("--namespace", options.soapNamespace, "The target namespace of the service; ends in a slash")
        ->type_name("URI")
        ->capture_default_str();
    app.add_flag("--quiet", line.isQuiet, "No line per request on the error output");
    app.footer(footer());
    try {
        app.parse(argc, argv);
        for (const std::string& fault : faults) {
            options.faults.push_back(parseFault(fault));
        }
    } catch (const CLI::CallForHelp&) {
        line.text = app.help();
        return line;
    } catch (const CLI::CallForVersion&) {
        line.text = app.version() + '\n';
        return line;
    } catch (const CLI::ParseError& mistake) {
        throw CommandLineMistake(oneLine(mistake.what()) + "; see vantiro-sandbox --help");
    } catch (const FaultMistake& mistake) {
        throw CommandLineMistake(std::string(mistake.what()) + "; see vantiro-sandbox --help");
    }
    if (!options.soapNamespace.ends_with('/')) {
        throw CommandLineMistake("--namespace must end in a slash, but is \"" + options.soapNamespace + '"');
    }
    return line;
}

}
