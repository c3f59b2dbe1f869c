#pragma once

#include <QMetaType>

/// The enumerations of the document model. Only the values that plug-ins pass or test have a name here; a host may use
/// further ones, which pass through plug-ins untouched. Each has a fixed underlying type, so every `int` is a value.

/// What an impact acts on.
struct EDiscountObject {
    enum type : int {
        cheque = 0,
        position = 1,
    };
};

/// What the value of an impact is.
struct EDiscountType {
    enum type : int {
        percent = 1,
        sum = 2,
        fixedPrice = 3,
        bonus = 5,
    };
};

/// The manner in which an impact acts.
struct EDiscountMode {
    enum type : int {
        loyalty = 2, // every record that a loyalty plug-in makes
        tender = 6,
    };
};

/// Who made an impact.
struct EImpactSource {
    enum source : int {
        host = 0, // any source but a loyalty system
        loyaltySystem = 2,
    };
};

struct ECoupon {
    enum Type : int {
        loyaltySystem = 3, // a coupon that the loyalty plug-in has accepted
    };
};

/// How a card number was entered. The values are the host's: plug-ins hand them on and test none.
enum class ECardNumberType : int {};

/// Kinds of document. Others occur, and each reader treats them as none of these.
struct EDocumentType {
    enum type : int {
        sale = 1,
        goodsReturn = 2,
        returnBySale = 25,
    };
};

Q_DECLARE_METATYPE(ECoupon::Type)
