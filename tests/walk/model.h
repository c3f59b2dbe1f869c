#pragma once

#include "tests/support/scripted_rest_client.h"
#include "tests/walk/records.h"
#include "tests/walk/setting.h"
#include "tests/walk/step.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>

namespace walk {

/// What is needed of the world for the last step to go as the model has foretold.
struct Script {
    QList<RestOutcome> outcomes; // of the requests, in order
    QList<std::optional<QString>> entries; // into forms, in order; none: the form is cancelled
};

/// The plug-in and the till around it, written down from what is promised and not from what was programmed: plain
/// values, no XML and no host. It foretells a step, and the step is then taken for real. A value.
class Model {
public:
    Model(const Setting& setting, const Document& document);

    /// Takes the step.
    [[nodiscard]] Account run(const Step& step);
    /// What the last step needs; the moods that it has used up, in words.
    [[nodiscard]] const Script& script() const;
    [[nodiscard]] const QStringList& moodsTold() const;

    [[nodiscard]] View view() const;
    [[nodiscard]] Situation situation() const;

private:
    /// Why an operation of the service has failed. Only a lost connection takes a document offline.
    struct Failure {
        enum Kind { lost, fault, unusable };

        Kind kind = unusable;
        QString key;
        QString text;

        [[nodiscard]] QString told() const
        {
            return key + QStringLiteral(": ") + text;
        }
    };

    template <class T>
    struct Got {
        T value {};
        std::optional<Failure> failure;
    };

    /// What a request has brought when it has brought anything.
    struct Reply {
        Manner content = Manner::answers;
        int variant = 0;
    };

    /// How one `post` has ended.
    struct Ending {
        Mood mood;
        QString error; // of a `post` without a reply, or with an error
    };

    struct SavesFail { };

    // The till.
    [[nodiscard]] QString perform(const Step& step);
    [[nodiscard]] QString performOnCheque(const Step& step);
    void open(const Document& document);
    void restart(Restart from, Restoring how);
    [[nodiscard]] Document* about(About which);
    [[nodiscard]] QString bringBack();
    [[nodiscard]] QString tellEvent(int code, About which);
    [[nodiscard]] QString runPing();

    // Identification, request, points.
    [[nodiscard]] QString identify(const QString& number);
    [[nodiscard]] QString cardInfo();
    [[nodiscard]] QString cardNumber(int type, Cashier cashier);
    [[nodiscard]] bool request();
    [[nodiscard]] bool hasPoints();
    [[nodiscard]] double getPoints();
    [[nodiscard]] bool spend();

    // Coupons.
    [[nodiscard]] bool addCoupon(const QString& number);
    [[nodiscard]] bool checkCoupon(const QString& number, bool& isOurs);
    [[nodiscard]] bool deleteCoupon(const QString& number);
    [[nodiscard]] bool forgetCoupon(const QString& number);

    // The end of a cheque.
    [[nodiscard]] bool commit();
    [[nodiscard]] bool giveBack();
    [[nodiscard]] bool rollback();
    void beforePutout();
    void reveal();
    void sendClosed(const Document& closed);
    void sendCancelled(const Document& cancelled);
    void takeOff(int position);

    // State.
    [[nodiscard]] bool isOffline() const;
    void updateData(bool offline);
    void updateCoupons();
    void save();
    void restore();
    void clearLoyaltyData();
    void clearCoupons();
    void clearAfterClose();

    // The service.
    [[nodiscard]] Got<Reply> exchange(const QString& action, const QString& parameters);
    [[nodiscard]] Ending post(int host, const QString& action, const QString& wire);
    [[nodiscard]] Got<bool> isCardValid(const QString& number);
    [[nodiscard]] Got<double> balanceOf(const QString& number);
    [[nodiscard]] Got<QString> cardByPhone(const QString& phone);
    [[nodiscard]] Got<QList<Discount>> getDiscounts();
    [[nodiscard]] std::optional<Failure> getMessages(QStringList& toCashier, QStringList& toClient);
    [[nodiscard]] Got<double> getAmount();
    [[nodiscard]] Got<Bonus> subtract(double amount);
    [[nodiscard]] std::optional<Failure> cancelSubtraction(double amount);
    [[nodiscard]] Got<bool> isCouponValid(const QString& number);
    [[nodiscard]] std::optional<Failure> sendAccrual(const QString& cheque, QString* slip);
    void enqueue(const QString& cheque);
    void print(const QString& slip);

    // Cheques, as `wireText` tells them.
    struct Cheque {
        QString type;
        QString status;
        double amount = 0.0;
        bool withCard = true;
        std::optional<QString> sale;
        QList<Line> lines;
        QList<Discount> granted;
        QList<Bonus> bonuses;
        QMap<int, QStringList> positionCoupons;
        QStringList coupons;
    };

    [[nodiscard]] QString text(const Document& document, const Cheque& cheque) const;
    [[nodiscard]] QString openCheque(const QList<Discount>& granted, bool withCoupons) const;
    [[nodiscard]] QString accrualCheque() const;
    [[nodiscard]] Got<QString> returnCheque() const;
    [[nodiscard]] QString anyCheque(const Document& closed) const;
    [[nodiscard]] QString cancelledCheque(const Document& cancelled) const;

    void logInfo(const QString& text);
    void logError(const QString& text);
    void report(const Failure& failure); // to the log, and as the last error

    [[nodiscard]] static Failure incorrectAnswer();
    [[nodiscard]] static Failure noCard();
    [[nodiscard]] static Failure lostConnection();
    [[nodiscard]] static QString withEarningNote(const Failure& failure, bool noted);

    Setting setting;

    // The till's side.
    Document document;
    std::optional<Document> previous;
    Document saved; // the open document as of the last save
    QList<Document> setAside;
    int tasks = 0;
    int opened = 1; // documents so far

    // The plug-in's side.
    int server = 0;
    CheckData checkData;
    double points = 0.0;
    QList<Discount> discounts;
    QList<Bonus> bonuses;
    QStringList toCashier;
    QStringList toClient;
    QString error = QStringLiteral(": "); // "key: text"
    QStringList chequeCoupons;
    QMap<int, QStringList> positionCoupons;
    QString lastCancelled;

    // The step.
    Account account;
    Script needed;
    QList<Mood> moods;
    QStringList used;
    bool savesFail = false;
};

} // namespace walk
