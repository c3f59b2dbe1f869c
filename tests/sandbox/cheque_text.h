#pragma once

#include <string>

/// One line of a cheque, in the words of the wire.
struct LineText {
    std::string number = "1";
    std::string item = "2001";
    std::string amount = "100.00";
    std::string bonus = "0.00";
    std::string quantity = "1.000";
    std::string minAmount = "0.00";
    std::string noPayBonus = "false";
    std::string noAddBonus = "false";
    std::string noDiscounts = "false";
    std::string inside = ""; // coupons
    std::string discounts = "";

    [[nodiscard]] std::string xml() const;
};

/// A cheque, in the words of the wire. What a test does not name is an open sale of 100 roubles with a card.
struct ChequeText {
    std::string uid = "11116E73-1C03-5DE6-9130-5F9925AE8AB4";
    std::string number = "1042";
    std::string openTime = "2024-03-05T14:07:09";
    std::string amount = "100.00";
    std::string spent = "0.00";
    std::string type = "Sale";
    std::string status = "Open";
    std::string card = "9000000001"; // empty for none
    std::string certificate = ""; // the sum of one
    std::string saleNumber = ""; // of a return; empty for none
    std::string saleOpenTime = "2024-03-05T14:07:09";
    std::string lines = LineText().xml();
    std::string coupons = "";

    [[nodiscard]] std::string xml() const;
    /// As the parameter of an operation.
    [[nodiscard]] std::string parameter() const;
};

/// As the parameter of an operation, in a CDATA section.
[[nodiscard]] std::string chequeParameter(const std::string& xml);

[[nodiscard]] std::string coupon(const std::string& number);

/// A closed sale, a closed return of the first one, in the words of the wire.
[[nodiscard]] ChequeText closedSale();
[[nodiscard]] ChequeText closedReturn();
