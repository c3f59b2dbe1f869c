#include "client/xml_writer.h"

#include <QDomNamedNodeMap>
#include <QDomNode>
#include <QStringList>

#include <algorithm>
#include <utility>
#include <vector>

namespace vantiro {

namespace {

enum class Place { text, attribute };

/// What stands for the character, empty when it stands for itself.
template <Place place>
[[nodiscard]] QStringView escapeOf(QStringView source, qsizetype at)
{
    constexpr bool inAttribute = place == Place::attribute;
    switch (source[at].unicode()) {
    case u'<':
        return u"&lt;";
    case u'&':
        return u"&amp;";
    case u'>': // only where it would end a CDATA section
        return at >= 2 && source[at - 1] == u']' && source[at - 2] == u']' ? QStringView(u"&gt;") : QStringView();
    case u'\r': // parsers make a line feed of it, and in attributes a blank of all three
        return u"&#xd;";
    case u'\n':
        return inAttribute ? QStringView(u"&#xa;") : QStringView();
    case u'\t':
        return inAttribute ? QStringView(u"&#x9;") : QStringView();
    case u'"':
        return inAttribute ? QStringView(u"&quot;") : QStringView();
    default:
        return {};
    }
}

/// A text that grows at its end. The string's own appending costs more than all the rest of the writing: most pieces of
/// a cheque are of one to ten characters.
class TextBuffer {
public:
    void append(QStringView piece)
    {
        makeRoom(piece.size());
        end = std::copy(piece.cbegin(), piece.cend(), end);
    }

    void append(qsizetype count, QChar character)
    {
        makeRoom(count);
        end = std::fill_n(end, count, character);
    }

    template <Place place>
    void appendEscaped(QStringView source)
    {
        makeRoom(source.size());
        for (qsizetype i = 0; i < source.size(); ++i) {
            if (const QStringView escape = escapeOf<place>(source, i); !escape.isEmpty()) {
                makeRoom(source.size() - i - 1 + escape.size());
                end = std::copy(escape.cbegin(), escape.cend(), end);
            } else {
                *end++ = source[i];
            }
        }
    }

    [[nodiscard]] QString take()
    {
        text.truncate(end - begin);
        return std::move(text);
    }

private:
    void makeRoom(qsizetype count)
    {
        if (limit - end < count) {
            grow(count);
        }
    }

    void grow(qsizetype count)
    {
        const qsizetype used = end - begin;
        constexpr qsizetype firstRoom = 8192; // a short cheque
        text.resize(std::max({ used + count, 2 * text.size(), firstRoom }));
        begin = text.data();
        end = begin + used;
        limit = begin + text.size();
    }

    QString text; // its part behind `end` is not written yet
    QChar* begin = nullptr;
    QChar* end = nullptr;
    QChar* limit = nullptr;
};

/// Walks the tree without recursion: how deep it may be is not for the stack to decide.
class Writer {
public:
    [[nodiscard]] QString write(const QDomDocument& document);

private:
    void begin(const QDomNode& node, bool behindText);
    void beginElement(const QDomNode& element);
    [[nodiscard]] bool writeAsKnown(const QString& element, const QDomNamedNodeMap& attributes);
    void writeAttribute(const QString& name, const QDomNode& attribute);
    void end(const QDomNode& node, bool beforeText);
    void endElement(const QDomNode& element, bool behindText);
    void indent(bool behindText);

    /// An element that has been written, with its attributes in the order in which they stand.
    struct Known {
        QString element;
        QStringList attributes;
    };

