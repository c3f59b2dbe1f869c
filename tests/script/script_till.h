#pragma once

#include "front/vantiro.h"
#include "tests/support/loopback_server.h"
#include "tests/support/scripted_config.h"
#include "till/delivery/delivery.h"
#include "till/desk/checkout.h"
#include "till/script/player.h"
#include "till/script/screen.h"
#include "till/script/service_control.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>

/// Everything that a script works with, for real: the player, the checkout, the plug-in, the store, and over loopback a
/// service and its control address. A card holds 1000 points, of which 50 can be spent; every coupon is valid; position
/// 1 gets a discount of 10.00; the code of a telephone is 1234; the slip says "Спасибо". [cheque-thread]
class ScriptTill : public testing::Test {
protected:
    explicit ScriptTill(bool controlsService = true);
    ~ScriptTill() override;

    /// Carries the line out: "", or why it cannot be done.
    std::string play(const QString& line);
    /// All these lines must go well.
    void playWell(const QStringList& lines);
    /// What the screen has got since the last call, line by line.
    [[nodiscard]] std::string output();

    /// The service hangs up on everybody.
    std::atomic<bool> down = false;
    /// What the service answers to an operation, as text.
    QMap<QByteArray, QByteArray> results;
    /// What stands in the service's books; JSON.
    QByteArray books = R"({"cheques":[],"cards":[]})";
    /// Status and body of the next calls of the control address other than for the books.
    int controlStatus = 200;
    QByteArray controlBody = "{}";

    /// The calls of the control address: "POST /faults {…}".
    [[nodiscard]] std::string controlCalls() const;

private:
    [[nodiscard]] vantiro_test::Answer answer(const vantiro_test::HttpRequest& request) const;
    [[nodiscard]] vantiro_test::Answer answerControl(const vantiro_test::HttpRequest& request) const;

    QTemporaryDir place;
    ScriptedConfig config;
    QStringList lines;

protected:
    vantiro_test::LoopbackServer service;
    vantiro_test::LoopbackServer control;
    std::unique_ptr<till::Screen> screen;
    std::unique_ptr<Vantiro> plugin;
    std::unique_ptr<till::Checkout> checkout;
    till::Delivery delivery;
    till::ServiceControl serviceControl;
    int crashes = 0;
    std::unique_ptr<till::Player> player;

    /// Makes the player anew.
    void startPlayer(bool canCrash, bool showWire);
};
