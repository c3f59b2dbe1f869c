#include "tests/fuzz/replies.h"
#include "tests/fuzz/target.h"

#include <algorithm>
#include <cmath>

// The balance of a card. The input is the reply, or the text of its result.

namespace fuzz {

void readBalance(std::string_view input)
{
    const std::string reply = replyTo("GetCardBalance", input);
    HostileServer server({ { 200, QByteArray::fromStdString(reply) } });
    OpenClient client;
    double balance = 0.0;
    if (endingOf([&] { balance = client.getCardBalance(QStringLiteral("9000000001")); }) != Ending::value) {
        return;
    }

    const std::optional<std::string> text = onlyText(reply, "GetCardBalanceResult");
    require(text.has_value(), "a balance of a reply without the one result");
    const std::optional<XmlElement> root = readOtherwise(unescaped(*text), XmlEncoding::utf8);
    require(root.has_value(), "a balance of a result that is not XML");
    const auto balances = elementsNamed(*root, "Balance");
    require(balances.size() == 1, "a balance of several, or of none");
    std::string value = balances.front()->attribute("Value").value_or(std::string());
    std::ranges::replace(value, ',', '.');
    require(number(value) == balance, "another balance than " + value);
    require(std::isfinite(balance), "a balance without a sum");
}

} // namespace fuzz
