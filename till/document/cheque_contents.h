#pragma once

#include "host/document/coupon.h"
#include "host/document/document_bonus_record.h"
#include "host/document/document_card_record.h"
#include "host/document/document_impact.h"
#include "host/document/enumerations.h"
#include "host/document/goods_item.h"
#include "host/document/money_item.h"
#include "host/document/position.h"
#include "host/export.h"
#include "till/document/kept_maps.h"
#include "till/document/line.h"

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QSharedPointer>
#include <QString>
#include <QVariant>

#include <optional>

namespace till {

/// What stands at the head of a document. Money is in roubles. A plain value.
struct ChequeHead {
    int type = EDocumentType::sale; // or any other number
    int number = 0;
    int shift = 0;
    QDateTime openTime; // invalid at opening: the time of the clock
    QDateTime closeTime; // invalid while the document is open
    bool offlineAllowed = true;
    bool deferred = false; // set aside, and being brought back
    QVariant sourceDocumentId; // of a return: the key of its sale
    std::optional<double> documentSum; // unset: the sum of the live lines
    std::optional<double> sumToPay; // unset: the sum of the live lines that points may pay for
};

/// What a document of the reference till holds, whatever its class: in memory, and without arithmetic of its own. Each
/// line carries its own sum; impacts are kept and lower nothing. The public fields are set between hooks, never while
/// one runs. [cheque-thread]
class VANTIRO_HOST_API ChequeContents {
public:
    /// An empty document of the identity. An empty identity makes a new one; give one only to bring a document back.
    ChequeContents(const ChequeHead& chequeHead, const QString& identity);

    ChequeContents(const ChequeContents&) = delete;
    ChequeContents& operator=(const ChequeContents&) = delete;

    [[nodiscard]] QString identity() const;

    /// Appends a line and makes it the current position. Throws `std::invalid_argument` when the position number is, or
    /// has been, that of another line; the document is then unchanged.
    QSharedPointer<Line> addLine(const LineFields& fields);
    /// Moves a live line to the deleted ones and returns it; null when no live line has the number. When it was the
    /// current position, the last live line is.
    QSharedPointer<GoodsItem> remove(int posnum);
    /// Takes the line that was added last off, as if it had never been added: its position number is free again. When
    /// it was the current position, the last live line is.
    void withdrawLine();
    /// Makes a live line the current position. Throws `std::invalid_argument` when there is no such line.
    void selectPosition(int posnum);
    /// The current position; none when no line is live.
    [[nodiscard]] Position currentPosition() const;
    [[nodiscard]] QList<QSharedPointer<GoodsItem>> liveLines() const;
    [[nodiscard]] QList<QSharedPointer<GoodsItem>> deletedLines() const;

    [[nodiscard]] double sum() const;
    [[nodiscard]] double sumForPoints() const;

    /// Attaches a card, in place of the one of the same mode. `type` is the till's own kind of card. Throws
    /// `std::invalid_argument` when the card is null.
    void setCard(int mode, int type, const QSharedPointer<DocumentCardRecord>& card);
    void removeCard(int mode);
    /// The card of the mode, null if there is none.
    [[nodiscard]] QSharedPointer<DocumentCardRecord> card(int mode) const;
    [[nodiscard]] bool hasCardOfType(int type) const;

    struct AttachedCard {
        int type = 0;
        QSharedPointer<DocumentCardRecord> record;
    };
    /// All cards, by mode.
    [[nodiscard]] QMap<int, AttachedCard> attachedCards() const;

    ChequeHead head;
    QList<QSharedPointer<MoneyItem>> payments;
    QList<QSharedPointer<Coupon>> coupons;
    QList<QSharedPointer<DocumentImpact>> impacts; // of all sources
    QList<DocumentBonusRecord> bonusRecords;
    QString pluginDataJson;
    mutable KeptMaps keptPluginMaps; // what plug-ins store is written after every step, and most of it stays the same

protected:
    ~ChequeContents();

private:
    QString documentIdentity;
    QList<QSharedPointer<GoodsItem>> live;
    QList<QSharedPointer<GoodsItem>> deleted;
    QMap<int, AttachedCard> cards; // by mode
    int currentPosnum = 0;
};

}
