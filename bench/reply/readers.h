#pragma once

#include <QByteArray>

#include <functional>
#include <string>
#include <vector>

/// What a reader has found: enough to see that it has read all of it.
struct Found {
    int discounts = 0;
    double sum = 0.0; // roubles

    bool operator==(const Found&) const = default;
};

/// A way to read the discounts out of a reply to `GetDiscounts`, from the bytes on: the envelope, the text in it, and
/// the document that this text is.
struct Reader {
    std::string name; // a peer is called `what:how`
    std::function<Found(const QByteArray&)> read;
};

/// Trees of both documents, as good as asked for: `tree` is the client's own road with its guard, `tree:bare_dom` is
/// Qt's parser alone. What is found is counted in the tree afterwards, the same way by both.
///
/// Values: `discounts` is all that the client does, up to the list of discounts that the till gets; its peers read the
/// position, code and sum of each and keep nothing. Throw `std::runtime_error`. [cheque-thread]
[[nodiscard]] const std::vector<Reader>& replyReaders();
