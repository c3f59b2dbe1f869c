#include "sandbox/cheque.h"
#include "sandbox/cheque_attributes.h"
#include "sandbox/refusal.h"
#include "sandbox/xml_tree.h"

#include <algorithm>

namespace sandbox {

namespace {

[[nodiscard]] pugi::xml_node onlyChild(const pugi::xml_node& element, const char* name)
{
    const pugi::xml_node child = element.child(name);
    if (!child || child.next_sibling(name)) {
        throw Refusal(std::string("Неверный чек: в элементе ") + element.name() + " нет единственного " + name);
    }
    return child;
}

[[nodiscard]] ChequeType typeOf(const pugi::xml_node& cheque)
{
    const std::string word = textAttribute(cheque, "ChequeType");
    for (const ChequeType type : { ChequeType::sale, ChequeType::back, ChequeType::other }) {
        if (word == wordOf(type)) {
            return type;
        }
    }
    throw Refusal("Неверный чек: неизвестный ChequeType");
}

[[nodiscard]] ChequeStatus statusOf(const pugi::xml_node& cheque)
{
    const std::string word = textAttribute(cheque, "Status");
    for (const ChequeStatus status : { ChequeStatus::open, ChequeStatus::closed, ChequeStatus::canceled }) {
        if (word == wordOf(status)) {
            return status;
        }
    }
    throw Refusal("Неверный чек: неизвестный Status");
}

[[nodiscard]] std::vector<std::string> couponsOf(const pugi::xml_node& parent)
{
    std::vector<std::string> coupons;
    for (const pugi::xml_node& coupon : parent.children("Coupon")) {
        coupons.push_back(textAttribute(coupon, "CouponNo"));
    }
    return coupons;
}

[[nodiscard]] ChequeLine lineOf(const pugi::xml_node& element)
{
    ChequeLine line;
    line.number = integerAttribute(element, "ChequeLineNo");
    line.takesPoints = !booleanAttribute(element, "NoPayBonus");
    line.earnsPoints = !booleanAttribute(element, "NoAddBonus");
    line.takesDiscounts = !booleanAttribute(element, "NoDiscounts");
    static_cast<void>(moneyAttribute(element, "Price"));
    line.quantity = quantityAttribute(element, "Quantity");
    line.amount = moneyAttribute(element, "Amount");
    line.minAmount = moneyAttribute(element, "MinAmount");
    static_cast<void>(moneyAttribute(element, "MinPrice"));
    static_cast<void>(textAttribute(element, "MaxDiscount"));
    line.bonus = moneyAttribute(element, "BonusDiscount");
    const pugi::xml_node item = onlyChild(element, "Item");
    line.item = textAttribute(item, "ItemID");
    static_cast<void>(textAttribute(item, "Barcode"));
    for (const pugi::xml_node& discount : onlyChild(element, "Discounts").children("Discount")) {
        static_cast<void>(textAttribute(discount, "Type"));
        static_cast<void>(textAttribute(discount, "Percent"));
        line.discounts.push_back({ integerAttribute(discount, "DiscountID"), moneyAttribute(discount, "Amount") });
    }
    line.coupons = couponsOf(element);
    return line;
}

[[nodiscard]] std::vector<ChequeLine> linesOf(const pugi::xml_node& cheque)
{
    std::vector<ChequeLine> lines;
    std::vector<int> numbers;
    for (const pugi::xml_node& element : onlyChild(cheque, "ChequeLines").children("ChequeLine")) {
        lines.push_back(lineOf(element));
        numbers.push_back(lines.back().number);
    }
    std::ranges::sort(numbers);
    if (std::ranges::adjacent_find(numbers) != numbers.end()) {
        throw Refusal("Неверный чек: повторный ChequeLineNo");
    }
    return lines;
}

/// Certificates stand in the same element as the loyalty card and are told from it by BonusCard alone.
[[nodiscard]] std::optional<ChequeCard> cardOf(const pugi::xml_node& cheque)
{
    std::optional<ChequeCard> card;
    for (const pugi::xml_node& element : cheque.children("DiscountCard")) {
        ChequeCard read { textAttribute(element, "DiscountCardNo"), moneyAttribute(element, "SubtractAmount") };
        if (!booleanAttribute(element, "BonusCard")) {
            continue;
        }
        if (card) {
            throw Refusal("Неверный чек: две карты");
        }
        card = std::move(read);
    }
    return card;
}

[[nodiscard]] std::optional<SaleReference> saleOf(const pugi::xml_node& cheque)
{
    const pugi::xml_node sale = cheque.child("SaleCheque");
    if (!sale) {
        return {};
    }
    static_cast<void>(textAttribute(sale, "CloseTime"));
    return SaleReference { storedIntegerAttribute(sale, "ChequeNo"), timeAttribute(sale, "OpenTime") };
}

}

std::string_view wordOf(ChequeType type)
{
    switch (type) {
    case ChequeType::sale:
        return "Sale";
    case ChequeType::back:
        return "Return";
    case ChequeType::other:
        break;
    }
    return "";
}

std::string_view wordOf(ChequeStatus status)
{
    switch (status) {
    case ChequeStatus::open:
        return "Open";
    case ChequeStatus::closed:
        return "Closed";
    case ChequeStatus::canceled:
        break;
    }
    return "Canceled";
}

Cheque readCheque(std::string_view text)
{
    pugi::xml_document document;
    parseXml(document, text, "Неверный чек");
    const pugi::xml_node root = document.document_element();
    if (std::string_view(root.name()) != "Cheque") {
        throw Refusal("Неверный чек: корневой элемент не Cheque");
    }
    Cheque cheque;
    cheque.uid = uidAttribute(root, "ChequeUID");
    cheque.number = storedIntegerAttribute(root, "ChequeNo");
    cheque.shift = storedIntegerAttribute(root, "ShiftNo");
    cheque.openTime = timeAttribute(root, "OpenTime");
    cheque.closeTime = timeAttribute(root, "CloseTime");
    cheque.type = typeOf(root);
    cheque.status = statusOf(root);
    cheque.amount = moneyAttribute(root, "Amount");
    static_cast<void>(moneyAttribute(root, "SubtractedBonus"));
    const int positions = integerAttribute(root, "PositionCount");
    cheque.card = cardOf(root);
    cheque.sale = saleOf(root);
    cheque.lines = linesOf(root);
    if (positions < 0) {
        throw Refusal("Неверный чек: отрицательный PositionCount");
    }
    for (const char* const section : { "Discounts", "Payments", "Messages" }) {
        static_cast<void>(onlyChild(root, section));
    }
    cheque.coupons = couponsOf(root);
    cheque.canonical = canonicalText(root);
    return cheque;
}

}
