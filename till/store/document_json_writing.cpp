#include "till/store/document_json.h"

#include "host/document/back_by_sale_document.h"
#include "till/document/card.h"
#include "till/document/cheque_contents.h"
#include "till/document/line.h"
#include "till/document/plugin_values.h"
#include "till/document/stored_detail.h"
#include "till/store/json_text.h"
#include "till/store/stored_form.h"
#include "till/store/stored_map.h"

#include <map>
#include <optional>
#include <string>

// The keys of each map stand in ascending order: `JsonText` says why.

namespace till {

namespace {

    void writeOptional(JsonText& json, const std::optional<double>& value)
    {
        if (value) {
            json.number(*value);
        } else {
            json.nothing();
        }
    }

    void writeHead(JsonText& json, const ChequeHead& head)
    {
        json.beginMap();
        json.plainKey("closeTime");
        json.moment(head.closeTime);
        json.plainKey("deferred");
        json.flag(head.deferred);
        json.plainKey("documentSum");
        writeOptional(json, head.documentSum);
        json.plainKey("number");
        json.whole(head.number);
        json.plainKey("offlineAllowed");
        json.flag(head.offlineAllowed);
        json.plainKey("openTime");
        json.moment(head.openTime);
        json.plainKey("shift");
        json.whole(head.shift);
        json.plainKey("sourceDocumentId");
        json.any(head.sourceDocumentId);
        json.plainKey("sumToPay");
        writeOptional(json, head.sumToPay);
        json.plainKey("type");
        json.whole(head.type);
        json.endMap();
    }

    void writeLine(JsonText& json, const Line& line)
    {
        const LineFields& fields = line.fields;
        if (!line.kept.text.isEmpty() && line.kept.fields == fields) {
            json.again(line.kept.text);
            return;
        }
        const qsizetype place = json.place();
        json.beginMap();
        json.plainKey("barcode");
        json.text(fields.barcode);
        json.plainKey("bonusEarnAllowed");
        json.flag(fields.bonusEarnAllowed);
        json.plainKey("bonusSpendAllowed");
        json.flag(fields.bonusSpendAllowed);
        json.plainKey("code");
        json.text(fields.code);
        json.plainKey("discountAllowed");
        json.flag(fields.discountAllowed);
        json.plainKey("minPrice");
        json.number(fields.minPrice);
        json.plainKey("onlyExternalDiscountAllowed");
        json.flag(fields.onlyExternalDiscountAllowed);
        json.plainKey("posnum");
        json.whole(fields.posnum);
        json.plainKey("price");
        json.number(fields.price);
        json.plainKey("quantity");
        json.number(fields.quantity);
        json.plainKey("sum");
        writeOptional(json, fields.sum);
        json.endMap();
        line.kept = { fields, json.valueAt(place) };
    }

    void writeLines(JsonText& json, const QList<QSharedPointer<GoodsItem>>& lines)
    {
        json.beginList();
        for (const QSharedPointer<GoodsItem>& item : lines) {
            const auto* const line = dynamic_cast<const Line*>(item.data());
            if (line == nullptr) {
                refuseDocument(QStringLiteral("a line is not of this till"));
            }
            writeLine(json, *line);
        }
        json.endList();
    }

    void writePayments(JsonText& json, const ChequeContents& contents)
    {
        json.beginList();
        for (const QSharedPointer<MoneyItem>& payment : contents.payments) {
            json.beginMap();
            json.plainKey("amount");
            json.number(payment->getAmount());
            json.plainKey("cardNumber");
            json.text(payment->getCardNum());
            json.plainKey("opCode");
            json.whole(payment->getOpCode());
            json.plainKey("valutOperation");
            json.whole(payment->getValutOperation());
            json.endMap();
        }
        json.endList();
    }

    void writeCards(JsonText& json, const ChequeContents& contents)
    {
        json.beginList();
        const QMap<int, ChequeContents::AttachedCard> cards = contents.attachedCards();
        for (auto it = cards.cbegin(); it != cards.cend(); ++it) {
            const auto* const card = dynamic_cast<const Card*>(it->record.data());
            if (card == nullptr) {
                refuseDocument(QStringLiteral("a card is not of this till"));
            }
            json.beginMap();
            json.plainKey("bonusBalance");
            json.any(card->fields.bonusBalance);
            json.plainKey("codeInternal");
            json.whole(card->fields.codeInternal);
            json.plainKey("mode");
            json.whole(it.key());
            json.plainKey("number");
            json.any(card->fields.number);
            json.plainKey("pointsForSpend");
            json.number(card->fields.pointsForSpend);
            json.plainKey("spentSum");
            json.number(card->fields.spentSum);
            json.plainKey("type");
            json.whole(it->type);
            json.endMap();
        }
        json.endList();
    }

    void writeCoupons(JsonText& json, const ChequeContents& contents)
    {
        json.beginList();
        for (const QSharedPointer<Coupon>& coupon : contents.coupons) {
            json.text(coupon->getNumber());
        }
        json.endList();
    }

