#include "tests/documents/page.h"
#include "tests/documents/source_text.h"

#include <QMap>
#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// The page for operators has every text that a cashier, the log or the queue can show, to the letter, and no other; that
// for integrators has none that no source says.

namespace {

const QStringList folders { u"front"_s, u"client"_s, u"cheque"_s, u"bonus"_s, u"reports"_s, u"till"_s };

/// Tables of letters and patterns: no messages.
const QStringList noMessages { u"till/printing/code_page.cpp"_s, u"till/facilities/redaction.cpp"_s };

/// Sources whose English sentences stand in the place of a reason.
const QStringList reasons { u"client/xml_guard.cpp"_s,       u"client/xml_encoding.cpp"_s,
                            u"client/outside_xml.cpp"_s,     u"till/printing/form_guard.cpp"_s,
                            u"till/delivery/delivery.cpp"_s, u"till/delivery/verdict.cpp"_s };

[[nodiscard]] bool holds(const QString& text, const QString& pattern)
{
    return QRegularExpression(pattern).match(text).hasMatch();
}

[[nodiscard]] bool isMessage(const QString& file, const Literal& literal)
{
    if (noMessages.contains(file)) {
        return false;
    }
    return holds(literal.text, u"[А-Яа-яЁё]"_s)
        || (reasons.contains(file) && holds(literal.text, u"[a-z].* |^tag"_s) && !literal.text.startsWith(u"http"))
        || holds(literal.before, uR"((DeskError|refuseDocument)\((QStringLiteral\()?$)"_s)
        || (file == u"till/store/store.cpp" && holds(literal.before, uR"(\bfail\(QStringLiteral\($)"_s))
        || holds(literal.before, uR"(logger(\(\))?->(info|warn|error)\((QStringLiteral\()?$)"_s);
}

/// What a source may show, and at which levels it logs it in so many words.
struct Messages {
    QSet<QString> all;
    QSet<QString> literals; // also those that are no messages
    QMap<QString, QSet<QString>> levels;
};

[[nodiscard]] const Messages& messagesOfSources()
{
    static const Messages messages = [] {
        static const QRegularExpression call(uR"(->(trace|debug|info|warn|error)\((QStringLiteral\()?$)"_s);
        Messages found;
        for (const QString& folder : folders) {
            for (const QString& file : projectFiles(folder, { u"*.cpp"_s, u"*.h"_s })) {
                for (Literal literal : literalsOf(projectText(file))) {
                    if (literal.text.endsWith(u"\\n")) { // what goes to a terminal
                        literal.text.chop(2);
                    }
                    found.literals.insert(literal.text);
                    if (isMessage(file, literal)) {
                        found.all.insert(literal.text);
                        if (const auto match = call.match(literal.before); match.hasMatch()) {
                            found.levels[literal.text].insert(match.captured(1));
                        }
                    }
                }
            }
        }
        return found;
    }();
    return messages;
}

[[nodiscard]] const Page& page()
{
    static const Page operators(projectText(u"docs/operators.ru.md"_s));
    return operators;
}

[[nodiscard]] QStringList messagesOfPage()
{
    QStringList messages;
    for (const Row& row : page().rows()) {
        EXPECT_EQ(row.head.constFirst().toStdString(), "сообщение");
        const QString message = codeOf(row.cells.constFirst());
        EXPECT_FALSE(message.isNull()) << row.cells.constFirst().toStdString();
        messages.append(message);
    }
    return messages + page().quotations();
}

} // namespace

TEST(OperatorsPage, TellsNothingThatNoSourceSays)
{
    const QStringList messages = messagesOfPage();
    EXPECT_GT(messages.size(), 150);
    for (const QString& message : messages) {
        EXPECT_TRUE(messagesOfSources().literals.contains(message)) << '"' << message.toStdString() << '"';
    }
}

TEST(OperatorsPage, TellsEverythingThatTheSourcesSay)
{
    EXPECT_GT(messagesOfSources().all.size(), 150);
    const QStringList messages = messagesOfPage();
    for (const QString& message : messagesOfSources().all) {
        EXPECT_TRUE(messages.contains(message)) << '"' << message.toStdString() << '"';
    }
}

TEST(OperatorsPage, TellsEachOnce)
{
    QStringList messages = messagesOfPage();
    EXPECT_EQ(messages.removeDuplicates(), 0);
}

TEST(OperatorsPage, TellsEachUnderTheLevelThatItIsLoggedAt)
{
    int told = 0;
    for (const Row& row : page().rows()) {
        const QString message = codeOf(row.cells.constFirst());
        for (const QString& level : messagesOfSources().levels.value(message)) {
            const qsizetype column = row.head.indexOf(u"уровень"_s);
            const QString place = column < 0 ? row.heading : row.cells.at(column);
            EXPECT_TRUE(place.contains(level)) << message.toStdString() << " is logged at " << level.toStdString();
            ++told;
        }
    }
    EXPECT_GT(told, 60);
}

TEST(IntegratorsPage, TellsTheCashiersTextsToTheLetter)
{
    const Page integrators(projectText(u"docs/integrators.md"_s));
    int told = 0;
    for (const Row& row : integrators.rows()) {
        if (row.head.constFirst() == u"text") {
            const QString text = codeOf(row.cells.constFirst());
            EXPECT_TRUE(messagesOfSources().all.contains(text)) << row.cells.constFirst().toStdString();
            ++told;
        }
    }
    EXPECT_EQ(told, 10);
}
