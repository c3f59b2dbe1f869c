#include "host/facilities/tr.h"

#include <QStringList>

#include <gtest/gtest.h>

using tr::Tr;

TEST(TrTest, DefaultIsEmptyText)
{
    EXPECT_EQ(Tr().ru(), QString());
    EXPECT_EQ(Tr().getKey(), QString());
}

TEST(TrTest, TextAloneHasNoKey)
{
    const Tr text(QStringLiteral("Карта заблокирована"));
    EXPECT_EQ(text.ru(), QStringLiteral("Карта заблокирована"));
    EXPECT_EQ(text.getKey(), QString());
}

TEST(TrTest, KeyAndWordingAreKept)
{
    const Tr text(QStringLiteral("requestNoConnection"), QStringLiteral("Нет связи с сервером"));
    EXPECT_EQ(text.getKey(), QStringLiteral("requestNoConnection"));
    EXPECT_EQ(text.ru(), QStringLiteral("Нет связи с сервером"));
}

TEST(TrTest, UndefinedKeyIsTheWordItself)
{
    EXPECT_EQ(tr::undefined, QStringLiteral("undefined"));
}

TEST(TrTest, MarkersWithoutArgumentsStay)
{
    EXPECT_EQ(Tr(QStringLiteral("скидка 5%1 и %2")).ru(), QStringLiteral("скидка 5%1 и %2"));
}

namespace {

struct Filling {
    const char* text;
    QStringList arguments;
    const char* expected;
};

class TrFillingTest : public ::testing::TestWithParam<Filling> { };

} // namespace

TEST_P(TrFillingTest, ArgumentFillsTheMarkerOfItsRank)
{
    Tr text(tr::undefined, QString::fromUtf8(GetParam().text));
    for (const QString& argument : GetParam().arguments) {
        text.arg(Tr(argument));
    }
    EXPECT_EQ(text.ru(), QString::fromUtf8(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(
    Markers, TrFillingTest,
    ::testing::Values(Filling { "%1%2", { "Нет связи", ". Доступно" }, "Нет связи. Доступно" },
                      Filling { "%2 перед %1", { "а", "б" }, "б перед а" },
                      Filling { "%5 и %3", { "а", "б" }, "б и а" }, // ranks count, not the numbers themselves
                      Filling { "%1, %1", { "дважды" }, "дважды, дважды" },
                      Filling { "%1 и %2", { "один" }, "один и %2" }, // left over
                      Filling { "%2 и %1", { "один" }, "%2 и один" }, //
                      Filling { "%1", { "один", "лишний" }, "один" }, //
                      Filling { "без мест", { "лишний" }, "без мест" }, //
                      Filling { "%1", { "" }, "" }, //
                      Filling { "%99-%10-%9", { "а", "б", "в" }, "в-б-а" }, // two digits are one number
                      Filling { "%100", { "а" }, "а0" }, // the third digit is text
                      Filling { "%0 %1", { "а" }, "%0 а" }, // markers begin at 1
                      Filling { "100% %1 %", { "а" }, "100% а %" }, //
                      Filling { "%%1", { "а" }, "%а" }, //
                      Filling { "%L1 %1", { "а" }, "%L1 а" }, // no marker of ours
                      Filling { "%٣ %1", { "а" }, "%٣ а" })); // digits of other scripts are text

TEST(TrTest, MarkerInsideAnArgumentStays)
{
    const QString text = Tr(tr::undefined, QStringLiteral("%1%2"))
                             .arg(Tr(QStringLiteral("скидка 10%2")))
                             .arg(Tr(QStringLiteral("%1 рублей")))
                             .ru();
    EXPECT_EQ(text, QStringLiteral("скидка 10%2%1 рублей"));
}

TEST(TrTest, ArgumentWithArgumentsIsFilledFirst)
{
    Tr inner(tr::undefined, QStringLiteral("[%1]"));
    inner.arg(Tr(QStringLiteral("%1")));
    EXPECT_EQ(Tr(tr::undefined, QStringLiteral("<%1>")).arg(inner).ru(), QStringLiteral("<[%1]>"));
}

TEST(TrTest, ArgumentMayBeTheTextItself)
{
    Tr text(tr::undefined, QStringLiteral("а%1"));
    text.arg(text);
    EXPECT_EQ(text.ru(), QStringLiteral("аа%1"));
}

TEST(TrTest, ArgChangesNoCopy)
{
    Tr text(tr::undefined, QStringLiteral("%1"));
    const Tr copy = text;
    text.arg(Tr(QStringLiteral("а")));
    EXPECT_EQ(copy.ru(), QStringLiteral("%1"));
    EXPECT_EQ(text.ru(), QStringLiteral("а"));
}

TEST(TrTest, VariantHoldsTheTextWithItsKey)
{
    const QVariant variant = Tr(QStringLiteral("key"), QStringLiteral("текст"));
    ASSERT_TRUE(variant.metaType() == QMetaType::fromType<Tr>());
    EXPECT_EQ(variant.value<Tr>().getKey(), QStringLiteral("key"));
    EXPECT_EQ(variant.value<Tr>().ru(), QStringLiteral("текст"));
}

TEST(TrTest, VariantGivesTheFilledTextAsString)
{
    const QVariant variant
        = Tr(QStringLiteral("key"), QStringLiteral("Система лояльности: %1")).arg(Tr(QStringLiteral("отказ")));
    EXPECT_TRUE(variant.canConvert<QString>());
    EXPECT_EQ(variant.toString(), QStringLiteral("Система лояльности: отказ"));
}
