#include "till/document/cheque_contents.h"

#include "host/facilities/current_time.h"

#include <QUuid>

#include <algorithm>
#include <stdexcept>

namespace till {

namespace {

using Lines = QList<QSharedPointer<GoodsItem>>;

Lines::const_iterator find(const Lines& lines, int posnum)
{
    return std::find_if(lines.cbegin(), lines.cend(),
                        [posnum](const QSharedPointer<GoodsItem>& line) { return line->getPosnum() == posnum; });
}

bool contains(const Lines& lines, int posnum)
{
    return find(lines, posnum) != lines.cend();
}

int highestPosnum(const Lines& lines)
{
    int highest = 0;
    for (const QSharedPointer<GoodsItem>& line : lines) {
        highest = std::max(highest, line->getPosnum());
    }
    return highest;
}

}

ChequeContents::ChequeContents(const ChequeHead& chequeHead, const QString& identity)
    : head(chequeHead)
    , documentIdentity(identity.isEmpty() ? QUuid::createUuid().toString(QUuid::WithoutBraces) : identity)
{
    if (!head.openTime.isValid()) {
        head.openTime = MockFactory<CurrentTime>::create()->getCurrentTime();
    }
}

ChequeContents::~ChequeContents() = default;

QString ChequeContents::identity() const
{
    return documentIdentity;
}

QSharedPointer<Line> ChequeContents::addLine(const LineFields& fields)
{
    LineFields numbered = fields;
    if (numbered.posnum == 0) {
        numbered.posnum = std::max(highestPosnum(live), highestPosnum(deleted)) + 1;
    } else if (contains(live, numbered.posnum) || contains(deleted, numbered.posnum)) {
        throw std::invalid_argument("the position number is taken");
    }
    auto line = QSharedPointer<Line>::create(numbered);
    live.append(line);
    currentPosnum = numbered.posnum;
    return line;
}

QSharedPointer<GoodsItem> ChequeContents::remove(int posnum)
{
    const auto found = find(live, posnum);
    if (found == live.cend()) {
        return nullptr;
    }
    QSharedPointer<GoodsItem> line = live.takeAt(std::distance(live.cbegin(), found));
    deleted.append(line);
    if (currentPosnum == posnum) {
        currentPosnum = live.isEmpty() ? 0 : live.constLast()->getPosnum();
    }
    return line;
}

void ChequeContents::withdrawLine()
{
    const int posnum = live.takeLast()->getPosnum();
    if (currentPosnum == posnum) {
        currentPosnum = live.isEmpty() ? 0 : live.constLast()->getPosnum();
    }
}

void ChequeContents::selectPosition(int posnum)
{
    if (!contains(live, posnum)) {
        throw std::invalid_argument("no live line has the position number");
    }
    currentPosnum = posnum;
}

Position ChequeContents::currentPosition() const
{
    if (live.isEmpty()) {
        return {};
    }
    return { Position::present, currentPosnum };
}

QList<QSharedPointer<GoodsItem>> ChequeContents::liveLines() const
{
    return live;
}

QList<QSharedPointer<GoodsItem>> ChequeContents::deletedLines() const
{
    return deleted;
}

double ChequeContents::sum() const
{
    if (head.documentSum) {
        return *head.documentSum;
    }
    double total = 0.0;
    for (const QSharedPointer<GoodsItem>& line : live) {
        total += line->getSumb();
    }
    return total;
}

double ChequeContents::sumForPoints() const
{
    if (head.sumToPay) {
        return *head.sumToPay;
    }
    double total = 0.0;
    for (const QSharedPointer<GoodsItem>& line : live) {
        if (line->isAllowBonusSpend()) {
            total += line->getSumb();
        }
    }
    return total;
}

void ChequeContents::setCard(int mode, int type, const QSharedPointer<DocumentCardRecord>& card)
{
    if (card.isNull()) {
        throw std::invalid_argument("there is no card to attach");
    }
    cards.insert(mode, { type, card });
}

void ChequeContents::removeCard(int mode)
{
    cards.remove(mode);
}

QSharedPointer<DocumentCardRecord> ChequeContents::card(int mode) const
{
    return cards.value(mode).record;
}

QMap<int, ChequeContents::AttachedCard> ChequeContents::attachedCards() const
{
    return cards;
}

bool ChequeContents::hasCardOfType(int type) const
{
    return std::any_of(cards.cbegin(), cards.cend(),
                       [type](const AttachedCard& attached) { return attached.type == type; });
}

}
