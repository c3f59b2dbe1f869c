#include "bench/reply/readers.h"

#include "bench/reply/reading_client.h"

#include <QXmlStreamReader>

#include <pugixml.hpp>
#include <stdexcept>

namespace {

const QString resultTag = QStringLiteral("GetDiscountsResult");
const QString lineTag = QStringLiteral("ChequeLine");
const QString discountTag = QStringLiteral("Discount");
const QString positionName = QStringLiteral("ChequeLineNo");
const QString codeName = QStringLiteral("DiscountID");
const QString sumName = QStringLiteral("Amount");

void require(bool isGood)
{
    if (!isGood) {
        throw std::runtime_error("a reply cannot be read");
    }
}

/// Two trees, looked at as little as shows that they are whole: the last line of the inner one.
[[nodiscard]] Found lastLine(const QDomDocument& inner)
{
    const QDomElement line = inner.documentElement().lastChildElement().lastChildElement(lineTag);
    const QDomElement discount = line.firstChildElement().firstChildElement(discountTag);
    require(!discount.isNull());
    return { line.attribute(positionName).toInt(), discount.attribute(sumName).toDouble() };
}

[[nodiscard]] QDomDocument bareTree(const QByteArray& bytes)
{
    QDomDocument envelope;
    require(static_cast<bool>(envelope.setContent(bytes)));
    QDomDocument inner;
    require(static_cast<bool>(inner.setContent(envelope.elementsByTagName(resultTag).at(0).toElement().text())));
    return inner;
}

Found tree(const QByteArray& bytes)
{
    static const ReadingClient client;
    return lastLine(client.discountsIn(bytes));
}

Found treeOfBareDom(const QByteArray& bytes)
{
    return lastLine(bareTree(bytes));
}

Found discounts(const QByteArray& bytes)
{
    static const ReadingClient client;
    const QDomDocument inner = client.discountsIn(bytes);
    Found found;
    for (const QSharedPointer<DiscountImpact>& impact :
         client.extractCheckDiscounts(inner) + client.extractPositionDiscounts(inner)) {
        ++found.discounts;
        found.sum += impact->getTotals()->getDiscountSum();
    }
    return found;
}

Found discountsOfBareDom(const QByteArray& bytes)
{
    const QDomDocument inner = bareTree(bytes);
    Found found;
    const QDomNodeList lines = inner.elementsByTagName(lineTag);
    for (int i = 0; i < lines.length(); ++i) {
        const QDomElement line = lines.at(i).toElement();
        require(line.attribute(positionName).toInt() > 0);
        const QDomNodeList inLine = line.elementsByTagName(discountTag);
        for (int j = 0; j < inLine.length(); ++j) {
            const QDomElement discount = inLine.at(j).toElement();
            require(discount.attribute(codeName).toInt() > 0);
            ++found.discounts;
            found.sum += discount.attribute(sumName).toDouble();
        }
    }
    return found;
}

Found discountsOfStreamReader(const QByteArray& bytes)
{
    QXmlStreamReader envelope(bytes);
    QString text;
    while (!envelope.atEnd()) {
        if (envelope.readNext() == QXmlStreamReader::StartElement && envelope.name() == resultTag) {
            text = envelope.readElementText();
        }
    }
    Found found;
    QXmlStreamReader inner(text);
    while (!inner.atEnd()) {
        if (inner.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (inner.name() == lineTag) {
            require(inner.attributes().value(positionName).toInt() > 0);
        } else if (inner.name() == discountTag) {
            const QXmlStreamAttributes attributes = inner.attributes();
            require(attributes.value(codeName).toInt() > 0);
            ++found.discounts;
            found.sum += attributes.value(sumName).toDouble();
        }
    }
    require(!envelope.hasError() && !inner.hasError());
    return found;
}

Found discountsOfPugixml(const QByteArray& bytes)
{
    pugi::xml_document envelope;
    require(static_cast<bool>(envelope.load_buffer(bytes.constData(), static_cast<size_t>(bytes.size()))));
    const char* const text
        = envelope.first_child().first_child().first_child().child("GetDiscountsResult").child_value();
    pugi::xml_document inner;
    require(static_cast<bool>(inner.load_string(text)));
    Found found;
    for (const pugi::xml_node line : inner.first_child().child("ChequeLines").children("ChequeLine")) {
        require(line.attribute("ChequeLineNo").as_int() > 0);
        for (const pugi::xml_node discount : line.child("Discounts").children("Discount")) {
            require(discount.attribute("DiscountID").as_int() > 0);
            ++found.discounts;
            found.sum += discount.attribute("Amount").as_double();
        }
    }
    return found;
}

} // namespace

const std::vector<Reader>& replyReaders()
{
    static const std::vector<Reader> readers {
        { "tree", tree },
        { "tree:bare_dom", treeOfBareDom },
        { "discounts", discounts },
        { "discounts:bare_dom", discountsOfBareDom },
        { "discounts:stream_reader", discountsOfStreamReader },
        { "discounts:pugixml", discountsOfPugixml },
    };
    return readers;
}
