#include "tests/fuzz/replies.h"
#include "tests/fuzz/target.h"

#include <cmath>

// The discounts of a reply. The input is the reply, or the text of its result.

namespace fuzz {

namespace {

    /// What one record must say. A plain value.
    struct Granted {
        EDiscountObject::type object = EDiscountObject::cheque;
        int position = 0;
        int code = 0;
        double sum = 0.0;
        std::optional<double> rate;
    };

    [[nodiscard]] Granted grantedBy(const XmlElement& discount)
    {
        Granted granted;
        granted.code = wholeNumber(discount, "DiscountID");
        granted.sum = number(discount, "Amount");
        return granted;
    }

    [[nodiscard]] std::vector<Granted> grantedIn(const XmlElement& root)
    {
        std::vector<Granted> all;
        if (const auto cheques = elementsNamed(root, "Cheque"); !cheques.empty()) {
            for (const XmlElement* const discount : elementsBelow(*cheques.front(), "Discount")) {
                all.push_back(grantedBy(*discount));
            }
        }
        for (const XmlElement* const line : elementsNamed(root, "ChequeLine")) {
            const int position = wholeNumber(*line, "ChequeLineNo");
            for (const XmlElement* const discount : elementsBelow(*line, "Discount")) {
                Granted granted = grantedBy(*discount);
                granted.object = EDiscountObject::position;
                granted.position = position;
                const double percent = number(*discount, "Percent");
                if (discount->attribute("Type") == "Percent") {
                    granted.rate = percent;
                }
                all.push_back(granted);
            }
        }
        return all;
    }

    void checkRecord(const QSharedPointer<DiscountImpact>& record, const Granted& granted)
    {
        const QSharedPointer<DocumentImpactDetail> totals = record->getTotals();
        require(totals->getDiscountObject() == granted.object, "a discount on something else");
        require(totals->getPosition() == granted.position, "a discount on another position");
        require(totals->getDiscountCode() == granted.code, "a discount of another code");
        require(totals->getDiscountSum() == granted.sum, "a discount of another sum");
        require(std::isfinite(totals->getDiscountSum()), "a discount without a sum");
        require(totals->getDiscountRate() == (granted.rate ? QVariant(*granted.rate) : QVariant()),
                "a discount of another rate");
        require(record->getDetails().isEmpty(), "a discount that was spread");
    }

} // namespace

void readDiscounts(std::string_view input)
{
    const std::string reply = replyTo("GetDiscounts", input);
    HostileServer server({ { 200, QByteArray::fromStdString(reply) } });
    OpenClient client;
    QList<QSharedPointer<DiscountImpact>> records;
    if (endingOf([&] { records = client.getDiscounts(saleWithCard(), {}, {}); }) != Ending::value) {
        return;
    }

    const std::optional<std::string> text = onlyText(reply, "GetDiscountsResult");
    require(text.has_value(), "discounts of a reply without the one result");
    std::vector<Granted> expected;
    if (!condensed(*text).empty()) {
        const std::optional<XmlElement> root = readOtherwise(*text, XmlEncoding::utf8);
        require(root.has_value(), "discounts of a result that is not XML");
        expected = grantedIn(*root);
    }
    require(records.size() == static_cast<qsizetype>(expected.size()), "another number of discounts");
    for (qsizetype i = 0; i < records.size(); ++i) {
        checkRecord(records.at(i), expected[static_cast<std::size_t>(i)]);
    }
}

} // namespace fuzz
