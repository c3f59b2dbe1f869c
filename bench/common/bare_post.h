#pragma once

#include <QByteArray>

#include <string>

/// What a request costs at the least: libcurl as it comes, one connection of its own, the reply's bytes taken and left
/// at that.
class BarePost {
public:
    explicit BarePost(QByteArray address);

    /// Throws `std::runtime_error` when no reply of status 200 came. [blocks]
    [[nodiscard]] QByteArray post(const std::string& operation, const QByteArray& body) const;

private:
    QByteArray address;
};
