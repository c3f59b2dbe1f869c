#include "till/store/document_json.h"

#include "host/document/back_by_sale_document.h"
#include "host/facilities/serder.h"
#include "till/document/card.h"
#include "till/document/cheque.h"
#include "till/document/coupon_record.h"
#include "till/document/payment.h"
#include "till/document/plugin_values.h"
#include "till/document/return_by_sale.h"
#include "till/store/stored_map.h"
#include "till/store/stored_text.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <stdexcept>

namespace till {

namespace {

    constexpr int formatVersion = 1;

    /// With the distance from UTC: the time of the till alone comes twice in the hour in which clocks are set back.
    [[nodiscard]] QVariant time(const QDateTime& value)
    {
        return value.isValid() ? value.toOffsetFromUtc(value.offsetFromUtc()).toString(Qt::ISODateWithMs) : QVariant();
    }

    [[nodiscard]] QVariant optional(const std::optional<double>& value)
    {
        return value ? QVariant(*value) : QVariant();
    }

    /// JSON has no form for a number that is infinite or none: it would come back as nothing, or not at all.
    void refuseEndless(const QVariant& value)
    {
        const QMetaType type = value.metaType();
        if ((type == QMetaType::fromType<double>() || type == QMetaType::fromType<float>())
            && !std::isfinite(value.toDouble())) {
            refuseDocument(QStringLiteral("a number is infinite or none"));
        }
        if (type == QMetaType::fromType<QVariantMap>()) {
            for (const QVariant& part : value.toMap()) {
                refuseEndless(part);
            }
        } else if (type == QMetaType::fromType<QVariantList>()) {
            for (const QVariant& part : value.toList()) {
                refuseEndless(part);
            }
        }
    }

    [[nodiscard]] QVariantMap headMap(const ChequeHead& head)
    {
        return {
            { "type", head.type },
            { "number", head.number },
            { "shift", head.shift },
            { "openTime", time(head.openTime) },
            { "closeTime", time(head.closeTime) },
            { "offlineAllowed", head.offlineAllowed },
            { "deferred", head.deferred },
            { "sourceDocumentId", head.sourceDocumentId },
            { "documentSum", optional(head.documentSum) },
            { "sumToPay", optional(head.sumToPay) },
        };
    }

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

