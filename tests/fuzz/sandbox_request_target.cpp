#include "sandbox/cheque.h"
#include "sandbox/refusal.h"
#include "sandbox/soap.h"
#include "tests/fuzz/other_xml.h"
#include "tests/fuzz/target.h"

#include <algorithm>

// A request as the sandbox reads it. The input is the request, or a cheque by itself.

namespace fuzz {

namespace {

    const std::string serviceNamespace = "http://tempuri.org/";

    [[nodiscard]] std::size_t childrenNamed(const XmlElement& element, std::string_view name)
    {
        return static_cast<std::size_t>(std::ranges::count(element.children, name, &XmlElement::name));
    }

    void checkCheque(const sandbox::Cheque& cheque, std::string_view text)
    {
        const std::optional<XmlElement> root = readOtherwise(text, XmlEncoding::utf8);
        require(root && root->name == "Cheque", "a cheque of a text that is none");
        const auto isOf = [&](const std::string& read, std::string_view name) {
            return condensed(root->attribute(name).value_or("?")) == condensed(read);
        };
        require(isOf(cheque.uid, "ChequeUID"), "a cheque of another name");
        require(isOf(cheque.number, "ChequeNo") && isOf(cheque.shift, "ShiftNo"), "a cheque of another number");
        require(isOf(std::string(sandbox::wordOf(cheque.status)), "Status"), "a cheque in another state");
        const auto sections = std::ranges::find(root->children, "ChequeLines", &XmlElement::name);
        require(sections != root->children.end(), "a cheque without lines");
        require(cheque.lines.size() == childrenNamed(*sections, "ChequeLine"), "another number of lines");
        require(cheque.coupons.size() == childrenNamed(*root, "Coupon"), "another number of coupons");
    }

    void readChequeText(std::string_view text)
    {
        sandbox::Cheque cheque;
        try {
            timed([&] { cheque = sandbox::readCheque(text); });
        } catch (const sandbox::Refusal&) {
            return;
        }
        checkCheque(cheque, text);
    }

    /// The action of the first operation that the request speaks of.
    [[nodiscard]] std::string actionOf(std::string_view request)
    {
        const auto& forms = sandbox::operationForms();
        const auto found = std::ranges::find_if(forms, [&](const sandbox::OperationForm& form) {
            return request.find(':' + std::string(form.name)) != std::string_view::npos;
        });
        return serviceNamespace + "IVantiroService/" + std::string(found == forms.end() ? "Ping" : found->name);
    }

    void checkCall(const sandbox::Call& call, std::string_view text)
    {
        const std::optional<XmlElement> root = readOtherwise(text, XmlEncoding::utf8);
        require(root.has_value(), "a request that is not XML");
        const sandbox::OperationForm& form = sandbox::formOf(call.operation);
        require(call.parameters.size() == form.parameters.size(), "a call without its parameters");
        const XmlElement& body = root->children.back();
        require(body.children.size() == 1, "a call of several operations");
        const XmlElement& operation = body.children.front();
        require(operation.name.ends_with(form.name), "a call of another operation");
        require(operation.children.size() == form.parameters.size(), "a call of other parameters");
        for (std::size_t i = 0; i < form.parameters.size(); ++i) {
            require(operation.children[i].name.ends_with(form.parameters[i]), "a parameter of another name");
            require(condensed(call.parameter(form.parameters[i])) == condensed(operation.children[i].text),
                    "a parameter of another text");
        }
    }

} // namespace

void readSandboxRequest(std::string_view input)
{
    if (input.find("Envelope") == std::string_view::npos) {
        readChequeText(input);
        return;
    }
    sandbox::Call call;
    try {
        const std::string action = actionOf(input);
        timed([&] { call = sandbox::readCall(input, action, serviceNamespace); });
    } catch (const sandbox::Refusal&) {
        return;
    }
    checkCall(call, input);
    if (call.parameters.contains(sandbox::chequeParameter)) {
        readChequeText(call.parameter(sandbox::chequeParameter));
    }
}

} // namespace fuzz
