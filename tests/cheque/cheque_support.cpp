#include "tests/cheque/cheque_support.h"

#include <QStringList>

#include <algorithm>

QDomDocument ChequeTest::ordinaryCheque(const QSharedPointer<AbstractDocument>& document,
                                        const GrantedDiscounts& granted) const
{
    kept.append(client.buildXmlCheck(document, {}, {}, granted));
    return kept.constLast();
}

QDomElement ChequeTest::rootOf(const QDomDocument& document) const
{
    kept.append(document);
    return document.documentElement();
}

std::string attributesOf(const QDomElement& element)
{
    const QDomNamedNodeMap attributes = element.attributes();
    QStringList lines;
    for (int i = 0; i < attributes.count(); ++i) {
        const QDomAttr attribute = attributes.item(i).toAttr();
        lines.append(attribute.name() + QLatin1String(" = ") + attribute.value());
    }
    std::sort(lines.begin(), lines.end());
    return lines.join(QLatin1Char('\n')).toStdString();
}

std::string attribute(const QDomElement& element, const char* name)
{
    return element.attribute(QString::fromLatin1(name), QStringLiteral("(absent)")).toStdString();
}

std::string childrenOf(const QDomElement& element)
{
    QStringList names;
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        names.append(child.tagName());
    }
    return names.join(QLatin1Char(' ')).toStdString();
}

QDomElement below(const QDomElement& element, const char* path)
{
    QDomElement found = element;
    const QStringList steps = QString::fromLatin1(path).split(QLatin1Char('/'));
    for (const QString& step : steps) {
        found = found.firstChildElement(step);
    }
    return found;
}

QDomElement lineOf(const QDomDocument& cheque, int position)
{
    QDomElement line = below(cheque.documentElement(), "ChequeLines/ChequeLine");
    while (!line.isNull() && line.attribute(QStringLiteral("ChequeLineNo")) != QString::number(position)) {
        line = line.nextSiblingElement(QStringLiteral("ChequeLine"));
    }
    return line;
}

std::string discountsOf(const QDomElement& line)
{
    QStringList discounts;
    QDomElement discount = below(line, "Discounts/Discount");
    for (; !discount.isNull(); discount = discount.nextSiblingElement()) {
        discounts.append(
            QStringLiteral("%1 %2 %3 %4")
                .arg(discount.attribute(QStringLiteral("DiscountID")), discount.attribute(QStringLiteral("Type")),
                     discount.attribute(QStringLiteral("Percent")), discount.attribute(QStringLiteral("Amount"))));
    }
    return discounts.join(QLatin1String("; ")).toStdString();
}

std::string couponsOf(const QDomElement& element)
{
    QStringList coupons;
    QDomElement coupon = element.firstChildElement(QStringLiteral("Coupon"));
    for (; !coupon.isNull(); coupon = coupon.nextSiblingElement(QStringLiteral("Coupon"))) {
        coupons.append(coupon.attribute(QStringLiteral("CouponNo")));
    }
    return coupons.join(QLatin1Char(' ')).toStdString();
}

QDomElement newElement(QDomDocument& document, const char* name)
{
    const QDomElement element = document.createElement(QString::fromLatin1(name));
    document.appendChild(element);
    return element;
}

QDomDocument parsed(const QString& text)
{
    QDomDocument document;
    EXPECT_TRUE(document.setContent(text)) << text.toStdString();
    return document;
}
