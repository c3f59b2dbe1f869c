#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

namespace walk {

// The state of a till as plain values. Sums are in roubles.

/// A discount that the server has granted; on the whole cheque when `position` is 0.
struct Discount {
    double sum = 0.0;
    int position = 0;
    int code = 0;

    bool operator==(const Discount&) const = default;
};

/// A spending of points, and how the server has spread it.
struct Bonus {
    double sum = 0.0;
    QMap<int, double> byPosition;

    bool operator==(const Bonus&) const = default;
};

/// What a cheque is known by at the server. A part that is there and empty is one that was never known.
struct CheckData {
    std::optional<QString> number;
    std::optional<QString> uid;
    std::optional<QString> shift;

    bool operator==(const CheckData&) const = default;
};

/// What the plug-in keeps with a document; absent until it is first written.
struct Stored {
    std::optional<double> points;
    std::optional<QList<Discount>> discounts;
    std::optional<QList<Bonus>> bonuses;
    std::optional<bool> offline;
    std::optional<QMap<int, QStringList>> positionCoupons;
    std::optional<QStringList> chequeCoupons;
    std::optional<CheckData> deferredCheck;

    bool operator==(const Stored&) const = default;
};

struct Card {
    QString number;
    std::optional<double> balance;
    double points = 0.0;
    double spent = 0.0;

    bool operator==(const Card&) const = default;
};

struct Line {
    int number = 0;
    double sum = 0.0;
};

struct Document {
    QString identity;
    int number = 0;
    int shift = 17;
    int type = 1;
    std::optional<QString> saleNumber; // of a return that knows its sale: the sale's number at the server
    bool canGoOffline = true;
    bool deferred = false;
    std::optional<Card> card;
    bool hasOtherCard = false; // of the type 3, not this system's
    bool hasBonusRecord = false;
    QList<Line> live;
    QList<Line> deleted;
    int currentPosition = 0;
    QStringList coupons; // the till's own record of them
    QString json; // what the plug-in leaves for a later return
    Stored stored;

    [[nodiscard]] double sum() const;
    /// The sum of the lines that were taken off.
    [[nodiscard]] double deletedSum() const;
    [[nodiscard]] QString uid() const;
};

/// What can be seen of a till between two steps.
struct View {
    double points = 0.0;
    QList<Discount> discounts;
    QList<Bonus> bonuses;
    QStringList toCashier;
    QStringList toClient;
    QString error; // "key: text"
    QStringList chequeCoupons;
    QMap<int, QStringList> positionCoupons;
    std::optional<Card> card;
    Stored stored;
    QString json;
    QStringList coupons;

    bool operator==(const View&) const = default;
};

/// What a step has done, as far as it can be seen from outside.
struct Account {
    QString result;
    QStringList told; // requests, events, saves, queue, prints, screen, in order
    QStringList log;
    QStringList sent; // each request: its server and what it says
    QStringList queued; // each message, likewise
    QStringList shown; // what the cashier was shown

    bool operator==(const Account&) const = default;
};

/// A number in full.
[[nodiscard]] QString exact(double number);

/// For a comparison whose failure a person can read: a line for each field.
[[nodiscard]] QStringList lines(const View& view);
[[nodiscard]] QStringList lines(const Account& account);

} // namespace walk
