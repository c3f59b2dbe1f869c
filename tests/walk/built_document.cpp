#include "tests/walk/built_document.h"

#include "tests/support/document_builder.h"
#include "till/document/card.h"
#include "till/document/cheque_contents.h"

using namespace Qt::StringLiterals;

namespace walk {

namespace {

constexpr int cardMode = 7;
constexpr int otherCard = 3; // its mode and its type

} // namespace

QSharedPointer<AbstractDocument> build(const Document& document)
{
    DocumentBuilder builder;
    builder.identity(document.identity).number(document.number).shift(document.shift).type(document.type);
    for (const Line& line : document.live) {
        builder.line(Goods(line.number, u"1042"_s, line.sum));
    }
    if (document.card) {
        builder.card(document.card->number);
    }
    QSharedPointer<AbstractDocument> built;
    if (document.saleNumber) { // the sale 77; one that was set aside is the server's cheque 12
        const QString json = document.saleNumber == u"12"_s ? uR"({"vantiro":{"chequeNo":"12"}})"_s : QString();
        built = builder.buildReturn(saleSource(77, at("2024-03-01T10:00:00"), at("2024-03-01T10:05:00"), json));
    } else {
        built = builder.build();
    }
    auto& contents = dynamic_cast<till::ChequeContents&>(*built);
    if (document.card && document.card->balance) {
        contents.card(cardMode)->setBonusBalance(*document.card->balance);
    }
    contents.head.offlineAllowed = document.canGoOffline;
    if (document.hasOtherCard) {
        contents.setCard(otherCard, otherCard,
                         QSharedPointer<till::Card>::create(till::CardFields { u"77001"_s, 0, {}, 0.0, 0.0 }));
    }
    if (document.hasBonusRecord) {
        contents.bonusRecords.append({ u"77001"_s, 1.0, at("2024-03-05T14:07:30") });
    }
    return built;
}

} // namespace walk
