#include "tests/cheque/cheque_support.h"
#include "tests/support/document_builder.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace {

QJsonObject object(const char* json)
{
    return QJsonDocument::fromJson(QByteArray(json)).object();
}

std::string identityOf(const QDomElement& cheque)
{
    return attribute(cheque, "ShiftNo") + " / " + attribute(cheque, "ChequeUID") + " / "
        + attribute(cheque, "ChequeNo");
}

constexpr auto documentIdentity = "17 / 11116E73-1C03-5DE6-9130-5F9925AE8AB4 / 1042";

struct IdentityRow {
    const char* checkData;
    const char* identity; // ShiftNo / ChequeUID / ChequeNo
};

class IdentityOfCheque : public ChequeTest, public testing::WithParamInterface<IdentityRow> { };

TEST_P(IdentityOfCheque, ComesFromTheCheckDataKeyByKey)
{
    client.setCheckData(object(GetParam().checkData));

    EXPECT_EQ(identityOf(ordinaryCheque(DocumentBuilder().build()).documentElement()), GetParam().identity);
}

INSTANTIATE_TEST_SUITE_P(
    Keys, IdentityOfCheque,
    testing::Values(IdentityRow { "{}", documentIdentity },
                    IdentityRow { R"({"chequeNo":"77"})", "17 / 11116E73-1C03-5DE6-9130-5F9925AE8AB4 / 77" },
                    IdentityRow { R"({"shiftNo":"16"})", "16 / 11116E73-1C03-5DE6-9130-5F9925AE8AB4 / 1042" },
                    IdentityRow { R"({"chequeUid":"B01D8779-68C6-576D-BEF4-26488C9C9223"})",
                                  "17 / B01D8779-68C6-576D-BEF4-26488C9C9223 / 1042" },
                    IdentityRow { R"({"chequeNo":"77","chequeUid":"U","shiftNo":"16"})", "16 / U / 77" },
                    // A key counts by being there, whatever it holds.
                    IdentityRow { R"({"chequeNo":null})", "17 / 11116E73-1C03-5DE6-9130-5F9925AE8AB4 / " },
                    IdentityRow { R"({"shiftNo":""})", " / 11116E73-1C03-5DE6-9130-5F9925AE8AB4 / 1042" },
                    IdentityRow { R"({"chequeUid":null})", "17 /  / 1042" },
                    // What is no text reads as the empty text.
                    IdentityRow { R"({"chequeNo":77,"shiftNo":true,"chequeUid":{}})", " /  / " },
                    IdentityRow { R"({"chequeNo":"007","shiftNo":"смена"})",
                                  "смена / 11116E73-1C03-5DE6-9130-5F9925AE8AB4 / 007" },
                    IdentityRow { R"({"ChequeNo":"77","shiftno":"16"})", documentIdentity }));

class CheckData : public ChequeTest { };

TEST_F(CheckData, IsReplacedAsAWhole)
{
    client.setCheckData(object(R"({"chequeNo":"77","shiftNo":"16"})"));
    client.setCheckData(object(R"({"chequeNo":"78"})"));

    EXPECT_EQ(identityOf(ordinaryCheque(DocumentBuilder().build()).documentElement()),
              "17 / 11116E73-1C03-5DE6-9130-5F9925AE8AB4 / 78");
}

TEST_F(CheckData, OnceEmptiedLeavesTheDocumentItsIdentity)
{
    client.setCheckData(object(R"({"chequeNo":"77","chequeUid":"U","shiftNo":"16"})"));
    client.setCheckData({});

    EXPECT_EQ(identityOf(ordinaryCheque(DocumentBuilder().build()).documentElement()), documentIdentity);
}

TEST_F(CheckData, OutlivesADocument)
{
    client.setCheckData(object(R"({"chequeNo":"77"})"));

    const QDomDocument first = ordinaryCheque(DocumentBuilder().number(1).build());
    const QDomDocument second = ordinaryCheque(DocumentBuilder().number(2).build());

    EXPECT_EQ(attribute(first.documentElement(), "ChequeNo"), "77");
    EXPECT_EQ(attribute(second.documentElement(), "ChequeNo"), "77");
}

TEST_F(CheckData, ControlCharactersInItDoNotReachTheCheque)
{
    client.setCheckData(QJsonObject { { u"shiftNo"_s,
                                        u"1\x01"
                                        u"6"_s } });

    EXPECT_EQ(attribute(ordinaryCheque(DocumentBuilder().build()).documentElement(), "ShiftNo"), "16");
}

/// Counts how often its identity is asked for.
class AskedCheque : public till::Cheque {
public:
    [[nodiscard]] int getShiftNumber() override
    {
        ++asked;
        return till::Cheque::getShiftNumber();
    }

    [[nodiscard]] int getChequeNumber() override
    {
        ++asked;
        return till::Cheque::getChequeNumber();
    }

    [[nodiscard]] QString getDocumentIdentity() override
    {
        ++asked;
        return till::Cheque::getDocumentIdentity();
    }

    int asked = 0;
};

TEST_F(CheckData, ThatIsCompleteLeavesTheDocumentUnasked)
{
    const auto document = QSharedPointer<AskedCheque>::create();

    (void)ordinaryCheque(document);
    const int askedBefore = document->asked;
    EXPECT_GE(askedBefore, 3);

    client.setCheckData(object(R"({"chequeNo":null,"chequeUid":"U","shiftNo":"16"})"));
    (void)ordinaryCheque(document);
    EXPECT_EQ(document->asked, askedBefore);
}

struct UidRow {
    const char* identity; // UTF-8
    const char* uid;
};

class ChequeUid : public testing::TestWithParam<UidRow> { };

TEST_P(ChequeUid, IsMadeFromTheIdentityAlone)
{
    const OpenClient client;

    EXPECT_EQ(client.getChequeUID(QString::fromUtf8(GetParam().identity)).toStdString(), GetParam().uid);
}

INSTANTIATE_TEST_SUITE_P(Identities, ChequeUid,
                         testing::Values(UidRow { "1", "11116E73-1C03-5DE6-9130-5F9925AE8AB4" },
                                         UidRow { "abc", "B01D8779-68C6-576D-BEF4-26488C9C9223" },
                                         UidRow { "чек № 7", "B3530222-42F5-5EC0-B16D-AA97794FEC08" },
                                         UidRow { "", "E129F27C-5103-5C5C-844B-CDF0A15E160D" }));

TEST(ChequeUidOfDocument, IsThatOfItsIdentityWhateverItsNumber)
{
    const OpenClient client;
    const auto document = DocumentBuilder().identity(u"abc"_s).number(5).build();
    const auto brought = DocumentBuilder().identity(u"abc"_s).number(6).shift(9).build();

    EXPECT_EQ(attribute(client.buildXmlCheck(document, {}, {}, {}).documentElement(), "ChequeUID"),
              "B01D8779-68C6-576D-BEF4-26488C9C9223");
    EXPECT_EQ(attribute(client.buildXmlCheck(brought, {}, {}, {}).documentElement(), "ChequeUID"),
              "B01D8779-68C6-576D-BEF4-26488C9C9223");
}

} // namespace
