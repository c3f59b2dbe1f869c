#include "till/script/player.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// What a shell offers when a word is begun, and the help that lists every verb.

namespace {

[[nodiscard]] std::string offered(const QStringList& words)
{
    return till::Player::completions(words).join(u' ').toStdString();
}

} // namespace

TEST(Completion, OfNothingIsEveryVerb)
{
    const std::string all
        = "open scan take remove position card phone request coupon points rollback pay close cancel putout "
          "reveal server deliver crash show expect say";
    EXPECT_EQ(offered({}), all);
    EXPECT_EQ(offered({ QString() }), all);
}

TEST(Completion, OfAVerbThatIsBegun)
{
    EXPECT_EQ(offered({ u"p"_s }), "position phone points pay putout");
    EXPECT_EQ(offered({ u"po"_s }), "position points");
    EXPECT_EQ(offered({ u"close"_s }), "close");
    EXPECT_EQ(offered({ u"x"_s }), "");
    EXPECT_EQ(offered({ u"P"_s }), "");
}

TEST(Completion, BehindAVerbIsItsLiteralWords)
{
    EXPECT_EQ(offered({ u"open"_s, QString() }), "sale return return-of");
    EXPECT_EQ(offered({ u"open"_s, u"r"_s }), "return return-of");
    EXPECT_EQ(offered({ u"scan"_s, QString() }), "code min no-discount no-points no-earn");
    EXPECT_EQ(offered({ u"phone"_s, QString() }), "code");
    EXPECT_EQ(offered({ u"coupon"_s, QString() }), "delete");
    EXPECT_EQ(offered({ u"pay"_s, QString() }), "cash certificate");
    EXPECT_EQ(offered({ u"cancel"_s, QString() }), "anyway");
    EXPECT_EQ(offered({ u"server"_s, QString() }), "stop start clear fault");
    EXPECT_EQ(offered({ u"show"_s, QString() }), "cheque queue wire slip books");
    EXPECT_EQ(offered({ u"expect"_s, QString() }),
              "ok failed refused no shown printed sum due discount points queue wire balance books agree");
}

TEST(Completion, BehindAVerbWithoutLiteralWordsIsNothing)
{
    for (const QString& verb :
         { u"close"_s, u"request"_s, u"rollback"_s, u"deliver"_s, u"putout"_s, u"card"_s, u"take"_s }) {
        EXPECT_EQ(offered({ verb, QString() }), "") << verb.toStdString();
    }
}

TEST(Completion, BehindAnUnknownVerbIsNothing)
{
    EXPECT_EQ(offered({ u"sell"_s, QString() }), "");
}

TEST(Completion, OfALaterWordIsThoseOfTheVerbToo)
{
    EXPECT_EQ(offered({ u"scan"_s, u"461"_s, u"@5"_s, u"no-"_s }), "no-discount no-points no-earn");
    EXPECT_EQ(offered({ u"expect"_s, u"no"_s, u"sh"_s }), "shown");
}

TEST(Help, TellsEveryVerbOnceWithItsMeaning)
{
    QStringList names;
    for (const till::VerbHelp& verb : till::Player::verbs()) {
        names.append(verb.usage.section(u' ', 0, 0));
        EXPECT_FALSE(verb.meaning.isEmpty()) << verb.usage.toStdString();
    }
    EXPECT_EQ(names.join(u' ').remove(u';').toStdString(), offered({}));
    EXPECT_EQ(names.removeDuplicates(), 0);
}
