#include "host/framework/basic_loyalty_system.h"
#include "host/framework/session.h"
#include "till/desk/open_document.h"
#include "till/document/cheque.h"

#include <QList>

#include <gtest/gtest.h>

#include <string>

using namespace Qt::StringLiterals;

namespace {

/// Writes down which documents it is told of, by their numbers; "none" is the end of one.
struct ListeningSystem : BasicLoyaltySystem {
    explicit ListeningSystem(int mode)
    {
        cardMode = mode;
    }

    void setDocument(const QSharedPointer<AbstractDocument>& opened) override
    {
        BasicLoyaltySystem::setDocument(opened);
        told.append(opened ? QString::number(opened->getChequeNumber()) : u"none"_s);
        sessionAgreed = sessionAgreed && Singleton<Session>::get()->getDocument() == opened;
    }

    [[nodiscard]] std::string heard() const
    {
        return told.join(u' ').toStdString();
    }

    using DocumentWatcher::document;

    QStringList told;
    bool sessionAgreed = true;
};

QSharedPointer<till::Cheque> chequeOfNumber(int number)
{
    till::ChequeHead head;
    head.number = number;
    return QSharedPointer<till::Cheque>::create(head);
}

class OpenDocument : public testing::Test {
protected:
    ~OpenDocument() override
    {
        till::setOpenDocument(nullptr);
        till::pendingModifiers().clear();
    }

    [[nodiscard]] static QSharedPointer<AbstractDocument> open()
    {
        return Singleton<Session>::get()->getDocument();
    }
};

TEST_F(OpenDocument, IsNoneAtFirst)
{
    EXPECT_TRUE(open().isNull());
}

TEST_F(OpenDocument, IsTheSessionsUntilTheNextOne)
{
    const auto first = chequeOfNumber(1);
    const auto second = chequeOfNumber(2);

    till::setOpenDocument(first);
    EXPECT_EQ(open(), first);
    till::setOpenDocument(second);
    EXPECT_EQ(open(), second);
    till::setOpenDocument(nullptr);
    EXPECT_TRUE(open().isNull());
}

TEST_F(OpenDocument, IsReleasedWhenItEnds)
{
    auto cheque = chequeOfNumber(1);
    const QWeakPointer<till::Cheque> watched = cheque;
    ListeningSystem system(7);
    ASSERT_TRUE(system.init());

    till::setOpenDocument(cheque);
    cheque.reset();
    EXPECT_FALSE(watched.isNull());
    till::setOpenDocument(nullptr);
    EXPECT_TRUE(watched.isNull());
}

TEST_F(OpenDocument, EveryAnnouncedSystemIsTold)
{
    ListeningSystem first(7);
    ListeningSystem second(8);
    ASSERT_TRUE(first.init());
    ASSERT_TRUE(second.init());
    const auto cheque = chequeOfNumber(1042);
    till::setOpenDocument(cheque);

    EXPECT_EQ(first.heard(), "1042");
    EXPECT_EQ(second.heard(), "1042");
    EXPECT_EQ(first.document, cheque);
    EXPECT_EQ(second.document, cheque);
}

TEST_F(OpenDocument, SystemsAreToldOfItsEnd)
{
    ListeningSystem first(7);
    ListeningSystem second(8);
    ASSERT_TRUE(first.init());
    ASSERT_TRUE(second.init());
    till::setOpenDocument(chequeOfNumber(1042));
    till::setOpenDocument(nullptr);

    EXPECT_EQ(first.heard(), "1042 none");
    EXPECT_EQ(second.heard(), "1042 none");
    EXPECT_TRUE(first.document.isNull());
}

TEST_F(OpenDocument, SessionKnowsItBeforeTheSystems)
{
    ListeningSystem system(7);
    ASSERT_TRUE(system.init());
    till::setOpenDocument(chequeOfNumber(1));
    till::setOpenDocument(nullptr);

    EXPECT_EQ(system.heard(), "1 none");
    EXPECT_TRUE(system.sessionAgreed);
}

TEST_F(OpenDocument, SystemIsNotToldBeforeItAnnouncesItselfNorAfterItsEnd)
{
    ListeningSystem system(7);
    till::setOpenDocument(chequeOfNumber(1));
    ASSERT_TRUE(system.init());
    till::setOpenDocument(chequeOfNumber(2));
    system.deinit();
    till::setOpenDocument(chequeOfNumber(3));

    EXPECT_EQ(system.heard(), "2");
}

TEST_F(OpenDocument, NobodyNeedsToHearOfIt)
{
    const auto cheque = chequeOfNumber(1);
    till::setOpenDocument(cheque);

    EXPECT_EQ(open(), cheque);
}

TEST_F(OpenDocument, ModifiersAreDroppedTogether)
{
    till::pendingModifiers() = { u"x2"_s, u"-10%"_s };
    Singleton<Session>::get()->getModifiers()->clearAll();

    EXPECT_EQ(till::pendingModifiers().join(u' ').toStdString(), "");
}

TEST_F(OpenDocument, ModifiersAreNoneAtFirstAndStayNone)
{
    EXPECT_EQ(till::pendingModifiers().size(), 0);
    Singleton<Session>::get()->getModifiers()->clearAll();
    EXPECT_EQ(till::pendingModifiers().size(), 0);
}

TEST_F(OpenDocument, ModifiersAreKeptForTheNextPositionOfTheSameSession)
{
    till::pendingModifiers().append(u"x2"_s);
    till::setOpenDocument(chequeOfNumber(1));

    EXPECT_EQ(till::pendingModifiers().join(u' ').toStdString(), "x2");
    EXPECT_EQ(Singleton<Session>::get()->getModifiers(), Singleton<Session>::get()->getModifiers());
}

} // namespace
