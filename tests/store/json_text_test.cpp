#include "till/store/json_text.h"

#include "host/document/document_impact.h"
#include "host/facilities/exceptions.h"
#include "host/facilities/serder.h"
#include "tests/support/document_builder.h"
#include "till/store/document_json.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

[[nodiscard]] std::string written(const QVariant& value)
{
    till::JsonText json;
    json.any(value);
    return json.take().toStdString();
}

[[nodiscard]] std::string writtenText(const QString& text)
{
    return written(text);
}

struct Number {
    const char* name;
    double value;
    const char* form;
};

class JsonNumber : public testing::TestWithParam<Number> { };

} // namespace

TEST_P(JsonNumber, HasTheFormThatStoresHaveHeldAllAlong)
{
    EXPECT_EQ(written(GetParam().value), GetParam().form);
}

INSTANTIATE_TEST_SUITE_P(Forms, JsonNumber,
                         testing::Values(Number { "Zero", 0.0, "0" }, Number { "LessThanZero", -0.0, "0" },
                                         Number { "Whole", 100.0, "100" }, Number { "Price", 89.9, "89.9" },
                                         Number { "Negative", -1042.25, "-1042.25" },
                                         Number { "Hundredth", 0.01, "0.01" },
                                         Number { "NegativeTenth", -0.1, "-0.1" },
                                         Number { "HundredthsWithZero", 12.05, "12.05" },
                                         Number { "NextToHundredths", 12.050000000000002, "12.050000000000002" },
                                         Number { "Thousandths", 0.125, "0.125" },
                                         Number { "LargeSum", 999999999999.99, "999999999999.99" },
                                         Number { "LargerSum", 1000000000000.01, "1000000000000.01" },
                                         Number { "Imprecise", 0.1 + 0.2, "0.30000000000000004" },
                                         Number { "Thousandth", 0.001, "0.001" }, Number { "Small", 0.0001, "1e-04" },
                                         Number { "Smaller", 1.5e-7, "1.5e-07" },
                                         Number { "Round", 1e15, "1000000000000000" },
                                         Number { "WithHalf", 1e15 + 0.5, "1000000000000000.5" },
                                         Number { "LastInteger", 9007199254740991.0, "9007199254740991" },
                                         Number { "BehindIt", 12345678901234568.0, "12345678901234568" },
                                         Number { "Huge", 1e16, "1e+16" }),
                         [](const auto& row) { return row.param.name; });

TEST(JsonText, NumberThatIsNoneIsRefused)
{
    EXPECT_THROW((void)written(std::numeric_limits<double>::quiet_NaN()), BasicException);
    EXPECT_THROW((void)written(QVariantList { std::numeric_limits<double>::infinity() }), BasicException);
    EXPECT_THROW((void)written(std::numeric_limits<float>::infinity()), BasicException);
}

TEST(JsonText, TextIsEscapedWhereItHasToBe)
{
    EXPECT_EQ(writtenText(u"Молоко 3,2 %"_s), R"("Молоко 3,2 %")");
    EXPECT_EQ(writtenText(u"\"a\\b\""_s), R"("\"a\\b\"")");
    EXPECT_EQ(writtenText(u"\b\f\n\r\t\u0001\u001f/"_s), R"("\b\f\n\r\t\u0001\u001f/")");
    EXPECT_EQ(writtenText(QString()), R"("")");
}

TEST(JsonText, HalfOfALetterIsEscapedAndAWholeOneIsNot)
{
    const QString whole = QString::fromUcs4(U"\U0001F600", 1);

    EXPECT_EQ(writtenText(whole), "\"\xF0\x9F\x98\x80\"");
    EXPECT_EQ(writtenText(whole.first(1) + u'x'), R"("\ud83dx")");
    EXPECT_EQ(writtenText(whole.last(1)), R"("\ude00")");
}

// Qt writes the mark as it is, and drops it when it reads the text again.
TEST(JsonText, ByteOrderMarkThatBeginsATextIsEscaped)
{
    const QString mark(QChar(QChar::ByteOrderMark));

    EXPECT_EQ(writtenText(mark + u"Молоко"_s), "\"\\ufeffМолоко\"");
    EXPECT_EQ(writtenText(mark + mark), "\"\\ufeff\xEF\xBB\xBF\"");
    EXPECT_EQ(writtenText(u'a' + mark), "\"a\xEF\xBB\xBF\"");
    EXPECT_EQ(written(QVariantMap { { mark, 1 } }), R"({"\ufeff":1})");
    for (const QString& text : { mark, mark + u"Молоко"_s, mark + mark, mark + u'"', u'a' + mark, u'"' + mark }) {
        const QJsonDocument read = QJsonDocument::fromJson(QByteArray::fromStdString('[' + writtenText(text) + ']'));
        EXPECT_EQ(read[0].toString(), text);
    }
}

