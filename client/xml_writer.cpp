#include "client/xml_writer.h"

#include <QDomNamedNodeMap>
#include <QDomNode>

namespace vantiro {

namespace {

enum class Place { text, attribute };

/// What stands for the character, empty when it stands for itself.
template <Place place>
[[nodiscard]] QStringView escaped(const char16_t* begin, const char16_t* at)
{
    switch (*at) {
    case u'<':
        return u"&lt;";
    case u'&':
        return u"&amp;";
    case u'>': // only where it would end a CDATA section
        return at - begin >= 2 && at[-1] == u']' && at[-2] == u']' ? QStringView(u"&gt;") : QStringView();
    case u'\r': // a parser makes a line feed of it
        return u"&#xd;";
    default:
        break;
    }
    if constexpr (place == Place::attribute) {
        switch (*at) {
        case u'"':
            return u"&quot;";
        case u'\n': // a parser makes a blank of it, and of the tab
            return u"&#xa;";
        case u'\t':
            return u"&#x9;";
        default:
            break;
        }
    }
    return {};
}

class Writer {
public:
    /// The node up to its children.
    void open(const QDomNode& node, bool behindText)
    {
        switch (node.nodeType()) {
        case QDomNode::ElementNode:
            openElement(node, behindText);
            break;
        case QDomNode::TextNode:
            appendEscaped<Place::text>(node.nodeValue());
            break;
        case QDomNode::CDATASectionNode:
            text += u"<![CDATA[";
            text += node.nodeValue();
            text += u"]]>";
            break;
        case QDomNode::CommentNode:
            openComment
