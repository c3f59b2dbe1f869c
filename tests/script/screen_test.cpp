#include "till/desk/cashier.h"
#include "till/script/screen.h"

#include <gtest/gtest.h>

#include <memory>

using namespace Qt::StringLiterals;

// The cashier of a script: what he sees is kept for expectations, what he says comes from the script.

namespace {

class ScreenTest : public testing::Test {
protected:
    [[nodiscard]] std::string output() const
    {
        return lines.join(u'\n').toStdString();
    }

    [[nodiscard]] static std::string ask(const QString& prompt)
    {
        const std::optional<QString> answer = till::cashier().ask(prompt);
        return answer ? answer->toStdString() : "(cancelled)";
    }

    QStringList lines;
    QStringList prompts;
    std::unique_ptr<till::Screen> screen
        = std::make_unique<till::Screen>([this](const QString& line) { lines.append(line); },
                                         [this](const QString& prompt) -> std::optional<QString> {
                                             prompts.append(prompt);
                                             return prompt == u"Имя"_s ? std::optional(u"Анна"_s) : std::nullopt;
                                         });
};

} // namespace

TEST_F(ScreenTest, TextsGoToTheOutputAndAreKeptForTheStep)
{
    till::cashier().show(u"Нет связи"_s);
    till::cashier().show(u"Повторите"_s);
    EXPECT_EQ(output(), "    Нет связи\n    Повторите");
    EXPECT_EQ(screen->shown().join(u'|').toStdString(), "Нет связи|Повторите");
    EXPECT_EQ(screen->printed().size(), 0);
    screen->beginStep();
    EXPECT_EQ(screen->shown().size(), 0);
}

TEST_F(ScreenTest, SlipsAreKeptForTheStepAndForGood)
{
    till::cashier().handOver(u"Чек\nСпасибо"_s);
    EXPECT_EQ(output(), "    | Чек\n    | Спасибо");
    EXPECT_EQ(screen->printed().join(u'|').toStdString(), "Чек\nСпасибо");
    screen->beginStep();
    EXPECT_EQ(screen->printed().size(), 0);
    till::cashier().handOver(u"Второй"_s);
    EXPECT_EQ(screen->slips().join(u'|').toStdString(), "Чек\nСпасибо|Второй");
    EXPECT_EQ(screen->shown().size(), 0);
}

TEST_F(ScreenTest, AnswersComeFromTheScriptInTheirOrder)
{
    screen->answerNext(u"1234"_s);
    screen->answerNext(u"5678"_s);
    EXPECT_EQ(ask(u"Код"_s), "1234");
    EXPECT_EQ(ask(u"Код"_s), "5678");
    EXPECT_EQ(output(), "    Код: 1234\n    Код: 5678");
    EXPECT_EQ(prompts.size(), 0);
}

TEST_F(ScreenTest, WithoutAnAnswerSomebodyElseIsAsked)
{
    EXPECT_EQ(ask(u"Имя"_s), "Анна");
    EXPECT_EQ(ask(u"Код"_s), "(cancelled)");
    EXPECT_EQ(prompts.join(u' ').toStdString(), "Имя Код");
    EXPECT_EQ(output(), "") << "whoever was asked has seen it";
}

TEST_F(ScreenTest, WithNobodyToAskAFormIsCancelled)
{
    screen.reset();
    const till::Screen alone([](const QString&) {}, nullptr);
    EXPECT_EQ(ask(u"Имя"_s), "(cancelled)");
}

TEST_F(ScreenTest, AnswersThatAreDroppedAreGone)
{
    screen->answerNext(u"1234"_s);
    screen->dropAnswers();
    EXPECT_EQ(ask(u"Код"_s), "(cancelled)");
}

TEST_F(ScreenTest, LinesOfTheTillsOwnAreNotTheCashiers)
{
    screen->write(u"> open sale"_s);
    EXPECT_EQ(output(), "> open sale");
    EXPECT_EQ(screen->shown().size(), 0);
}

TEST_F(ScreenTest, IsTheCashierNoLongerThanItLives)
{
    screen.reset();
    testing::internal::CaptureStdout();
    till::cashier().show(u"Готово"_s);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Готово\n");
    EXPECT_EQ(output(), "");
}
