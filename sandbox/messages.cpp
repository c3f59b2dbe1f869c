#include "sandbox/messages.h"

#include "sandbox/placeholders.h"
#include "sandbox/xml_tree.h"

namespace sandbox {

std::string messagesText(const Cheque& cheque, const Rules& rules, Kopecks balance)
{
    Placeholders values { { "amount", moneyText(cheque.amount) } };
    if (cheque.card) {
        values["card"] = cheque.card->number;
        values["balance"] = moneyText(balance);
    }
    std::string text;
    for (const MessageRule& message : rules.messages) {
        const bool cardFits
            = message.card == CardNeed::any || (message.card == CardNeed::required) == cheque.card.has_value();
        if (cardFits && cheque.amount >= message.from) {
            text += "<Msg Device=\"" + std::to_string(message.device) + "\" Body=\""
                + escapedAttribute(filled(message.text, values)) + "\"/>";
        }
    }
    return text.empty() ? text : "<Messages>" + text + "</Messages>";
}

}
