#pragma once

#include "tests/cheque/open_client.h"

#include <QDomDocument>
#include <QDomElement>
#include <QList>
#include <QMap>
#include <QSharedPointer>
#include <QString>

#include <gtest/gtest.h>

#include <string>

using Coupons = QList<QString>;
using PositionCoupons = QMap<int, QList<QString>>;
using GrantedDiscounts = QList<QSharedPointer<DiscountImpact>>;

/// A fresh client for each test.
class ChequeTest : public testing::Test {
protected:
    /// The ordinary cheque without coupons. It is kept to the end of the test.
    [[nodiscard]] QDomDocument ordinaryCheque(const QSharedPointer<AbstractDocument>& document,
                                              const GrantedDiscounts& granted = {}) const;

    /// The root of the document, which is kept to the end of the test: an element knows its siblings only as long as
    /// its document lives.
    [[nodiscard]] QDomElement rootOf(const QDomDocument& document) const;

    OpenClient client;

private:
    mutable QList<QDomDocument> kept;
};

/// The whole set of the element's attributes, one a line in the order of their names: "Amount = 1.00".
[[nodiscard]] std::string attributesOf(const QDomElement& element);
/// The value of the attribute; "(absent)" when the element does not have it.
[[nodiscard]] std::string attribute(const QDomElement& element, const char* name);
/// The names of the child elements in their order, with a blank between.
[[nodiscard]] std::string childrenOf(const QDomElement& element);
/// Down a path of first children of those names: `below(cheque, "ChequeLines/ChequeLine/Item")`. Null when a step
/// fails.
[[nodiscard]] QDomElement below(const QDomElement& element, const char* path);
/// The line of that position, null if the cheque has none.
[[nodiscard]] QDomElement lineOf(const QDomDocument& cheque, int position);
/// The `Discount` elements of the line, each as "DiscountID Type Percent Amount", with "; " between.
[[nodiscard]] std::string discountsOf(const QDomElement& line);
/// The numbers of the coupons directly under the element, with a blank between.
[[nodiscard]] std::string couponsOf(const QDomElement& element);
/// An element of a document of its own, which must be kept.
[[nodiscard]] QDomElement newElement(QDomDocument& document, const char* name);
/// The document of a literal text; fails the test when that is not XML.
[[nodiscard]] QDomDocument parsed(const QString& text);
