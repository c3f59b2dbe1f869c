#include "tests/fuzz/replies.h"
#include "tests/fuzz/target.h"

#include <map>

// The spread of spent points over positions. The input is the reply, or the text of its result.

namespace fuzz {

namespace {

    constexpr double asked = 100.5; // roubles

    /// The sums by position; a position that is named twice has both.
    [[nodiscard]] std::map<int, double> spreadIn(const XmlElement& root)
    {
        std::map<int, double> spread;
        for (const XmlElement* const line : elementsNamed(root, "ChequeLine")) {
            const int position = wholeNumber(*line, "ChequeLineNo");
            const double sum = number(*line, "Amount");
            if (const auto [known, isNew] = spread.try_emplace(position, sum); !isNew) {
                known->second += sum;
            }
        }
        return spread;
    }

} // namespace

void readSubtraction(std::string_view input)
{
    const std::string reply = replyTo("SubtractBonus45", input);
    HostileServer server({ { 200, QByteArray::fromStdString(reply) } });
    OpenClient client;
    QSharedPointer<BonusImpact> record;
    const Ending ending = endingOf([&] { record = client.subtractBonus(saleWithCard(), asked); });
    require(server.posts() == 1, "points were asked for more than once");
    if (ending != Ending::value) {
        return;
    }

    const std::optional<std::string> text = firstText(reply, "SubtractBonus45Result");
    require(text.has_value(), "points of a reply without a result");
    const std::optional<XmlElement> root = readOtherwise(unescaped(*text), XmlEncoding::utf8);
    require(root.has_value(), "points of a result that is not XML");
    require(record->getTotals()->getDiscountSum() == asked, "other points than were asked for");
    const auto details = record->getDetails();
    std::map<int, double> read;
    for (auto detail = details.cbegin(); detail != details.cend(); ++detail) {
        read[detail.key()] = detail.value()->getDiscountSum();
    }
    require(read == spreadIn(*root), "points on other positions");
}

} // namespace fuzz
