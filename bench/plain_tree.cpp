#include "bench/plain_tree.h"

#include <QDomNamedNodeMap>

#include <algorithm>

namespace {

template <class Visit>
void visitElements(const QDomElement& element, int depth, const Visit& visit)
{
    visit(element, depth);
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        visitElements(child, depth + 1, visit);
    }
}

/// Money has two decimals and quantity three; whatever else looks like a number is a text of the cheque. 0 for a text.
[[nodiscard]] int decimalsOf(const QString& value)
{
    const qsizetype point = value.indexOf(u'.');
    const int decimals = point < 0 ? 0 : static_cast<int>(value.size() - point - 1);
    const bool isNumber = (decimals == 2 || decimals == 3) && QString::number(value.toDouble(), 'f', decimals) == value;
    return isNumber ? decimals : 0;
}

} // namespace

PlainTree::PlainTree(const QDomElement& root)
{
    // Counted first: whatever points into the characters must not see them move.
    qsizetype size = 0;
    size_t elementCount = 0;
    size_t attributeCount = 0;
    visitElements(root, 0, [&](const QDomElement& element, int) {
        const QDomNamedNodeMap map = element.attributes();
        size += element.tagName().size();
        for (int i = 0; i < map.length(); ++i) {
            size += map.item(i).nodeName().size() + map.item(i).nodeValue().size();
        }
        ++elementCount;
        attributeCount += static_cast<size_t>(map.length());
    });
    characters.reserve(size);
    elements.reserve(elementCount);
    attributes.reserve(attributeCount);

    visitElements(root, 0, [&](const QDomElement& element, int depth) {
        const QDomNamedNodeMap map = element.attributes();
        const auto first = static_cast<std::ptrdiff_t>(attributes.size());
        for (int i = 0; i < map.length(); ++i) {
            const QString value = map.item(i).nodeValue();
            const int decimals = decimalsOf(value);
            attributes.push_back({ kept(map.item(i).nodeName()), decimals == 0 ? kept(value) : QString(),
                                   decimals == 0 ? 0.0 : value.toDouble(), decimals });
        }
        std::ranges::sort(attributes.begin() + first, attributes.end(), {}, &PlainAttribute::name);
        elements.push_back({ kept(element.tagName()), depth, map.length() });
    });
}

bool PlainTree::isSame(const PlainTree& other) const
{
    return elements == other.elements && attributes == other.attributes;
}

QString PlainTree::kept(QStringView text)
{
    const qsizetype at = characters.size();
    characters += text;
    return QString::fromRawData(characters.constData() + at, text.size());
}
