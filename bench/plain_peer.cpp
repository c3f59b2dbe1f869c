#include "bench/plain_peer.h"

#include <QDomDocument>

#include <stdexcept>

namespace {

[[nodiscard]] QDomElement parsed(QDomDocument& document, const QString& text)
{
    if (!document.setContent(text)) {
        throw std::runtime_error("a cheque cannot be read back");
    }
    return document.documentElement();
}

/// The cheque alone, of a request too.
[[nodiscard]] std::shared_ptr<const PlainTree> parsedTree(const QString& text)
{
    QDomDocument document;
    QDomElement root = parsed(document, text);
    if (root.tagName() == QLatin1String("soapenv:Envelope")) {
        root = parsed(document, root.text());
    }
    return std::make_shared<const PlainTree>(root);
}

} // namespace

ChequeForm peerOf(const ChequeForm& form, const char* name, const PlainWriter& writer)
{
    return { form.name + ':' + name, [form, writer](const LongCheque& cheque) -> TextMaker {
                const std::shared_ptr<const PlainTree> tree = parsedTree(form.prepare(cheque)());
                TextMaker maker = writer(tree);
                if (!parsedTree(maker())->isSame(*tree)) {
                    throw std::runtime_error("a peer writes another tree");
                }
                return maker;
            } };
}
