#pragma once

#include "tests/support/scripted_rest_client.h"

#include <QByteArray>
#include <QString>

#include <source_location>

/// The far end of a dialogue about cheques, at `ScriptedService::address`. It is a `ScriptedService` but for the order
/// of attributes, which it leaves open, and for replies that hold a document as text. An answer is given before the
/// call that asks for it; a request that nobody has looked at when this object goes fails the test. [cheque-thread]
class ChequeService {
public:
    ChequeService() = default;
    ~ChequeService();

    /// The next request gets a reply with the status 200 that holds this XML.
    void answer(const QByteArray& content);
    /// The next request gets a reply as the service writes it: the result of the operation is this text.
    void answerText(const QByteArray& operation, const QString& text);
    /// The next request gets a reply with the status 500 and a fault of this text, which is XML as it stands.
    void fault(const QByteArray& text);
    /// The next request ends like this.
    void end(const RestOutcome& outcome);
    /// The next request gets no reply.
    void refuse();

    /// Runs within each later request.
    void whilePosting(const std::function<void()>& action);

    /// The oldest request not yet looked at must be one with this action, and its body the envelope of an element
    /// `tem:` and the action, which holds these lines.
    void expect(const QByteArray& action, const QByteArray& lines,
                const std::source_location& where = std::source_location::current());
    /// All requests have been looked at.
    void expectNothing(const std::source_location& where = std::source_location::current()) const;

    /// Looks at the oldest request, whatever it is.
    [[nodiscard]] RestPost take();
    /// Looks at the oldest request, which must be one with this action, and returns the text of its body.
    [[nodiscard]] QString take(const QByteArray& action,
                               const std::source_location& where = std::source_location::current());
    /// The action of the latest request: "GetDiscounts".
    [[nodiscard]] QString latestAction() const;

private:
    Q_DISABLE_COPY_MOVE(ChequeService)

    ScriptedRestClient rest;
    qsizetype lookedAt = 0;
};

/// The line of `tem:cheque`, within an operation of the body: the cheque as text, declaration and all.
[[nodiscard]] QByteArray chequeParameter(const QByteArray& cheque);
