#include "tests/cheque/cheque_support.h"
#include "tests/support/document_builder.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// Whoever derives from the client may replace its virtual operations, and the cheque must follow.

namespace {

/// A client of a shop that names its cheques in a way of its own.
class ClientWithOwnUid : public OpenClient {
public:
    [[nodiscard]] QString getChequeUID(const QString& identity) const override
    {
        return u"uid of "_s + identity;
    }
};

}

TEST(UidOfAClientOfItsOwn, StandsInEveryFormOfTheCheque)
{
    const ClientWithOwnUid client;
    const auto document = DocumentBuilder().identity(u"abc"_s).line(Goods(1, u"1001"_s, 10.0)).closed().build();
    const auto back = DocumentBuilder().identity(u"abc"_s).buildReturn(
        saleSource(901, at("2024-02-29T23:59:59"), at("2024-03-01T00:01:00")));
    const QDomDocument ordinary = client.buildXmlCheck(document, {}, {}, {});

    for (const QDomDocument& cheque :
         { ordinary, client.buildAccrualXmlCheck(ordinary, {}, {}, {}, {}), client.buildAccrualAnyXmlCheck(document),
           client.buildAccrualCanceledXmlCheck(document, {}, {}), client.buildBackXmlCheck(back) }) {
        EXPECT_EQ(attribute(cheque.documentElement(), "ChequeUID"), "uid of abc");
    }
}

TEST(IdentityThatIsKept, StandsInEveryFormOfTheCheque)
{
    OpenClient client;
    client.setCheckData({ { u"chequeNo"_s, u"77"_s }, { u"chequeUid"_s, u"U"_s }, { u"shiftNo"_s, u"16"_s } });
    const auto document = DocumentBuilder().line(Goods(1, u"1001"_s, 10.0)).closed().build();
    const auto back
        = DocumentBuilder().buildReturn(saleSource(901, at("2024-02-29T23:59:59"), at("2024-03-01T00:01:00")));
    const QDomDocument ordinary = client.buildXmlCheck(document, {}, {}, {});

    for (const QDomDocument& cheque :
         { ordinary, client.buildAccrualXmlCheck(ordinary, {}, {}, {}, {}), client.buildAccrualAnyXmlCheck(document),
           client.buildAccrualCanceledXmlCheck(document, {}, {}), client.buildBackXmlCheck(back) }) {
        const QDomElement root = cheque.documentElement();
        EXPECT_EQ(attribute(root, "ShiftNo") + " " + attribute(root, "ChequeUID") + " " + attribute(root, "ChequeNo"),
                  "16 U 77");
    }
    // The sale that a return names is another cheque.
    EXPECT_EQ(attribute(below(client.buildBackXmlCheck(back).documentElement(), "SaleCheque"), "ChequeNo"), "901");
}
