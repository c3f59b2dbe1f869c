#include "sandbox/soap.h"

#include "sandbox/refusal.h"
#include "sandbox/xml_tree.h"

#include <algorithm>

namespace sandbox {

namespace {

constexpr std::string_view envelopeNamespace = "http://schemas.xmlsoap.org/soap/envelope/";

[[nodiscard]] bool isNamed(const pugi::xml_node& element, std::string_view space, std::string_view name)
{
    return localName(element) == name && namespaceOf(element) == space;
}

[[nodiscard]] pugi::xml_node operationElement(const pugi::xml_document& document)
{
    const pugi::xml_node envelope = document.document_element();
    if (!isNamed(envelope, envelopeNamespace, "Envelope")) {
        throw Refusal("Неверный запрос: корневой элемент не Envelope версии SOAP 1.1");
    }
    std::vector<pugi::xml_node> parts = childElements(envelope);
    if (!parts.empty() && isNamed(parts.front(), envelopeNamespace, "Header")) {
        parts.erase(parts.begin());
    }
    if (parts.size() != 1 || !isNamed(parts.front(), envelopeNamespace, "Body")) {
        throw Refusal("Неверный запрос: в Envelope нет единственного Body");
    }
    const std::vector<pugi::xml_node> operations = childElements(parts.front());
    if (operations.size() != 1) {
        throw Refusal("Неверный запрос: в Body нет единственной операции");
    }
    return operations.front();
}

[[nodiscard]] std::string_view unquoted(std::string_view action)
{
    if (action.size() >= 2 && action.starts_with('"') && action.ends_with('"')) {
        return action.substr(1, action.size() - 2);
    }
    return action;
}

void readParameters(const pugi::xml_node& element, const OperationForm& form, const std::string& space, Call& call)
{
    for (const pugi::xml_node& child : childElements(element)) {
        const std::string name(localName(child));
        if (namespaceOf(child) != space || std::ranges::find(form.parameters, name) == form.parameters.end()) {
            throw Refusal("Неверный запрос: неизвестный параметр " + std::string(child.name()));
        }
        if (call.parameters.contains(name)) {
            throw Refusal("Неверный запрос: повторный параметр " + name);
        }
        if (!childElements(child).empty()) {
            throw Refusal("Неверный запрос: вложенный элемент в параметре " + name);
        }
        if (form.parameters[call.parameters.size()] != name) {
            throw Refusal("Неверный запрос: ожидался параметр " + std::string(form.parameters[call.parameters.size()]));
        }
        call.parameters[name] = textOf(child);
    }
    if (call.parameters.size() != form.parameters.size()) {
        throw Refusal("Неверный запрос: нет параметра " + std::string(form.parameters[call.parameters.size()]));
    }
}

}

const std::string& Call::parameter(std::string_view name) const
{
    return parameters.find(name)->second;
}

std::string operationOfAction(std::string_view action, const std::string& serviceNamespace)
{
    const std::string prefix = serviceNamespace + "IVantiroService/";
    const std::string_view bare = unquoted(action);
    const OperationForm* const form = bare.starts_with(prefix) ? findOperation(bare.substr(prefix.size())) : nullptr;
    return form == nullptr ? std::string() : std::string(form->name);
}

Call readCall(std::string_view body, std::string_view action, const std::string& serviceNamespace)
{
    pugi::xml_document document;
    parseXml(document, body, "Неверный запрос");
    const pugi::xml_node element = operationElement(document);
    const OperationForm* const form = findOperation(localName(element));
    if (form == nullptr || namespaceOf(element) != serviceNamespace) {
        throw Refusal("Неверный запрос: неизвестная операция " + std::string(element.name()));
    }
    if (operationOfAction(action, serviceNamespace) != form->name) {
        throw Refusal("Неверный запрос: SOAPAction не соответствует операции " + std::string(form->name));
    }
    Call call;
    call.operation = form->operation;
    readParameters(element, *form, serviceNamespace, call);
    return call;
}

std::string replyText(const OperationForm& form, std::string_view result, const std::string& serviceNamespace)
{
    const std::string name(form.name);
    std::string inner;
    if (form.hasResult) {
        inner = '<' + name + "Result>" + escaped(result) + "</" + name + "Result>";
    }
    return "<s:Envelope xmlns:s=\"" + std::string(envelopeNamespace) + "\"><s:Body><" + name + "Response xmlns=\""
        + serviceNamespace + "\">" + inner + "</" + name + "Response></s:Body></s:Envelope>";
}

std::string faultText(Blame blame, std::string_view reason, const std::string& prefix)
{
    const std::string code = blame == Blame::client ? "Client" : "Server";
    return '<' + prefix + ":Envelope xmlns:" + prefix + "=\"" + std::string(envelopeNamespace) + "\"><" + prefix
        + ":Body><" + prefix + ":Fault><faultcode>" + prefix + ':' + code
        + "</faultcode><faultstring xml:lang=\"ru-RU\">" + escaped(reason) + "</faultstring></" + prefix + ":Fault></"
        + prefix + ":Body></" + prefix + ":Envelope>";
}

}
