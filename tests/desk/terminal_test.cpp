#include <QByteArray>
#include <QElapsedTimer>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr int patience = 30'000; // milliseconds

/// A till of which nobody has replaced the cashier, in a process of its own, with pipes for a terminal.
class Terminal {
public:
    explicit Terminal(const QStringList& arguments)
    {
        probe.start(QStringLiteral(VANTIRO_DESK_PROBE), arguments);
        EXPECT_TRUE(probe.waitForStarted(patience)) << probe.errorString().toStdString();
    }

    void type(const QByteArray& bytes)
    {
        probe.write(bytes);
        EXPECT_TRUE(probe.waitForBytesWritten(patience));
    }

    /// All that is shown up to these bytes; fails when they never come.
    [[nodiscard]] std::string upTo(const QByteArray& end)
    {
        QElapsedTimer timer;
        timer.start();
        while (!screen.endsWith(end) && timer.elapsed() < patience && probe.waitForReadyRead(1000)) {
            screen += probe.readAllStandardOutput();
        }
        EXPECT_TRUE(screen.endsWith(end)) << "it shows: " << screen.toStdString();
        return taken();
    }

    /// Ends the input, and gives all that is shown until the till has ended.
    [[nodiscard]] std::string toTheEnd()
    {
        probe.closeWriteChannel();
        EXPECT_TRUE(probe.waitForFinished(patience));
        EXPECT_EQ(probe.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(probe.exitCode(), 0);
        EXPECT_EQ(probe.readAllStandardError().toStdString(), "");
        screen += probe.readAllStandardOutput();
        return taken();
    }

private:
    [[nodiscard]] std::string taken()
    {
        const std::string result = screen.toStdString();
        screen.clear();
        return result;
    }

    QProcess probe;
    QByteArray screen;
};

/// What is shown when a till asks so many times and this is all that is ever typed.
std::string answersTo(int questions, const QByteArray& typed)
{
    Terminal terminal({ QStringLiteral("ask"), QString::number(questions) });
    if (!typed.isEmpty()) {
        terminal.type(typed);
    }
    return terminal.toTheEnd();
}

TEST(Terminal, PromptIsThereBeforeTheAnswer)
{
    Terminal terminal({ QStringLiteral("ask"), QStringLiteral("1") });

    EXPECT_EQ(terminal.upTo("Код: "), "Код: ");
    terminal.type("1234\n");
    EXPECT_EQ(terminal.toTheEnd(), "[1234]\n");
}

TEST(Terminal, AnswersAreReadOneByOne)
{
    Terminal terminal({ QStringLiteral("ask"), QStringLiteral("2") });

    EXPECT_EQ(terminal.upTo("Код: "), "Код: ");
    terminal.type("1\n");
    EXPECT_EQ(terminal.upTo("Код: "), "[1]\nКод: ");
    terminal.type("2\n");
    EXPECT_EQ(terminal.toTheEnd(), "[2]\n");
}

TEST(Terminal, LinesTypedAheadAreKeptForTheNextQuestions)
{
    EXPECT_EQ(answersTo(3, "1\n22\n333\n"), "Код: [1]\nКод: [22]\nКод: [333]\n");
}

TEST(Terminal, LinesBeyondTheReadAheadAreKept)
{
    const QByteArray line(20'000, '7');
    EXPECT_EQ(answersTo(3, line + '\n' + line + "\n1\n"),
              "Код: [" + line.toStdString() + "]\nКод: [" + line.toStdString() + "]\nКод: [1]\n");
}

TEST(Terminal, EmptyLineGivesUpThatQuestionAlone)
{
    EXPECT_EQ(answersTo(3, "1\n\n3\n"), "Код: [1]\nКод: none\nКод: [3]\n");
}

TEST(Terminal, BlanksAreAnAnswer)
{
    EXPECT_EQ(answersTo(1, "  \n"), "Код: [  ]\n");
}

TEST(Terminal, EndOfInputGivesUpEveryQuestion)
{
    EXPECT_EQ(answersTo(2, ""), "Код: none\nКод: none\n");
    EXPECT_EQ(answersTo(3, "1\n"), "Код: [1]\nКод: none\nКод: none\n");
}

TEST(Terminal, LastLineNeedsNoLineFeed)
{
    EXPECT_EQ(answersTo(2, "1\n2"), "Код: [1]\nКод: [2]\n");
}

TEST(Terminal, CarriageReturnEndsALineWithItsLineFeed)
{
    EXPECT_EQ(answersTo(3, "1\r\n\r\n3\r\n"), "Код: [1]\nКод: none\nКод: [3]\n");
}

TEST(Terminal, TextsAreUtf8InEveryLocale)
{
    EXPECT_EQ(answersTo(2, "Ёлка\n\xF0\x9F\x98\x80\n"), "Код: [Ёлка]\nКод: [\xF0\x9F\x98\x80]\n");
}

TEST(Terminal, IsWhereFormsErrorsMessagesAndSlipsAppear)
{
    Terminal terminal({ QStringLiteral("show") });
    terminal.type("1234\n");

    EXPECT_EQ(terminal.toTheEnd(),
              "Подтверждение\n"
              "Код из SMS: Неверный код\n"
              "Ошибка\n"
              "Сообщение\n"
              "Спасибо\n"
              "за покупку\n");
}

TEST(Terminal, FormThatTheCashierGivesUpShowsNothingMore)
{
    Terminal terminal({ QStringLiteral("show") });
    terminal.type("\n");

    EXPECT_EQ(terminal.toTheEnd(),
              "Подтверждение\n"
              "Код из SMS: Ошибка\n"
              "Сообщение\n"
              "Спасибо\n"
              "за покупку\n");
}

} // namespace
