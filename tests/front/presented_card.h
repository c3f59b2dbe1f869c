#pragma once

#include "tests/front/till_at_work.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <string>

/// A card is presented whose number is 9000000002, and whose balance was 11 points when it was last seen. The open
/// cheque has no card: it gets one only after this hook. [cheque-thread]
class Identification : public testing::Test {
protected:
    static inline const QByteArray cardParameter = "   <tem:discountCardNumber>9000000002</tem:discountCardNumber>\n";
    // The log as far as it has come.
    static inline const std::string asking = "info: Получение информации о карте Vantiro\n";
    static inline const std::string validating = asking + "info: Валидация карты на сервере\n";
    static inline const std::string weighing = validating + "info: Получение баланса карты Vantiro\n";

    Identification()
    {
        till::CardFields fields;
        fields.number = QStringLiteral("9000000002");
        fields.bonusBalance = 11.0;
        presented = QSharedPointer<till::Card>::create(fields);
    }

    [[nodiscard]] bool identify(int numberType = 0)
    {
        QSharedPointer<DocumentCardRecord> card = presented;
        const bool accepted = till.plugin.identifyByCard(card, static_cast<ECardNumberType>(numberType));
        EXPECT_EQ(card, presented) << "the host's record stays the host's";
        return accepted;
    }

    /// With its type: "double 11".
    [[nodiscard]] std::string balance() const
    {
        const QVariant value = presented->fields.bonusBalance;
        return value.typeName() + (' ' + value.toString().toStdString());
    }

    /// The card is this system's and holds 1234.50 points.
    void answerWell()
    {
        till.server.answerText("IsCardValid", QStringLiteral("true"));
        till.server.answerText("GetCardBalance", QStringLiteral(R"(<Balance Value="1234,50"/>)"));
    }

    void expectBothQuestions()
    {
        till.server.expect("IsCardValid", cardParameter);
        till.server.expect("GetCardBalance", cardParameter);
    }

    TillAtWork till { TillAtWork::saleWithoutCard() };
    QSharedPointer<till::Card> presented;
};
