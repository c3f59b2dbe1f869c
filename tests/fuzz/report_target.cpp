#include "tests/fuzz/replies.h"
#include "tests/fuzz/target.h"

#include <QDomDocument>

#include <algorithm>
#include <numeric>

// The print form of a slip. The input is the reply to an accrual, or the text of its result.

namespace fuzz {

namespace {

    [[nodiscard]] bool isIn(const std::string& name, const std::vector<std::string_view>& names)
    {
        return std::ranges::find(names, name) != names.end();
    }

    /// The text that a slip prints, without white space: which tags say it, and in what order.
    [[nodiscard]] std::string printedBy(const XmlElement& slip)
    {
        std::string printed;
        for (const XmlElement& part : slip.children) {
            if (part.name == "pair") {
                printed += part.attribute("left").value_or("") + part.attribute("right").value_or("");
            } else if (isIn(part.name, { "f0", "f1", "f2", "noformat" })) {
                printed += part.text;
            }
        }
        return condensed(printed);
    }

    [[nodiscard]] bool hasBlocks(const XmlElement& slip)
    {
        return std::ranges::any_of(
            slip.children, [](const XmlElement& part) { return isIn(part.name, { "left", "right", "center" }); });
    }

    void checkCommand(const XmlElement& command)
    {
        require(isIn(command.name, { "text", "br", "printer" }), "a command that no printer knows");
        require(command.children.empty(), "a command within a command");
        require(command.name == "text" || condensed(command.text).empty(), "a text that no command prints");
        require((command.name == "printer") == command.attribute("op").has_value(), "a printer without an order");
    }

    /// A print form that is one; its text.
    [[nodiscard]] std::string checkForm(const QString& form)
    {
        const std::optional<XmlElement> report = readOtherwise(form.toStdString(), XmlEncoding::utf8);
        require(report.has_value(), "a print form that is not XML");
        require(report->name == "report", "a print form that is no report");
        std::ranges::for_each(report->children, checkCommand);
        return condensed(report->text);
    }

    [[nodiscard]] bool isSlip(const std::optional<XmlElement>& root)
    {
        return root && root->name == "doc";
    }

    void checkSingle(const QString& form, const std::string& result)
    {
        const std::string text = unescaped(result);
        // The product's parser goes by an edition of XML that has fewer letters for names, and is strict about colons.
        std::string plain = text;
        std::ranges::replace_if(
            plain, [](char c) { return static_cast<unsigned char>(c) > 0x7F || c == ':'; }, '?');
        const bool mustBeSlip
            = isSlip(readStrictly(text, XmlEncoding::utf8)) && isSlip(readStrictly(plain, XmlEncoding::utf8));
        if (form.isEmpty()) {
            require(!mustBeSlip, "a slip that is not printed");
            return;
        }
        const std::string printed = checkForm(form);
        if (!mustBeSlip && printed == condensed(result)) {
            return; // a plain one
        }
        const std::optional<XmlElement> slip = readOtherwise(text, XmlEncoding::utf8);
        require(isSlip(slip), "a slip of a text that is none");
        // Text within aligned blocks stands between others, so only slips without them are read over here.
        const std::string expected = printedBy(*slip);
        require(hasBlocks(*slip) || printed == expected, "a slip of another text: " + printed);
    }

    void checkSeveral(const QList<QString>& forms, const std::string& result)
    {
        const std::optional<XmlElement> slips = readOtherwise(unescaped(result), XmlEncoding::utf8);
        require(forms.isEmpty() || (slips && slips->name == "docs"), "slips of a text that has none");
        for (const QString& form : forms) {
            if (!form.isEmpty()) {
                static_cast<void>(checkForm(form));
            }
        }
    }

} // namespace

void readReport(std::string_view input)
{
    const std::string reply = replyTo("Accrual", input);
    OpenClient client;
    QDomDocument answer;
    if (endingOf([&] { answer = client.createXmlAnswer(QByteArray::fromStdString(reply)); }) != Ending::value) {
        return;
    }
    const std::optional<std::string> result = onlyText(reply, "AccrualResult");
    const bool waits = result && !condensed(*result).empty();

    QString form;
    timed([&] {
        client.fillReport(answer);
        form = client.getReport();
    });
    made(static_cast<std::size_t>(form.size()));
    require(waits || form.isEmpty(), "a slip of a reply that holds none");
    require(client.getReport().isEmpty(), "a slip that is given out twice");

    QList<QString> forms;
    timed([&] {
        client.fillReport(answer);
        forms = client.getReports();
    });
    made(std::accumulate(forms.cbegin(), forms.cend(), std::size_t { 0 }, [](std::size_t sum, const QString& one) {
        return sum + static_cast<std::size_t>(one.size());
    }));
    require(waits || forms.isEmpty(), "slips of a reply that holds none");
    require(client.getReports().isEmpty(), "slips that are given out twice");

    // A swollen text is there for its time: its megabytes of form say nothing that a short one does not.
    constexpr std::size_t largestChecked = 64 * 1024;
    if (waits && input.size() <= largestChecked) {
        checkSingle(form, *result);
        checkSeveral(forms, *result);
    }
}

} // namespace fuzz
