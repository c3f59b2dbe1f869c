#include "bench/peers.h"
#include "bench/plain_peer.h"

#include <QDomDocument>

#include <memory>

namespace {

const QString declaration = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");

void build(QDomDocument& document, const PlainTree& tree)
{
    QDomElement parent;
    int depth = 0;
    auto attribute = tree.attributes.cbegin();
    for (const PlainElement& plain : tree.elements) {
        for (; depth > plain.depth; --depth) {
            parent = parent.parentNode().toElement();
        }
        QDomElement element = document.createElement(plain.name);
        for (int i = 0; i < plain.attributeCount; ++i, ++attribute) {
            element.setAttribute(attribute->name, attribute->value());
        }
        if (parent.isNull()) {
            document.appendChild(element);
        } else {
            parent.appendChild(element);
        }
        parent = element;
        ++depth;
    }
}

QString bareDom(const PlainTree& tree)
{
    QDomDocument document;
    build(document, tree);
    return declaration + document.toString(1);
}

QString bareDomCopied(const PlainTree& tree)
{
    QDomDocument source;
    build(source, tree);
    QDomDocument document;
    document.appendChild(document.importNode(source.documentElement(), true));
    source.clear();
    return declaration + document.toString(1);
}

QString requestWithBareDomCopied(const PlainTree& tree)
{
    QDomDocument document;
    QDomElement envelope = document.createElement(QStringLiteral("soapenv:Envelope"));
    envelope.setAttribute(QStringLiteral("xmlns:soapenv"), QStringLiteral("http://schemas.xmlsoap.org/soap/envelope/"));
    envelope.setAttribute(QStringLiteral("xmlns:tem"), QStringLiteral("http://tempuri.org/"));
    document.appendChild(envelope);
    QDomNode parent = envelope;
    for (const char* tag : { "soapenv:Body", "tem:Accrual", "tem:cheque" }) {
        parent = parent.appendChild(document.createElement(QLatin1String(tag)));
    }
    parent.appendChild(document.createCDATASection(bareDomCopied(tree)));
    return document.toString(1);
}

[[nodiscard]] PlainWriter through(QString (*write)(const PlainTree&))
{
    return [write](const std::shared_ptr<const PlainTree>& tree) { return [tree, write] { return write(*tree); }; };
}

[[nodiscard]] std::vector<ChequeForm> makeDomPeers()
{
    std::vector<ChequeForm> peers;
    for (const ChequeForm& form : chequeForms()) {
        if (form.name == "accrual_request") {
            peers.push_back(peerOf(form, "bare_dom_copied", through(requestWithBareDomCopied)));
            continue;
        }
        peers.push_back(peerOf(form, "bare_dom", through(bareDom)));
        if (form.name == "accrual") {
            peers.push_back(peerOf(form, "bare_dom_copied", through(bareDomCopied)));
        }
    }
    return peers;
}

} // namespace

const std::vector<ChequeForm>& domPeers()
{
    static const std::vector<ChequeForm> peers = makeDomPeers();
    return peers;
}
