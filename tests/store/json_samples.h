#pragma once

#include <QByteArray>

/// A stored document with one entry of each kind, as the till writes it.
inline const QByteArray storedReturn = R"({
    "version": 1, "identity": "back", "isReturnBySale": true, "currentPosition": 2,
    "sale": {"chequeNumber": 1041, "openTime": "2024-03-04T10:00:01.005+00:00", "closeTime": null,
             "pluginDataJson": "{}"},
    "head": {"type": 25, "number": 1042, "shift": 17, "openTime": "2024-03-05T14:07:09.123+00:00", "closeTime": null,
             "offlineAllowed": true, "deferred": false, "sourceDocumentId": "77",
             "documentSum": 59.5, "sumToPay": null},
    "lines": [
        {"posnum": 2, "code": "0042", "barcode": "", "price": 10.5, "minPrice": 0, "quantity": 2, "sum": 20.5,
         "bonusSpendAllowed": true, "bonusEarnAllowed": true, "discountAllowed": true,
         "onlyExternalDiscountAllowed": false}],
    "deletedLines": [
        {"posnum": 1, "code": "0041", "barcode": "4600051000057", "price": 1, "minPrice": 0.5, "quantity": 1,
         "sum": null, "bonusSpendAllowed": false, "bonusEarnAllowed": true, "discountAllowed": true,
         "onlyExternalDiscountAllowed": true}],
    "payments": [{"amount": 20.5, "cardNumber": "0070", "valutOperation": 3, "opCode": 70}],
    "cards": [{"mode": 7, "type": 3, "number": "9000000001", "codeInternal": 5, "bonusBalance": 512.25,
               "pointsForSpend": 1.5, "spentSum": 0}],
    "coupons": ["vantiro-10"],
    "impacts": [{"kind": "bonus", "values": {"Vantiro": {"reason": "x"}}, "impact": {
        "totals": {"discountName": "Баллы Vantiro", "discountSum": 1.25, "discountType": 5},
        "details": {"2": {"discountSum": 1.25, "position": 2}}}}],
    "bonusRecords": [{"cardNumber": "0009", "amount": 12.5, "dateTime": null}],
    "pluginDataJson": "{\"vantiro\":{}}",
    "pluginValues": {"Vantiro": {"offlineMode": true}}
})";