    TextBuffer text;
    qsizetype depth = 0;
    std::vector<Known> known;
    std::vector<QDomNode> found; // the attributes of one element
};

QString Writer::write(const QDomDocument& document)
{
    QDomNode node = document.firstChild();
    bool behindText = false; // white space beside a text would become part of it
    while (!node.isNull()) {
        begin(node, behindText);
        if (const QDomNode child = node.firstChild(); !child.isNull()) {
            text.append(child.isText() ? QStringView(u">") : QStringView(u">\n"));
            node = child;
            behindText = false;
            ++depth;
            continue;
        }
        if (node.isElement()) {
            text.append(u"/>");
        }
        for (;;) {
            const QDomNode next = node.nextSibling();
            end(node, next.isText());
            behindText = node.isText();
            if (!next.isNull() || depth == 0) {
                node = next;
                break;
            }
            --depth;
            node = node.parentNode();
            endElement(node, behindText);
        }
    }
    return text.take();
}

void Writer::begin(const QDomNode& node, bool behindText)
{
    switch (node.nodeType()) {
    case QDomNode::ElementNode:
        indent(behindText);
        beginElement(node);
        break;
    case QDomNode::TextNode:
        text.appendEscaped<Place::text>(node.nodeValue());
        break;
    case QDomNode::CDATASectionNode:
        text.append(u"<![CDATA[");
        text.append(node.nodeValue());
        text.append(u"]]>");
        break;
    case QDomNode::CommentNode: {
        const QString comment = node.nodeValue();
        indent(behindText);
        text.append(u"<!--");
        text.append(comment);
        text.append(comment.endsWith(u'-') ? QStringView(u" -->") : QStringView(u"-->"));
        break;
    }
    case QDomNode::ProcessingInstructionNode:
        text.append(u"<?");
        text.append(node.nodeName());
        text.append(u" ");
        text.append(node.nodeValue());
        text.append(u"?>");
        break;
    default:
        break;
    }
}

/// The start tag but for its last bracket, which depends on the children.
void Writer::beginElement(const QDomNode& element)
{
    const QString name = element.nodeName();
    text.append(u"<");
    text.append(name);
    const QDomNamedNodeMap attributes = element.attributes();
    const int count = attributes.length();
    constexpr int few = 3; // the map counts from its beginning to each of them
    constexpr size_t mostKnown = 16; // a cheque has half as many elements with more attributes than that
    if (count > few && writeAsKnown(name, attributes)) {
        return;
    }
    QStringList names;
    for (int i = 0; i < count; ++i) {
        const QDomNode attribute = attributes.item(i);
        names.append(attribute.nodeName());
        writeAttribute(names.constLast(), attribute);
    }
    if (count > few && known.size() < mostKnown) {
        known.push_back({ name, names });
    }
}

/// Writes the attributes in the order of an element of that name that had the same ones, if there was one.
bool Writer::writeAsKnown(const QString& element, const QDomNamedNodeMap& attributes)
{
    const auto former = std::find_if(known.cbegin(), known.cend(), [&](const Known& each) {
        return each.attributes.size() == attributes.length() && each.element == element;
    });
    if (former == known.cend()) {
        return false;
    }
    found.clear();
    for (const QString& name : former->attributes) {
        const QDomNode attribute = attributes.namedItem(name);
        if (attribute.isNull()) {
            return false;
        }
        found.push_back(attribute);
    }
    auto name = former->attributes.cbegin();
    for (const QDomNode& attribute : found) {
        writeAttribute(*name++, attribute);
    }
    return true;
}

void Writer::writeAttribute(const QString& name, const QDomNode& attribute)
{
    text.append(u" ");
    text.append(name);
    text.append(u"=\"");
    text.appendEscaped<Place::attribute>(attribute.nodeValue());
    text.append(u"\"");
}

void Writer::end(const QDomNode& node, bool beforeText)
{
    const bool endsLine = node.isProcessingInstruction() || (!beforeText && (node.isElement() || node.isComment()));
    if (endsLine) {
        text.append(u"\n");
    }
}

void Writer::endElement(const QDomNode& element, bool behindText)
{
    indent(behindText);
    text.append(u"</");
    text.append(element.nodeName());
    text.append(u">");
}

void Writer::indent(bool behindText)
{
    if (!behindText) {
        text.append(depth, u' ');
    }
}

} // namespace

QString writeXml(const QDomDocument& document)
{
    return Writer().write(document);
}

} // namespace vantiro
