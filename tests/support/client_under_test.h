#pragma once

#include "bonus/vantiro_bonus_interface.h"
#include "tests/support/scripted_rest_client.h"

#include <QByteArray>
#include <QDomDocument>
#include <QString>
#include <QStringList>

#include <functional>
#include <source_location>
#include <string>

/// The client with its fields open to view. [cheque-thread]
class ClientUnderTest : public VantiroBonusInterface {
public:
    /// Has these servers, in order of priority; is not initialized.
    explicit ClientUnderTest(const QStringList& servers);

    /// Posts a request without meaning, `<tem:Probe/>` with the action "Probe", and returns the parsed reply.
    [[nodiscard]] QDomDocument exchange();

    using VantiroInterface::authorizationHeader;
    using VantiroInterface::checkData;
    using VantiroInterface::currentServerIndex;
    using VantiroInterface::forbidDiscountForDiscountedPosition;
    using VantiroInterface::hosts;
    using VantiroInterface::logger;
    using VantiroInterface::noBonusForMinprice;
    using VantiroInterface::timeout;
};

/// The far end of a dialogue with one server, whose address is `http://server/`. An answer is given before the call
/// that asks for it, and what was asked is looked at after the call; a request that nobody has looked at when this
/// object goes fails the test. [cheque-thread]
class ScriptedService {
public:
    static inline const QString address = QStringLiteral("http://server/");

    ScriptedService() = default;
    ~ScriptedService();

    /// The next request gets a reply with the status 200 and this content of its body.
    void answer(const QByteArray& content);
    /// The next request gets a reply with the status 500 and a fault of this text, which is XML as it stands.
    void fault(const QByteArray& text);
    /// The next request gets no reply.
    void refuse();

    /// The oldest request not yet looked at must be one with this action, and its body must be, byte for byte, the
    /// envelope of an element `tem:` and the action, which holds these lines.
    void expect(const QByteArray& action, const QByteArray& lines,
                const std::source_location& where = std::source_location::current());
    /// All requests have been looked at.
    void expectNothing(const std::source_location& where = std::source_location::current()) const;

private:
    Q_DISABLE_COPY_MOVE(ScriptedService)

    ScriptedRestClient rest;
    qsizetype lookedAt = 0;
};

/// XML of the wire, written by hand.
namespace soap {

/// The body of a request, where `lines` are the lines within `soapenv:Body`, indented by two blanks.
[[nodiscard]] QByteArray request(const QByteArray& lines);
/// A reply as the service writes it.
[[nodiscard]] QByteArray reply(const QByteArray& content);
/// The content of a reply that refuses; the text is XML as it stands.
[[nodiscard]] QByteArray fault(const QByteArray& text);

}

/// Failures as `failureOf` tells them.
namespace failure {

inline const std::string noConnection = "VantiroNoConnectionException requestNoConnection: Нет связи с сервером";
inline const std::string incorrectAnswer = "VantiroException requestIncorrectAnswer: Некорректный ответ от сервера";
inline const std::string balanceNotFound
    = "VantiroException vantiroBalanceNotFound: В ответе от сервера не найден баланс карты";
/// A fault has no key: its text is the server's.
[[nodiscard]] std::string fault(const std::string& text);

}

/// The exact class of the exception that the call throws, its key and its Russian text: "Class key: text". "nothing"
/// when it throws none.
[[nodiscard]] std::string failureOf(const std::function<void()>& call);

/// As UTF-8, for comparisons whose failure a person can read; lists with one line each.
[[nodiscard]] std::string readable(const QString& text);
[[nodiscard]] std::string readable(const QByteArray& text);
[[nodiscard]] std::string readable(const QStringList& lines);