    /// The same map that `serder` makes of the stored properties of a detail. Those are asked for by name at each
    /// reading, so this is what has to follow when there are others; a test compares the two.
    void writeDetail(JsonText& json, const DocumentImpactDetail& detail)
    {
        QByteArray& kept = keptDetailText(detail); // most details are those of the step before
        if (!kept.isEmpty()) {
            json.again(kept);
            return;
        }
        const qsizetype place = json.place();
        json.beginMap();
        json.plainKey("cardIndex");
        json.any(detail.getCardIndex());
        json.plainKey("dateTime");
        json.moment(detail.getDateTime());
        json.plainKey("discountCode");
        json.whole(detail.getDiscountCode());
        json.plainKey("discountMode");
        json.whole(detail.getDiscountMode());
        json.plainKey("discountName");
        json.text(detail.getDiscountName());
        json.plainKey("discountObject");
        json.whole(detail.getDiscountObject());
        json.plainKey("discountRate");
        json.any(detail.getDiscountRate());
        json.plainKey("discountSum");
        json.number(detail.getDiscountSum());
        json.plainKey("discountType");
        json.whole(detail.getDiscountType());
        json.plainKey("impactSource");
        json.whole(detail.getImpactSource());
        json.plainKey("minPriceIgnored");
        json.flag(detail.isMinPriceIgnored());
        json.plainKey("position");
        json.whole(detail.getPosition());
        json.endMap();
        kept = json.valueAt(place);
    }

    [[nodiscard]] QString kindOf(const DocumentImpact& impact)
    {
        if (dynamic_cast<const DiscountImpact*>(&impact) != nullptr) {
            return stored::discountImpact;
        }
        return dynamic_cast<const BonusImpact*>(&impact) != nullptr ? stored::bonusImpact : QString();
    }

    void writePluginValues(JsonText& json, PluginData& data)
    {
        json.beginMap();
        const auto& groups = pluginValuesOf(data);
        for (auto it = groups.cbegin(); it != groups.cend(); ++it) {
            json.key(it.key());
            json.map(it.value());
        }
        json.endMap();
    }

    void writeImpact(JsonText& json, DocumentImpact& impact)
    {
        std::map<std::string, QSharedPointer<DocumentImpactDetail>> byKey; // as texts, 10 comes before 2
        const QMap<int, QSharedPointer<DocumentImpactDetail>> details = impact.getDetails();
        for (auto it = details.cbegin(); it != details.cend(); ++it) {
            byKey.emplace(std::to_string(it.key()), it.value());
        }
        json.beginMap();
        json.plainKey("details");
        json.beginMap();
        for (const auto& [key, detail] : byKey) {
            json.plainKey(key);
            writeDetail(json, *detail);
        }
        json.endMap();
        json.plainKey("totals");
        writeDetail(json, *impact.getTotals());
        json.endMap();
    }

    void writeImpacts(JsonText& json, const ChequeContents& contents)
    {
        json.beginList();
        for (const QSharedPointer<DocumentImpact>& impact : contents.impacts) {
            json.beginMap();
            json.plainKey("impact");
            writeImpact(json, *impact);
            json.plainKey("kind");
            json.text(kindOf(*impact));
            json.plainKey("values");
            writePluginValues(json, *impact);
            json.endMap();
        }
        json.endList();
    }

    void writeBonusRecords(JsonText& json, const ChequeContents& contents)
    {
        json.beginList();
        for (const DocumentBonusRecord& record : contents.bonusRecords) {
            json.beginMap();
            json.plainKey("amount");
            json.number(record.amount);
            json.plainKey("cardNumber");
            json.text(record.cardNumber);
            json.plainKey("dateTime");
            json.moment(record.dateTime);
            json.endMap();
        }
        json.endList();
    }

    void writeSale(JsonText& json, const SaleDocumentSource* sale)
    {
        if (sale == nullptr) {
            json.nothing();
            return;
        }
        json.beginMap();
        json.plainKey("chequeNumber");
        json.whole(sale->chequeNumber);
        json.plainKey("closeTime");
        json.moment(sale->closeTime);
        json.plainKey("openTime");
        json.moment(sale->openTime);
        json.plainKey("pluginDataJson");
        json.text(sale->pluginDataJson);
        json.endMap();
    }

} // namespace

QByteArray toJson(const QSharedPointer<AbstractDocument>& document)
{
    const auto* const contents = dynamic_cast<const ChequeContents*>(document.data());
    if (contents == nullptr) {
        refuseDocument(QStringLiteral("the document is not of this till"));
    }
    auto* const back = dynamic_cast<BackBySaleDocument*>(document.data());
    thread_local qsizetype last = 0; // bytes; the next text is most often that of the same document
    JsonText json(last + last / 8);
    json.beginMap();
    json.plainKey("bonusRecords");
    writeBonusRecords(json, *contents);
    json.plainKey("cards");
    writeCards(json, *contents);
    json.plainKey("coupons");
    writeCoupons(json, *contents);
    json.plainKey("currentPosition");
    json.whole(contents->currentPosition().number);
    json.plainKey("deletedLines");
    writeLines(json, contents->deletedLines());
    json.plainKey("head");
    writeHead(json, contents->head);
    json.plainKey("identity");
    json.text(contents->identity());
    json.plainKey("impacts");
    writeImpacts(json, *contents);
    json.plainKey("isReturnBySale");
    json.flag(back != nullptr);
    json.plainKey("lines");
    writeLines(json, contents->liveLines());
    json.plainKey("payments");
    writePayments(json, *contents);
    json.plainKey("pluginDataJson");
    json.text(contents->pluginDataJson);
    json.plainKey("pluginValues");
    json.keepMaps(&contents->keptPluginMaps);
    writePluginValues(json, *document);
    json.keepMaps(nullptr);
    json.plainKey("sale");
    writeSale(json, back != nullptr ? back->getSource().data() : nullptr);
    json.plainKey("version");
    json.whole(stored::formatVersion);
    json.endMap();
    QByteArray text = json.take();
    last = text.size();
    return text;
}

} // namespace till