TEST(JsonText, MapsAndListsStandWithinEachOther)
{
    const QVariantMap map { { u"a"_s, 1 }, { u"B"_s, QVariantList { true, QVariant(), QVariantMap() } },
                            { u"c"_s, QStringList { u"x"_s, u"y"_s } }, { u"d"_s, QVariantList() } };

    EXPECT_EQ(written(map), R"({"B":[true,null,{}],"a":1,"c":["x","y"],"d":[]})");
}

TEST(JsonText, RareTypesHaveTheFormThatQtGivesThem)
{
    const QVariantList rare { QUrl(u"http://server/a b"_s), QByteArray("ab"), QDate(2024, 3, 5), 1.5F, 7U };

    EXPECT_EQ(written(rare), R"(["http://server/a%20b","ab","2024-03-05",1.5,7])");
    EXPECT_EQ(written(QVariantMap { { u"key"_s, QDate(2024, 3, 5) } }), R"({"key":"2024-03-05"})");
}

TEST(JsonText, MomentHasItsDistanceFromUtc)
{
    till::JsonText json;
    json.beginList();
    json.moment(QDateTime(QDate(2024, 3, 5), QTime(14, 7, 9, 123), Qt::OffsetFromUTC, 3 * 3600));
    json.moment(QDateTime(QDate(2024, 3, 5), QTime(14, 7, 9, 123), Qt::OffsetFromUTC, -3600));
    json.moment(QDateTime());
    json.endList();

    EXPECT_EQ(json.take().toStdString(), R"(["2024-03-05T14:07:09.123+03:00","2024-03-05T14:07:09.123-01:00",null])");
}

TEST(JsonText, NothingIsLeftOfWhatWasTaken)
{
    till::JsonText json;
    json.whole(1);
    ASSERT_EQ(json.take().toStdString(), "1");
    json.flag(false);
    EXPECT_EQ(json.take().toStdString(), "false");
}

TEST(DocumentText, HasItsKeysInOrder)
{
    QMap<int, double> sums;
    for (int position = 1; position <= 12; ++position) { // as texts, 10 comes before 2
        sums.insert(position, 1.5);
    }
    const QByteArray text = till::toJson(DocumentBuilder()
                                             .line(Goods(1, u"0042"_s, 10.5))
                                             .deletedLine(Goods(2, u"0043"_s, 20.0))
                                             .card(u"9000000001"_s)
                                             .cash(10.5)
                                             .discount(Detail(u"Скидка"_s).code(4).sum(18.0), sums)
                                             .build());

    EXPECT_EQ(text.toStdString(), QJsonDocument::fromJson(text).toJson(QJsonDocument::Compact).toStdString());
}

TEST(DocumentText, HoldsAnImpactAsItsStoredPropertiesAre)
{
    const auto document = QSharedPointer<till::Cheque>::create();
    const auto impact = discountImpact(Detail(u"Скидка"_s).code(4).percent(5).rate(5).type(2).mode(1).source(3).sum(18.0),
                                       { { 2, 10.25 }, { 10, 7.75 } });
    impact->getTotals()->setDateTime(QDateTime(QDate(2024, 3, 5), QTime(14, 7, 9, 123), Qt::UTC));
    impact->getTotals()->setCardIndex(5);
    impact->getTotals()->setMinPriceIgnored(true);
    document->impacts.append(impact);
    QVariant properties;
    serder::default_serder_type<DocumentImpact>::strategy.serialize(&properties, impact.data(),
                                                                    DocumentImpact::staticMetaObject);
    const QJsonObject stored = QJsonDocument::fromJson(till::toJson(document)).object();

    EXPECT_EQ(QJsonDocument(stored[u"impacts"_s][0][u"impact"_s].toObject()).toJson().toStdString(),
              QJsonDocument(QJsonObject::fromVariantMap(properties.toMap())).toJson().toStdString());
}

TEST(JsonTextOfLongTexts, EscapesALetterWhereverItStands)
{
    struct Letter {
        QString letter;
        std::string form;
    };
    const QList<Letter> letters { { u"\""_s, R"(\")" },        { u"\\"_s, R"(\\)" },
                                  { u"\n"_s, R"(\n)" },        { u"\u001f"_s, R"(\u001f)" },
                                  { u"\u00e9"_s, "\xc3\xa9" }, { u"\u8020"_s, "\xe8\x80\xa0" },
                                  { u"\u0141"_s, "\xc5\x81" } };
    const QString plain = u"abcdefghijklmnopqrstuvw"_s;
    for (qsizetype size = 0; size <= plain.size(); ++size) {
        for (qsizetype at = 0; at <= size; ++at) {
            for (const Letter& each : letters) {
                const std::string expected
                    = '"' + plain.first(at).toStdString() + each.form + plain.sliced(at, size - at).toStdString() + '"';
                EXPECT_EQ(writtenText(plain.first(at) + each.letter + plain.sliced(at, size - at)), expected);
            }
        }
    }
}
