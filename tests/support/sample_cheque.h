#pragma once

#include "host/document/abstract_document.h"
#include "till/document/card.h"
#include "till/document/cheque.h"
#include "till/document/return_by_sale.h"

#include <QByteArray>
#include <QSharedPointer>
#include <QString>

/// The cheque that the dialogues of this folder are about, and its XML, written by hand: one line of two pieces, 179.80
/// in all; cheque 5 of shift 3, opened on 31 January 2026 at 10:15.
namespace sample {

/// The open document, of that type; has no card.
[[nodiscard]] QSharedPointer<till::Cheque> cheque(int type);
/// A return of the same goods, which knows its sale: cheque 4, of the day before, from 18:00 to 18:05.
[[nodiscard]] QSharedPointer<till::ReturnBySale> returnBySale();

/// Attaches the card 9000000001, whose internal code is 77.
QSharedPointer<till::Card> addCard(till::ChequeContents& document);

/// A spending of points in the name of this system: on the whole `total`, on the line 1 `onLine`.
[[nodiscard]] QSharedPointer<BonusImpact> points(double total, double onLine);

/// The start tag of `Cheque`, from the amount on as given.
[[nodiscard]] QByteArray chequeTag(const QByteArray& fromAmountOn);
/// The card as the document knows it, with what points have paid.
[[nodiscard]] QByteArray cardElement(const QByteArray& subtractAmount);
/// `ChequeLines` with the line 1, which has no discounts, as points have paid for it and with these coupons.
[[nodiscard]] QByteArray lines(const QByteArray& amount, const QByteArray& bonusDiscount,
                               const QByteArray& coupons = QByteArray());
/// The empty sections that end each cheque without certificates.
extern const QByteArray sections;

/// The whole cheque, open, of the sale without a card and with it.
[[nodiscard]] QByteArray openCheque();
[[nodiscard]] QByteArray openChequeWithCard();

}
