#include "bonus/card_of_document.h"

#include "bonus/records.h"
#include "client/exceptions.h"

namespace vantiro {

QSharedPointer<DocumentCardRecord> requireCard(const QSharedPointer<AbstractDocument>& document)
{
    const QSharedPointer<DocumentCardRecord> card = document->getCardRecord(records::cardMode);
    if (!card) {
        throw VantiroException(
            tr::Tr(QStringLiteral("vantiroCardNotFound"), QStringLiteral("В документе нет карты Vantiro")));
    }
    return card;
}

} // namespace vantiro
