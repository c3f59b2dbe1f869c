#include "till/store/document_json.h"

#include "host/document/back_by_sale_document.h"
#include "host/facilities/serder.h"
#include "till/document/card.h"
#include "till/document/cheque.h"
#include "till/document/coupon_record.h"
#include "till/document/payment.h"
#include "till/document/plugin_values.h"
#include "till/document/return_by_sale.h"
#include "till/store/stored_form.h"
#include "till/store/stored_map.h"
#include "till/store/stored_text.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <stdexcept>

namespace till {

namespace {

    [[nodiscard]] ChequeHead headOf(const StoredMap& map)
    {
        ChequeHead head;
        head.type = map.whole(u"type");
        head.number = map.whole(u"number");
        head.shift = map.whole(u"shift");
        head.openTime = map.momentIfAny(u"openTime");
        head.closeTime = map.momentIfAny(u"closeTime");
        head.offlineAllowed = map.flag(u"offlineAllowed");
        head.deferred = map.flag(u"deferred");
        head.sourceDocumentId = map.any(u"sourceDocumentId");
        head.documentSum = map.numberIfAny(u"documentSum");
        head.sumToPay = map.numberIfAny(u"sumToPay");
        if (!head.openTime.isValid()) {
            StoredMap::damaged(u"openTime"); // the cheque would take the time of the clock
        }
        return head;
    }

    [[nodiscard]] LineFields lineOf(const StoredMap& map)
    {
        LineFields fields;
        fields.posnum = map.whole(u"posnum");
        fields.code = map.text(u"code");
        fields.barcode = map.text(u"barcode");
        fields.price = map.number(u"price");
        fields.minPrice = map.number(u"minPrice");
        fields.quantity = map.number(u"quantity");
        fields.sum = map.numberIfAny(u"sum");
        fields.bonusSpendAllowed = map.flag(u"bonusSpendAllowed");
        fields.bonusEarnAllowed = map.flag(u"bonusEarnAllowed");
        fields.discountAllowed = map.flag(u"discountAllowed");
        fields.onlyExternalDiscountAllowed = map.flag(u"onlyExternalDiscountAllowed");
        return fields;
    }

    void readLines(ChequeContents& contents, const StoredMap& map)
    try {
        for (const StoredMap& line : map.maps(u"lines")) {
            contents.addLine(lineOf(line));
        }
        for (const StoredMap& line : map.maps(u"deletedLines")) {
            contents.remove(contents.addLine(lineOf(line))->getPosnum());
        }
        if (const int current = map.whole(u"currentPosition"); contents.currentPosition().state == Position::present) {
            contents.selectPosition(current);
        }
    } catch (const std::invalid_argument& reason) {
        refuseDocument(QString::fromUtf8(reason.what()));
    }

    void readPayments(ChequeContents& contents, const QList<StoredMap>& list)
    {
        for (const StoredMap& map : list) {
            contents.payments.append(QSharedPointer<Payment>::create(PaymentFields {
                map.number(u"amount"), map.text(u"cardNumber"), map.whole(u"valutOperation"), map.whole(u"opCode") }));
        }
    }

    void readCards(ChequeContents& contents, const QList<StoredMap>& list)
    {
        for (const StoredMap& map : list) {
            CardFields fields;
            fields.number = map.any(u"number");
            fields.codeInternal = map.whole(u"codeInternal");
            fields.bonusBalance = map.any(u"bonusBalance");
            fields.pointsForSpend = map.number(u"pointsForSpend");
            fields.spentSum = map.number(u"spentSum");
            contents.setCard(map.whole(u"mode"), map.whole(u"type"), QSharedPointer<Card>::create(fields));
        }
    }

    void readPluginValues(PluginData& data, const StoredMap& groups)
    {
        for (const QString& group : groups.keys()) {
            pluginValuesOf(data).insert(group, groups.map(group).values());
        }
    }

    [[nodiscard]] QSharedPointer<DocumentImpact> impactOf(const QString& kind)
    {
        if (kind == stored::discountImpact) {
            return QSharedPointer<DiscountImpact>::create();
        }
        if (kind == stored::bonusImpact) {
            return QSharedPointer<BonusImpact>::create();
        }
        if (!kind.isEmpty()) {
            StoredMap::damaged(u"kind");
        }
        return QSharedPointer<DocumentImpact>::create();
    }

    void readImpacts(ChequeContents& contents, const QList<StoredMap>& list)
    {
        for (const StoredMap& map : list) {
            const QSharedPointer<DocumentImpact> impact = impactOf(map.text(u"kind"));
            serder::default_serder_type<DocumentImpact>::strategy.deserialize(
                impact.data(), map.map(u"impact").values(), DocumentImpact::staticMetaObject);
            readPluginValues(*impact, map.map(u"values"));
            contents.impacts.append(impact);
        }
    }

    void readBonusRecords(ChequeContents& contents, const QList<StoredMap>& list)
    {
        for (const StoredMap& map : list) {
            contents.bonusRecords.append(
                { map.text(u"cardNumber"), map.number(u"amount"), map.momentIfAny(u"dateTime") });
        }
    }

    [[nodiscard]] QSharedPointer<SaleDocumentSource> saleFrom(const StoredMap& document)
    {
        if (document.isNull(u"sale")) {
            return nullptr;
        }
        const StoredMap map = document.map(u"sale");
        auto sale = QSharedPointer<SaleDocumentSource>::create();
        sale->chequeNumber = map.whole(u"chequeNumber");
        sale->openTime = map.momentIfAny(u"openTime");
        sale->closeTime = map.momentIfAny(u"closeTime");
        sale->pluginDataJson = map.text(u"pluginDataJson");
        return sale;
    }

} // namespace

DamagedDocument::~DamagedDocument() = default;

QSharedPointer<AbstractDocument> documentFromJson(const QByteArray& text)
try {
    QJsonParseError error;
    const StoredMap map(QJsonDocument::fromJson(text, &error).object());
    if (error.error != QJsonParseError::NoError) {
        refuseDocument(error.errorString());
    }
    if (isLooseJson(text)) {
        refuseDocument(QStringLiteral("a text holds what no text can hold"));
    }
    const QString identity = map.text(u"identity");
    if (map.whole(u"version") != stored::formatVersion || identity.isEmpty()) {
        refuseDocument(QStringLiteral("the form is not known"));
    }

    const ChequeHead head = headOf(map.map(u"head"));
    QSharedPointer<AbstractDocument> document;
    if (map.flag(u"isReturnBySale")) {
        document = QSharedPointer<ReturnBySale>::create(saleFrom(map), head, identity);
    } else {
        document = QSharedPointer<Cheque>::create(head, identity);
    }
    ChequeContents& contents = *document.dynamicCast<ChequeContents>();
    readLines(contents, map);
    readPayments(contents, map.maps(u"payments"));
    readCards(contents, map.maps(u"cards"));
    for (const QString& number : map.texts(u"coupons")) {
        contents.coupons.append(QSharedPointer<CouponRecord>::create(number));
    }
    readImpacts(contents, map.maps(u"impacts"));
    readBonusRecords(contents, map.maps(u"bonusRecords"));
    contents.pluginDataJson = map.text(u"pluginDataJson");
    readPluginValues(*document, map.map(u"pluginValues"));
    return document;
} catch (const BasicException& refusal) {
    throw DamagedDocument(refusal.tr());
}

} // namespace till
