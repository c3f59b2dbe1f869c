#pragma once

#include "sandbox/operation.h"

#include <map>
#include <string>
#include <string_view>

/// SOAP 1.1 as the contract of the service has it.
namespace sandbox {

/// The parameters of a call, under their names.
struct Call {
    Operation operation = Operation::ping;
    std::map<std::string, std::string, std::less<>> parameters;

    [[nodiscard]] const std::string& parameter(std::string_view name) const;
};

/// Reads a request. Throws `Refusal` when the text is not XML, the envelope is not that of SOAP 1.1 with one operation
/// of the service, the action (quoted or not) is not that of the operation, or the parameters are not exactly those of
/// the operation, in their order. [any-thread]
[[nodiscard]] Call readCall(std::string_view body, std::string_view action, const std::string& serviceNamespace);

/// The operation that an action names; empty when it names none. [any-thread]
[[nodiscard]] std::string operationOfAction(std::string_view action, const std::string& serviceNamespace);

/// The reply of an operation; the result is plain text and is escaped here. [any-thread]
[[nodiscard]] std::string replyText(const OperationForm& form, std::string_view result,
                                    const std::string& serviceNamespace);

enum class Blame { client, server };

/// A fault. The prefix is "s" but for the fault on demand that tries another one. [any-thread]
[[nodiscard]] std::string faultText(Blame blame, std::string_view reason, const std::string& prefix = "s");

}
