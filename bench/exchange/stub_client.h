#pragma once

#include <QByteArray>

#include <memory>
#include <string>

/// A client that was made by gSOAP from the description of the service: what one gets without writing one. A connection
/// of its own for each call, no guard, nothing but the text of the result. Throws `std::runtime_error` when there is
/// none. [cheque-thread] [blocks]
class StubClient {
public:
    explicit StubClient(const QByteArray& address);
    ~StubClient();
    StubClient(const StubClient&) = delete;
    StubClient& operator=(const StubClient&) = delete;

    [[nodiscard]] bool isCardValid(const std::string& cardNumber);
    /// Of a cheque that is a text already.
    [[nodiscard]] std::string getDiscounts(const std::string& cheque);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
