#include "till/store/document_json.h"

#include "host/document/back_by_sale_document.h"
#include "host/facilities/exceptions.h"
#include "host/facilities/serder.h"
#include "till/document/card.h"
#include "till/document/cheque.h"
#include "till/document/coupon_record.h"
#include "till/document/payment.h"
#include "till/document/plugin_values.h"
#include "till/document/return_by_sale.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <stdexcept>

namespace till {

namespace {

    constexpr int formatVersion = 1;

    [[noreturn]] void refuse(const QString& reason)
    {
        tr::Tr text(QStringLiteral("tillDocumentFailed"), QStringLiteral("Документ не записывается и не читается: %1"));
        throw BasicException(text.arg(tr::Tr(reason)));
    }

    [[nodiscard]] QVariant time(const QDateTime& value)
    {
        return value.isValid() ? QVariant(value.toString(Qt::ISODateWithMs)) : QVariant();
    }

    [[nodiscard]] QDateTime timeOf(const QVariant& value)
    {
        return QDateTime::fromString(value.toString(), Qt::ISODateWithMs);
    }

    [[nodiscard]] QVariant optional(const std::optional<double>& value)
    {
        return value ? QVariant(*value) : QVariant();
    }

    [[nodiscard]] std::optional<double> optionalOf(const QVariant& value)
    {
        return value.isNull() ? std::nullopt : std::optional(value.toDouble());
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

    [[nodiscard]] ChequeHead headOf(const QVariantMap& map)
    {
        ChequeHead head;
        head.type = map["type"].toInt();
        head.number = map["number"].toInt();
        head.shift = map["shift"].toInt();
        head.openTime = timeOf(map["openTime"]);
        head.closeTime = timeOf(map["closeTime"]);
        head.offlineAllowed = map["offlineAllowed"].toBool();
        head.deferred = map["deferred"].toBool();
        head.sourceDocumentId = map["sourceDocumentId"].isNull() ? QVariant() : map["sourceDocumentId"];
        head.documentSum = optionalOf(map["documentSum"]);
        head.sumToPay = optionalOf(map["sumToPay"]);
        return head;
    }

    [[nodiscard]] QVariantList lineList(const QList<QSharedPointer<GoodsItem>>& lines)
    {
        QVariantList list;
        for (const QSharedPointer<GoodsItem>& item : lines) {
            const auto line = item.dynamicCast<Line>();
            if (!line) {
                refuse(QStringLiteral("a line is not of this till"));
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

    [[nodiscard]] LineFields lineOf(const QVariantMap& map)
    {
        LineFields fields;
        fields.posnum = map["posnum"].toInt();
        fields.code = map["code"].toString();
        fields.barcode = map["barcode"].toString();
        fields.price = map["price"].toDouble();
        fields.minPrice = map["minPrice"].toDouble();
        fields.quantity = map["quantity"].toDouble();
        fields.sum = optionalOf(map["sum"]);
        fields.bonusSpendAllowed = map["bonusSpendAllowed"].toBool();
        fields.bonusEarnAllowed = map["bonusEarnAllowed"].toBool();
        fields.discountAllowed = map["discountAllowed"].toBool();
        fields.onlyExternalDiscountAllowed = map["onlyExternalDiscountAllowed"].toBool();
        return fields;
    }

    void readLines(ChequeContents& contents, const QVariantMap& map)
    try {
        for (const QVariant& line : map["lines"].toList()) {
            contents.addLine(lineOf(line.toMap()));
        }
        for (const QVariant& line : map["deletedLines"].toList()) {
            const LineFields fields = lineOf(line.toMap());
            contents.addLine(fields);
            contents.remove(fields.posnum);
        }
        if (const int current = map["currentPosition"].toInt(); contents.currentPosition().state == Position::present) {
            contents.selectPosition(current);
        }
    } catch (const std::invalid_argument& reason) {
        refuse(QString::fromUtf8(reason.what()));
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

    void readPayments(ChequeContents& contents, const QVariantList& list)
    {
        for (const QVariant& entry : list) {
            const QVariantMap map = entry.toMap();
            contents.payments.append(QSharedPointer<Payment>::create(
                PaymentFields { map["amount"].toDouble(), map["cardNumber"].toString(), map["valutOperation"].toInt(),
                                map["opCode"].toInt() }));
        }
    }

    [[nodiscard]] QVariantList cardList(const ChequeContents& contents)
    {
        QVariantList list;
        const QMap<int, ChequeContents::AttachedCard> cards = contents.attachedCards();
        for (auto it = cards.cbegin(); it != cards.cend(); ++it) {
            const auto card = it->record.dynamicCast<Card>();
            if (!card) {
                refuse(QStringLiteral("a card is not of this till"));
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

    void readCards(ChequeContents& contents, const QVariantList& list)
    {
        for (const QVariant& entry : list) {
            const QVariantMap map = entry.toMap();
            CardFields fields;
            fields.number = map["number"];
            fields.codeInternal = map["codeInternal"].toInt();
            fields.bonusBalance = map["bonusBalance"].isNull() ? QVariant() : map["bonusBalance"];
            fields.pointsForSpend = map["pointsForSpend"].toDouble();
            fields.spentSum = map["spentSum"].toDouble();
            contents.setCard(map["mode"].toInt(), map["type"].toInt(), QSharedPointer<Card>::create(fields));
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

    [[nodiscard]] QVariantList impactList(const ChequeContents& contents)
    {
        QVariantList list;
        for (const QSharedPointer<DocumentImpact>& impact : contents.impacts) {
            QVariant form;
            serder::default_serder_type<DocumentImpact>::strategy.serialize(&form, impact.data(),
                                                                            DocumentImpact::staticMetaObject);
            list.append(QVariantMap { { "kind", kindOf(impact) }, { "impact", form } });
        }
        return list;
    }

    void readImpacts(ChequeContents& contents, const QVariantList& list)
    {
        for (const QVariant& entry : list) {
            const QVariantMap map = entry.toMap();
            const QString kind = map["kind"].toString();
            QSharedPointer<DocumentImpact> impact;
            if (kind == discountImpact) {
                impact = QSharedPointer<DiscountImpact>::create();
            } else if (kind == bonusImpact) {
                impact = QSharedPointer<BonusImpact>::create();
            } else {
                impact = QSharedPointer<DocumentImpact>::create();
            }
            serder::default_serder_type<DocumentImpact>::strategy.deserialize(impact.data(), map["impact"],
                                                                              DocumentImpact::staticMetaObject);
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

    void readBonusRecords(ChequeContents& contents, const QVariantList& list)
    {
        for (const QVariant& entry : list) {
            const QVariantMap map = entry.toMap();
            contents.bonusRecords.append(
                { map["cardNumber"].toString(), map["amount"].toDouble(), timeOf(map["dateTime"]) });
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

    [[nodiscard]] QVariantMap pluginMap(PluginData& data)
    {
        QVariantMap map;
        const auto& groups = pluginValuesOf(data);
        for (auto it = groups.cbegin(); it != groups.cend(); ++it) {
            map.insert(it.key(), QVariant(it.value()));
        }
        return map;
    }

    void readPluginValues(PluginData& data, const QVariantMap& map)
    {
        for (auto it = map.cbegin(); it != map.cend(); ++it) {
            pluginValuesOf(data).insert(it.key(), it->toMap());
        }
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

    [[nodiscard]] QSharedPointer<SaleDocumentSource> saleFrom(const QVariant& value)
    {
        if (value.isNull()) {
            return nullptr;
        }
        const QVariantMap map = value.toMap();
        auto sale = QSharedPointer<SaleDocumentSource>::create();
        sale->chequeNumber = map["chequeNumber"].toInt();
        sale->openTime = timeOf(map["openTime"]);
        sale->closeTime = timeOf(map["closeTime"]);
        sale->pluginDataJson = map["pluginDataJson"].toString();
        return sale;
    }

} // namespace

QByteArray toJson(const QSharedPointer<AbstractDocument>& document)
{
    const auto contents = document.dynamicCast<ChequeContents>();
    if (!contents) {
        refuse(QStringLiteral("the document is not of this till"));
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
    return QJsonDocument(QJsonObject::fromVariantMap(map)).toJson(QJsonDocument::Compact);
}

QSharedPointer<AbstractDocument> documentFromJson(const QByteArray& text)
{
    QJsonParseError error;
    const QVariantMap map = QJsonDocument::fromJson(text, &error).object().toVariantMap();
    if (error.error != QJsonParseError::NoError) {
        refuse(error.errorString());
    }
    const QString identity = map["identity"].toString();
    if (map["version"].toInt() != formatVersion || identity.isEmpty()) {
        refuse(QStringLiteral("the form is not known"));
    }

    const ChequeHead head = headOf(map["head"].toMap());
    QSharedPointer<AbstractDocument> document;
    if (map["isReturnBySale"].toBool()) {
        document = QSharedPointer<ReturnBySale>::create(saleFrom(map[saleRecord]), head, identity);
    } else {
        document = QSharedPointer<Cheque>::create(head, identity);
    }
    ChequeContents& contents = *document.dynamicCast<ChequeContents>();
    readLines(contents, map);
    readPayments(contents, map["payments"].toList());
    readCards(contents, map["cards"].toList());
    for (const QString& number : map["coupons"].toStringList()) {
        contents.coupons.append(QSharedPointer<CouponRecord>::create(number));
    }
    readImpacts(contents, map["impacts"].toList());
    readBonusRecords(contents, map["bonusRecords"].toList());
    contents.pluginDataJson = map["pluginDataJson"].toString();
    readPluginValues(*document, map["pluginValues"].toMap());
    return document;
}

} // namespace till
