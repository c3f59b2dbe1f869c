#include "sandbox/fault_plan.h"

#include "sandbox/operation.h"

#include <algorithm>
#include <charconv>

namespace sandbox {

namespace {

[[nodiscard]] std::optional<std::int64_t> wholeNumber(std::string_view text)
{
    std::int64_t value = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || rest != text.data() + text.size() || value < 1 || value > 1'000'000'000) {
        return {};
    }
    return value;
}

/// At most four parts, so that the argument may hold colons.
[[nodiscard]] std::vector<std::string> partsOf(const std::string& text)
{
    std::vector<std::string> parts;
    std::size_t from = 0;
    for (int i = 0; i < 3; ++i) {
        const std::size_t colon = text.find(':', from);
        if (colon == std::string::npos) {
            break;
        }
        parts.push_back(text.substr(from, colon - from));
        from = colon + 1;
    }
    parts.push_back(text.substr(from));
    parts.resize(4);
    return parts;
}

[[nodiscard]] const FaultForm& formOf(const std::string& name)
{
    const auto found = std::ranges::find(faultForms(), name, &FaultForm::name);
    if (found == faultForms().end()) {
        std::string known;
        for (const FaultForm& form : faultForms()) {
            known += (known.empty() ? "" : ", ") + std::string(form.name);
        }
        throw FaultMistake("unknown fault \"" + name + "\"; known are " + known);
    }
    return *found;
}

}

const std::vector<FaultForm>& faultForms()
{
    static const std::vector<FaultForm> forms {
        { FaultKind::refuse, "refuse", "the service address is closed until the fault is removed", "", false },
        { FaultKind::silence, "silence", "not executed, and no reply until the client gives up", "", false },
        { FaultKind::delay, "delay", "executed and answered ARG milliseconds late", "3000", true },
        { FaultKind::reset, "reset", "executed; the connection is reset in the middle of the reply", "", false },
        { FaultKind::drop, "drop", "executed; the connection ends without a reply", "", false },
        { FaultKind::status404, "404", "not executed; HTTP status 404", "", false },
        { FaultKind::status503, "503", "not executed; HTTP status 503", "", false },
        { FaultKind::fault, "500", "not executed; HTTP status 500 with a SOAP fault whose text is ARG",
          "Сервис временно недоступен", false },
        { FaultKind::prefix, "prefix", "not executed; a SOAP fault with the prefix ARG in place of s", "soap", false },
        { FaultKind::truncated, "truncated", "executed; the XML of the reply ends in its middle", "", false },
        { FaultKind::notXml, "not-xml", "executed; the reply is a page of HTML", "", false },
        { FaultKind::giant, "giant", "executed; the reply is well-formed and has ARG bytes", "67108864", true },
        { FaultKind::nested, "nested", "executed; the reply is well-formed and nested ARG levels deep", "100000",
          true },
    };
    return forms;
}

const FaultForm& formOf(FaultKind kind)
{
    return *std::ranges::find(faultForms(), kind, &FaultForm::kind);
}

std::int64_t Fault::number() const
{
    return wholeNumber(argument).value_or(0);
}

Fault parseFault(const std::string& text)
{
    const std::vector<std::string> parts = partsOf(text);
    const FaultForm& form = formOf(parts[0]);
    Fault fault;
    fault.kind = form.kind;
    fault.operation = parts[1] == "*" ? "" : parts[1];
    if (!fault.operation.empty() && findOperation(fault.operation) == nullptr) {
        throw FaultMistake("unknown operation \"" + fault.operation + "\" in fault \"" + text
                           + "\"; write one of the service, such as Accrual, or * for every one");
    }
    if (!parts[2].empty()) {
        fault.times = wholeNumber(parts[2]);
        if (!fault.times) {
            throw FaultMistake("TIMES of fault \"" + text + "\" must be a whole number from 1, or empty for always");
        }
    }
    fault.argument = parts[3].empty() ? std::string(form.argument) : parts[3];
    if (form.argument.empty() && !parts[3].empty()) {
        throw FaultMistake("fault \"" + std::string(form.name) + "\" takes no ARG; leave \"" + parts[3] + "\" out");
    }
    if (form.argumentIsNumber && !wholeNumber(fault.argument)) {
        throw FaultMistake("ARG of fault \"" + text + "\" must be a whole number from 1");
    }
    if (form.kind == FaultKind::refuse && (!fault.operation.empty() || fault.times)) {
        throw FaultMistake(
            "fault \"refuse\" takes neither OPERATION nor TIMES: connections are refused before anything "
            "is asked");
    }
    return fault;
}

std::int64_t FaultPlan::add(Fault fault)
{
    const std::lock_guard lock(mutex);
    fault.id = ++lastId;
    faults.push_back(std::move(fault));
    return lastId;
}

std::vector<Fault> FaultPlan::list() const
{
    const std::lock_guard lock(mutex);
    return faults;
}

bool FaultPlan::remove(std::int64_t id)
{
    const std::lock_guard lock(mutex);
    return std::erase_if(faults, [id](const Fault& fault) { return fault.id == id; }) != 0;
}

void FaultPlan::clear()
{
    const std::lock_guard lock(mutex);
    faults.clear();
}

std::optional<Fault> FaultPlan::take(const std::string& operation)
{
    const std::lock_guard lock(mutex);
    const auto found = std::ranges::find_if(faults, [&operation](const Fault& fault) {
        return fault.kind != FaultKind::refuse && (fault.operation.empty() || fault.operation == operation);
    });
    if (found == faults.end()) {
        return {};
    }
    Fault taken = *found;
    if (found->times && --*found->times == 0) {
        faults.erase(found);
    }
    return taken;
}

bool FaultPlan::refusesConnections() const
{
    const std::lock_guard lock(mutex);
    return std::ranges::any_of(faults, [](const Fault& fault) { return fault.kind == FaultKind::refuse; });
}

}
