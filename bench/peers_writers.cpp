#include "bench/peers.h"
#include "bench/plain_peer.h"

#include <QXmlStreamWriter>

#include <array>
#include <cstdio>
#include <pugixml.hpp>
#include <string>

namespace {

/// Calls for each element in the order of the text: `begin`, and `end` when all below it has been told.
template <class Begin, class End>
void walk(const PlainTree& tree, const Begin& begin, const End& end)
{
    int depth = 0;
    auto attribute = tree.attributes.cbegin();
    for (const PlainElement& plain : tree.elements) {
        for (; depth > plain.depth; --depth) {
            end();
        }
        begin(plain, attribute);
        attribute += plain.attributeCount;
        ++depth;
    }
    for (; depth > 0; --depth) {
        end();
    }
}

using Attributes = std::vector<PlainAttribute>::const_iterator;

QString streamed(const PlainTree& tree)
{
    QString text;
    QXmlStreamWriter writer(&text);
    writer.setAutoFormatting(true);
    writer.setAutoFormattingIndent(1);
    writer.writeStartDocument();
    walk(
        tree,
        [&writer](const PlainElement& element, Attributes attribute) {
            writer.writeStartElement(element.name);
            for (int i = 0; i < element.attributeCount; ++i, ++attribute) {
                writer.writeAttribute(attribute->name, attribute->value());
            }
        },
        [&writer] { writer.writeEndElement(); });
    writer.writeEndDocument();
    return text;
}

void appendEscaped(QString& text, const QString& value)
{
    for (const QChar character : value) {
        switch (character.unicode()) {
        case u'&':
            text += QLatin1String("&amp;");
            break;
        case u'<':
            text += QLatin1String("&lt;");
            break;
        case u'"':
            text += QLatin1String("&quot;");
            break;
        default:
            text += character;
        }
    }
}

/// No call of a library between the values and the text, and no format to be understood.
QString joined(const PlainTree& tree)
{
    QString text = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    std::vector<const PlainElement*> open;
    walk(
        tree,
        [&](const PlainElement& element, Attributes attribute) {
            text += QLatin1Char('<');
            text += element.name;
            for (int i = 0; i < element.attributeCount; ++i, ++attribute) {
                text += QLatin1Char(' ');
                text += attribute->name;
                text += QLatin1String("=\"");
                appendEscaped(text, attribute->value());
                text += QLatin1Char('"');
            }
            text += QLatin1String(">\n");
            open.push_back(&element);
        },
        [&] {
            text += QLatin1String("</");
            text += open.back()->name;
            text += QLatin1String(">\n");
            open.pop_back();
        });
    return text;
}

/// The plain values in the encoding of pugixml, flat like the tree that they come from.
class Utf8Tree {
public:
    struct Attribute {
        const char* name;
        const char* text;
        double number;
        int decimals; // 0 for a text
    };

    explicit Utf8Tree(const std::shared_ptr<const PlainTree>& plain)
        : tree(plain)
    {
        std::size_t size = 0;
        for (const PlainElement& element : plain->elements) {
            size += sizeOf(element.name);
        }
        for (const PlainAttribute& attribute : plain->attributes) {
            size += sizeOf(attribute.name) + sizeOf(attribute.text);
        }
        characters.reserve(size); // what points into it must not see it move
        names.reserve(plain->elements.size());
        attributes.reserve(plain->attributes.size());
        for (const PlainElement& element : plain->elements) {
            names.push_back(kept(element.name));
        }
        for (const PlainAttribute& attribute : plain->attributes) {
            attributes.push_back({ kept(attribute.name), kept(attribute.text), attribute.number, attribute.decimals });
        }
    }

    Utf8Tree(const Utf8Tree&) = delete;
    Utf8Tree& operator=(const Utf8Tree&) = delete;

    std::shared_ptr<const PlainTree> tree;
    std::vector<const char*> names; // one for each element of the tree
    std::vector<Attribute> attributes; // in the order of the tree's

private:
    [[nodiscard]] static std::size_t sizeOf(const QString& text)
    {
        return static_cast<std::size_t>(text.toUtf8().size()) + 1;
    }

    [[nodiscard]] const char* kept(const QString& text)
    {
        const std::size_t at = characters.size();
        characters += text.toStdString();
        characters += '\0';
        return characters.data() + at;
    }

    std::string characters;
};

struct Characters : pugi::xml_writer {
    void write(const void* data, size_t size) override
    {
        bytes.append(static_cast<const char*>(data), size);
    }

    std::string bytes;
};

QString throughPugixml(const Utf8Tree& cheque)
{
    pugi::xml_document document;
    pugi::xml_node parent = document;
    auto name = cheque.names.cbegin();
    auto attribute = cheque.attributes.cbegin();
    walk(
        *cheque.tree,
        [&](const PlainElement& element, Attributes) {
            parent = parent.append_child(*name++);
            for (int i = 0; i < element.attributeCount; ++i, ++attribute) {
                std::array<char, 32> number {};
                if (attribute->decimals > 0) {
                    std::snprintf(number.data(), number.size(), "%.*f", attribute->decimals, attribute->number);
                }
                parent.append_attribute(attribute->name)
                    .set_value(attribute->decimals > 0 ? number.data() : attribute->text);
            }
        },
        [&] { parent = parent.parent(); });
    Characters characters;
    document.save(characters, " ");
    return QString::fromStdString(characters.bytes);
}

[[nodiscard]] PlainWriter through(QString (*write)(const PlainTree&))
{
    return [write](const std::shared_ptr<const PlainTree>& tree) { return [tree, write] { return write(*tree); }; };
}

[[nodiscard]] TextMaker pugixmlMaker(const std::shared_ptr<const PlainTree>& tree)
{
    return [cheque = std::make_shared<const Utf8Tree>(tree)] { return throughPugixml(*cheque); };
}

} // namespace

const std::vector<ChequeForm>& writerPeers()
{
    static const ChequeForm& ordinary = chequeForms().front();
    static const std::vector<ChequeForm> peers {
        peerOf(ordinary, "stream_writer", through(streamed)),
        peerOf(ordinary, "pugixml", pugixmlMaker),
        peerOf(ordinary, "joined", through(joined)),
    };
    return peers;
}
