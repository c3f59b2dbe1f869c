#!/usr/bin/env python3
"""Writes the golden cheques of a thousand lines.

Nobody writes a thousand lines by hand, and a copy of what the program gave out would prove nothing. This script works
the cheque out anew, in whole kopecks and thousandths, from the same plain description of the document that the test
follows. Run it in its own folder after a change of the cheque's format; the files are kept with it.

The document, for the position n from 1 to 1000:
  code           "G" and n                      barcode  460000000000 + n, empty for each seventh line
  price          n kopecks over 10 roubles      quantity 1 + n mod 3
  minimum price  half the price, rounded down to a kopeck
  points spent   1.50 roubles on each tenth line
  discount       5% of the server's, code n, of 0.25 roubles, on each fourth line
  coupon         "P-" and n on each hundredth line
  the sum is price times quantity less points and discount
"""

COUNT = 1000


def money(kopecks):
    return f"{kopecks // 100}.{kopecks % 100:02d}"


def line(n, with_coupons):
    price = 1000 + n
    quantity = 1 + n % 3
    points = 150 if n % 10 == 0 else 0
    discount = 25 if n % 4 == 0 else 0
    least = price // 2
    paid = price * quantity - points - discount
    text = [
        f'    <ChequeLine ChequeLineNo="{n}" NoPayBonus="false" NoAddBonus="false" NoDiscounts="false"'
        f' Price="{money(price)}" Quantity="{quantity}.000" Amount="{money(paid + points)}"'
        f' MinAmount="{money(least * quantity)}" MinPrice="{money(least)}" MaxDiscount="100.0"'
        f' BonusDiscount="{money(points)}">',
        f'      <Item ItemID="G{n}" Barcode="{"" if n % 7 == 0 else 460000000000 + n}"/>',
    ]
    if discount:
        text += [
            '      <Discounts>',
            f'        <Discount DiscountID="{n}" Type="Percent" Percent="5" Amount="{money(discount)}"/>',
            '      </Discounts>',
        ]
    else:
        text += ['      <Discounts/>']
    if with_coupons and n % 100 == 0:
        text += [f'      <Coupon CouponNo="P-{n}"/>']
    return paid, points, text + ['    </ChequeLine>']


def cheque(status, is_ours=True):
    """One that is not ours, the any form, tells of neither card nor coupons."""
    lines = [line(n, is_ours) for n in range(1, COUNT + 1)]
    paid = sum(entry[0] for entry in lines)
    points = sum(entry[1] for entry in lines)
    text = [
        '<?xml version="1.0" encoding="UTF-8"?>',
        '<Cheque xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:xsd="http://www.w3.org/2001/XMLSchema"',
        '    ShiftNo="17" ChequeUID="11116E73-1C03-5DE6-9130-5F9925AE8AB4" ChequeNo="1042"',
        '    OpenTime="2024-03-05T14:07:09" CloseTime="2024-03-05T14:07:09"',
        f'    Amount="{money(paid)}" SubtractedBonus="{money(points)}" PositionCount="{COUNT}" ChequeType="Sale"'
        f' Status="{status}">',
    ]
    if is_ours:
        text += [
            f'  <DiscountCard DiscountCardID="0" EnteredAsPhoneNumber="false" SubtractAmount="{money(points)}"',
            '      SubtractedBonus="0" DiscountCardNo="9000000001" BonusCard="true"/>',
        ]
    text += ['  <ChequeLines>']
    for entry in lines:
        text += entry[2]
    text += ['  </ChequeLines>', '  <Discounts/>', '  <Payments/>', '  <Messages/>', '</Cheque>', '']
    return "\n".join(text)


for form, status, is_ours in (
    ("ordinary", "Open", True),
    ("accrual", "Closed", True),
    ("canceled", "Canceled", True),
    ("any", "Closed", False),
):
    with open(f"25-thousand-lines.{form}.xml", "w", encoding="utf-8", newline="\n") as file:
        file.write(cheque(status, is_ours))
