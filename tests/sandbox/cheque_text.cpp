#include "tests/sandbox/cheque_text.h"

std::string LineText::xml() const
{
    return "<ChequeLine ChequeLineNo=\"" + number + "\" NoPayBonus=\"" + noPayBonus + "\" NoAddBonus=\"" + noAddBonus
        + "\" NoDiscounts=\"" + noDiscounts + "\" Price=\"100.00\" Quantity=\"" + quantity + "\" Amount=\"" + amount
        + "\" MinAmount=\"" + minAmount + "\" MinPrice=\"0.00\" MaxDiscount=\"100.0\" BonusDiscount=\"" + bonus
        + "\"><Item ItemID=\"" + item + "\" Barcode=\"\"/><Discounts>" + discounts + "</Discounts>" + inside
        + "</ChequeLine>";
}

std::string ChequeText::xml() const
{
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><Cheque "
                       "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
                       "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" ShiftNo=\"17\" ChequeUID=\""
        + uid + "\" ChequeNo=\"" + number + "\" OpenTime=\"" + openTime
        + "\" CloseTime=\"2024-03-05T14:09:30\" Amount=\"" + amount + "\" SubtractedBonus=\"" + spent
        + "\" PositionCount=\"1\" ChequeType=\"" + type + "\" Status=\"" + status + "\">";
    if (!card.empty()) {
        text += "<DiscountCard DiscountCardID=\"0\" EnteredAsPhoneNumber=\"false\" SubtractAmount=\"" + spent
            + "\" SubtractedBonus=\"0\" DiscountCardNo=\"" + card + "\" BonusCard=\"true\"/>";
    }
    if (!certificate.empty()) {
        text += "<DiscountCard DiscountCardID=\"0\" EnteredAsPhoneNumber=\"false\" SubtractAmount=\"" + certificate
            + "\" SubtractedBonus=\"0\" DiscountCardNo=\"CERT-0001\" BonusCard=\"false\"/>";
    }
    if (!saleNumber.empty()) {
        text += "<SaleCheque ChequeNo=\"" + saleNumber + "\" OpenTime=\"" + saleOpenTime
            + "\" CloseTime=\"\" Amount=\"0\" SubtractedBonus=\"0.00\" PositionCount=\"0\" Status=\"Closed\" "
              "ChequeType=\"Sale\"><ChequeLines/></SaleCheque>";
    }
    return text + "<ChequeLines>" + lines + "</ChequeLines><Discounts/><Payments/><Messages/>" + coupons + "</Cheque>";
}

std::string ChequeText::parameter() const
{
    return chequeParameter(xml());
}

std::string chequeParameter(const std::string& xml)
{
    return "<tem:cheque><![CDATA[" + xml + "]]></tem:cheque>";
}

std::string coupon(const std::string& number)
{
    return "<Coupon CouponNo=\"" + number + "\"/>";
}

ChequeText closedSale()
{
    ChequeText cheque;
    cheque.status = "Closed";
    return cheque;
}

ChequeText closedReturn()
{
    ChequeText cheque;
    cheque.uid = "22226E73-1C03-5DE6-9130-5F9925AE8AB4";
    cheque.number = "1043";
    cheque.type = "Return";
    cheque.status = "Closed";
    cheque.saleNumber = "1042";
    return cheque;
}