    [[nodiscard]] QVariantList lineList(const QList<QSharedPointer<GoodsItem>>& lines)
    {
        QVariantList list;
        for (const QSharedPointer<GoodsItem>& item : lines) {
            const auto line = item.dynamicCast<Line>();
            if (!line) {
                refuseDocument(QStringLiteral("a line is not of this till"));
            }
            const LineFields& fields = line->fields;
            list.append(QVariantMap {
                { "posnum", fields.posnum },
                { "code", fields.code },
                { "barcode", fields.barcode },
                { "price", fields.price },
                { "minPrice", fields.minPrice },
                { "quantity", fields.quantity },
                { "sum", optional(fields.sum) },
                { "bonusSpendAllowed", fields.bonusSpendAllowed },
                { "bonusEarnAllowed", fields.bonusEarnAllowed },
                { "discountAllowed", fields.discountAllowed },
                { "onlyExternalDiscountAllowed", fields.onlyExternalDiscountAllowed },
            });
        }
        return list;
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

    [[nodiscard]] QVariantList paymentList(const ChequeContents& contents)
    {
        QVariantList list;
        for (const QSharedPointer<MoneyItem>& payment : contents.payments) {
            list.append(QVariantMap {
                { "amount", payment->getAmount() },
                { "cardNumber", payment->getCardNum() },
                { "valutOperation", payment->getValutOperation() },
                { "opCode", payment->getOpCode() },
            });
        }
        return list;
    }

    void readPayments(ChequeContents& contents, const QList<StoredMap>& list)
    {
        for (const StoredMap& map : list) {
            contents.payments.append(QSharedPointer<Payment>::create(PaymentFields {
                map.number(u"amount"), map.text(u"cardNumber"), map.whole(u"valutOperation"), map.whole(u"opCode") }));
        }
    }

    [[nodiscard]] QVariantList cardList(const ChequeContents& contents)
    {
        QVariantList list;
        const QMap<int, ChequeContents::AttachedCard> cards = contents.attachedCards();
        for (auto it = cards.cbegin(); it != cards.cend(); ++it) {
            const auto card = it->record.dynamicCast<Card>();
            if (!card) {
                refuseDocument(QStringLiteral("a card is not of this till"));
            }
            list.append(QVariantMap {
                { "mode", it.key() },
                { "type", it->type },
                { "number", card->fields.number },
                { "codeInternal", card->fields.codeInternal },
                { "bonusBalance", card->fields.bonusBalance },
                { "pointsForSpend", card->fields.pointsForSpend },
                { "spentSum", card->fields.spentSum },
            });
        }
        return list;
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

    const QString discountImpact = QStringLiteral("discount");
    const QString bonusImpact = QStringLiteral("bonus");

    [[nodiscard]] QString kindOf(const QSharedPointer<DocumentImpact>& impact)
    {
        if (impact.dynamicCast<DiscountImpact>()) {
            return discountImpact;
        }
        return impact.dynamicCast<BonusImpact>() ? bonusImpact : QString();
    }

    [[nodiscard]] QVariantMap pluginMap(PluginData& data)
    {
        QVariantMap map;
        const auto& groups = pluginValuesOf(data);
        for (auto it = groups.cbegin(); it != groups.cend(); ++it) {
            map.insert(it.key(), QVariant(it.value()));
        }
        return map;
    }

    void readPluginValues(PluginData& data, const StoredMap& groups)
    {
        for (const QString& group : groups.keys()) {
            pluginValuesOf(data).insert(group, groups.map(group).values());
        }
    }

    [[nodiscard]] QVariantList impactList(const ChequeContents& contents)
    {
        QVariantList list;
        for (const QSharedPointer<DocumentImpact>& impact : contents.impacts) {
            QVariant form;
            serder::default_serder_type<DocumentImpact>::strategy.serialize(&form, impact.data(),
                                                                            DocumentImpact::staticMetaObject);
            list.append(QVariantMap {
                { "kind", kindOf(impact) },
                { "impact", form },
                { "values", pluginMap(*impact) },
            });
        }
        return list;
    }

    [[nodiscard]] QSharedPointer<DocumentImpact> impactOf(const QString& kind)
    {
        if (kind == discountImpact) {
            return QSharedPointer<DiscountImpact>::create();
        }
        if (kind == bonusImpact) {
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

    [[nodiscard]] QVariantList bonusRecordList(const ChequeContents& contents)
    {
        QVariantList list;
        for (const DocumentBonusRecord& record : contents.bonusRecords) {
            list.append(QVariantMap {
                { "cardNumber", record.cardNumber },
                { "amount", record.amount },
                { "dateTime", time(record.dateTime) },
            });
        }
        return list;
    }

    void readBonusRecords(ChequeContents& contents, const QList<StoredMap>& list)
    {
        for (const StoredMap& map : list) {
            contents.bonusRecords.append(
                { map.text(u"cardNumber"), map.number(u"amount"), map.momentIfAny(u"dateTime") });
        }
    }

    [[nodiscard]] QStringList couponList(const ChequeContents& contents)
    {
        QStringList list;
        for (const QSharedPointer<Coupon>& coupon : contents.coupons) {
            list.append(coupon->getNumber());
        }
        return list;
    }

    const QString saleRecord = QStringLiteral("sale");

    [[nodiscard]] QVariant saleOf(const QSharedPointer<AbstractDocument>& document)
    {
        const auto back = document.dynamicCast<BackBySaleDocument>();
        const auto sale = back ? back->getSource() : nullptr;
        if (!sale) {
            return QVariant();
        }
        return QVariantMap {
            { "chequeNumber", sale->chequeNumber },
            { "openTime", time(sale->openTime) },
            { "closeTime", time(sale->closeTime) },
            { "pluginDataJson", sale->pluginDataJson },
        };
    }

    [[nodiscard]] QSharedPointer<SaleDocumentSource> saleFrom(const StoredMap& document)
    {
        if (document.isNull(saleRecord)) {
            return nullptr;
        }
        const StoredMap map = document.map(saleRecord);
        auto sale = QSharedPointer<SaleDocumentSource>::create();
        sale->chequeNumber = map.whole(u"chequeNumber");
        sale->openTime = map.momentIfAny(u"openTime");
        sale->closeTime = map.momentIfAny(u"closeTime");
        sale->pluginDataJson = map.text(u"pluginDataJson");
        return sale;
    }

} // namespace

QByteArray toJson(const QSharedPointer<AbstractDocument>& document)
{
    const auto contents = document.dynamicCast<ChequeContents>();
    if (!contents) {
        refuseDocument(QStringLiteral("the document is not of this till"));
    }
    const QVariantMap map {
        { "version", formatVersion },
        { "identity", contents->identity() },
        { "isReturnBySale", !document.dynamicCast<BackBySaleDocument>().isNull() },
        { saleRecord, saleOf(document) },
        { "head", headMap(contents->head) },
        { "lines", lineList(contents->liveLines()) },
        { "deletedLines", lineList(contents->deletedLines()) },
        { "currentPosition", contents->currentPosition().number },
        { "payments", paymentList(*contents) },
        { "cards", cardList(*contents) },
        { "coupons", couponList(*contents) },
        { "impacts", impactList(*contents) },
        { "bonusRecords", bonusRecordList(*contents) },
        { "pluginDataJson", contents->pluginDataJson },
        { "pluginValues", pluginMap(*document) },
    };
    refuseEndless(map);
    return QJsonDocument(QJsonObject::fromVariantMap(map)).toJson(QJsonDocument::Compact);
}

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
    if (map.whole(u"version") != formatVersion || identity.isEmpty()) {
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
