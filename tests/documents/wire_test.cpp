#include "tests/documents/page.h"

#include <QDomDocument>
#include <QSet>

#include <gtest/gtest.h>

#include <optional>

using namespace Qt::StringLiterals;

// The exchanges of the wire page are whole, and are those that the service description knows.

namespace {

[[nodiscard]] std::optional<QDomDocument> parsed(const QString& text)
{
    QDomDocument document;
    const bool wellFormed = document.setContent(text);
    EXPECT_TRUE(wellFormed) << text.toStdString();
    return wellFormed ? std::optional(document) : std::nullopt;
}

/// The parameters of each operation, in their order, as the types of the description have them.
[[nodiscard]] const QMap<QString, QStringList>& operations()
{
    static const QMap<QString, QStringList> known = [] {
        QMap<QString, QStringList> found;
        const std::optional<QDomDocument> description = parsed(projectText(u"docs/vantiro-service.wsdl"_s));
        const QDomNodeList ports = description->elementsByTagName(u"wsdl:portType"_s);
        const QDomNodeList offered = ports.at(0).toElement().elementsByTagName(u"wsdl:operation"_s);
        for (int i = 0; i < offered.length(); ++i) {
            found.insert(offered.at(i).toElement().attribute(u"name"_s), {});
        }
        const QDomElement schema = description->elementsByTagName(u"xs:schema"_s).at(0).toElement();
        for (QDomElement type = schema.firstChildElement(); !type.isNull(); type = type.nextSiblingElement()) {
            const QString name = type.attribute(u"name"_s);
            const QDomNodeList parameters = type.elementsByTagName(u"xs:element"_s);
            for (int i = 0; found.contains(name) && i < parameters.length(); ++i) {
                found[name].append(parameters.at(i).toElement().attribute(u"name"_s));
            }
        }
        return found;
    }();
    return known;
}

/// An exchange of the page: the two blocks of a section, a request and its reply.
struct Told {
    QString heading;
    QList<QDomDocument> documents; // that the two elements are of
    QDomElement request; // the operation
    QDomElement reply; // what the body holds
};

[[nodiscard]] QDomElement bodyOf(const QDomDocument& document, const QString& prefix)
{
    const QDomElement envelope = document.documentElement();
    EXPECT_EQ(envelope.tagName().toStdString(), prefix.toStdString() + ":Envelope");
    return envelope.firstChildElement(prefix + u":Body"_s).firstChildElement();
}

[[nodiscard]] const QList<Told>& exchanges()
{
    static const QList<Told> all = [] {
        QList<Told> found;
        const Page page(projectText(u"docs/wire.md"_s));
        QList<Block> blocks;
        for (const Block& block : page.blocks()) {
            if (block.language == u"xml") {
                blocks.append(block);
            }
        }
        EXPECT_EQ(blocks.size() % 2, 0);
        for (qsizetype i = 0; i + 1 < blocks.size(); i += 2) {
            EXPECT_EQ(blocks[i].heading.toStdString(), blocks[i + 1].heading.toStdString());
            const auto request = parsed(blocks[i].text);
            const auto reply = parsed(blocks[i + 1].text);
            if (request && reply) {
                found.append({ blocks[i].heading,
                               { *request, *reply },
                               bodyOf(*request, u"soapenv"_s),
                               bodyOf(*reply, u"s"_s) });
            }
        }
        return found;
    }();
    return all;
}

} // namespace

TEST(WirePage, HasEachOperationOnceAndNoOther)
{
    QStringList told;
    for (const Told& exchange : exchanges()) {
        const QString operation = exchange.request.tagName();
        EXPECT_TRUE(operation.startsWith(u"tem:")) << operation.toStdString();
        if (exchange.reply.tagName() != u"s:Fault") {
            told.append(operation.sliced(4));
            EXPECT_EQ(exchange.heading.section(u" / "_s, -1).remove(u'`').toStdString(), told.last().toStdString());
        }
    }
    told.sort();
    EXPECT_EQ(told.join(u' ').toStdString(), QStringList(operations().keys()).join(u' ').toStdString());
    EXPECT_EQ(told.size(), 12);
}

TEST(WirePage, RequestsHaveTheParametersOfTheirOperation)
{
    for (const Told& exchange : exchanges()) {
        QStringList parameters;
        for (QDomElement one = exchange.request.firstChildElement(); !one.isNull(); one = one.nextSiblingElement()) {
            EXPECT_TRUE(one.tagName().startsWith(u"tem:"));
            parameters.append(one.tagName().sliced(4));
        }
        const QString operation = exchange.request.tagName().sliced(4);
        EXPECT_EQ(parameters.join(u' ').toStdString(), operations().value(operation).join(u' ').toStdString())
            << operation.toStdString();
    }
}

TEST(WirePage, RepliesAreThoseOfTheirOperationOrAFault)
{
    int faults = 0;
    for (const Told& exchange : exchanges()) {
        if (exchange.reply.tagName() == u"s:Fault") {
            ++faults;
            EXPECT_FALSE(exchange.reply.firstChildElement(u"faultstring"_s).text().isEmpty());
        } else {
            EXPECT_EQ(exchange.reply.tagName().toStdString(),
                      exchange.request.tagName().sliced(4).toStdString() + "Response");
        }
    }
    EXPECT_EQ(faults, 1);
}

TEST(WirePage, ChequesAreWellFormed)
{
    int cheques = 0;
    for (const Told& exchange : exchanges()) {
        const QString text = exchange.request.firstChildElement(u"tem:cheque"_s).text();
        if (!text.isEmpty()) {
            const auto cheque = parsed(text);
            ASSERT_TRUE(cheque.has_value());
            EXPECT_EQ(cheque->documentElement().tagName().toStdString(), "Cheque");
            ++cheques;
        }
    }
    EXPECT_EQ(cheques, 7);
}
