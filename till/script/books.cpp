#include "till/script/books.h"

#include <QHash>
#include <QSet>
#include <QUuid>

namespace till {

namespace {

    [[nodiscard]] QString money(Kopecks sum)
    {
        return QString::number(roubles(sum), 'f', 2);
    }

    [[nodiscard]] QString kindOf(int type, store::DocumentState state)
    {
        if (state == store::DocumentState::cancelled) {
            return QStringLiteral("cancelled");
        }
        return type == EDocumentType::sale ? QStringLiteral("sale") : QStringLiteral("return");
    }

    /// The points that paid for the document. A cancelled one has given them back.
    [[nodiscard]] Kopecks pointsOf(const ChequeContents& contents)
    {
        Kopecks points = 0;
        for (const QSharedPointer<DocumentImpact>& impact : contents.impacts) {
            if (impact.dynamicCast<BonusImpact>()) {
                points += kopecks(impact->getTotals()->getDiscountSum());
            }
        }
        return points;
    }

    /// What the service is told of the document's sum: that of the lines, those taken off when none is left.
    [[nodiscard]] Kopecks sumOf(const ChequeContents& contents)
    {
        if (!contents.liveLines().isEmpty()) {
            return kopecks(contents.sum());
        }
        Kopecks sum = 0;
        for (const QSharedPointer<GoodsItem>& line : contents.deletedLines()) {
            sum += kopecks(line->getSumb());
        }
        return sum;
    }

    [[nodiscard]] QString differenceOf(const BookLine& line, int bookings)
    {
        if (bookings > 1) {
            return QStringLiteral("the service has it %1 times").arg(bookings);
        }
        if (!line.serviceSum) {
            return QStringLiteral("the service does not have it");
        }
        if (!line.tillSum) {
            return QStringLiteral("the till does not have it");
        }
        if (*line.tillSum != *line.serviceSum) {
            return QStringLiteral("the sums are %1 and %2").arg(money(*line.tillSum), money(*line.serviceSum));
        }
        if (line.tillCancelled != line.serviceCancelled) {
            return line.serviceCancelled ? QStringLiteral("closed at the till, cancelled at the service")
                                         : QStringLiteral("cancelled at the till, closed at the service");
        }
        if (line.tillPoints != line.servicePoints) {
            return QStringLiteral("the points are %1 and %2").arg(money(line.tillPoints), money(line.servicePoints));
        }
        return QString();
    }

} // namespace

BookEntry bookEntryOf(const ChequeContents& contents, store::DocumentState state)
{
    return { QStringLiteral("%1 %2").arg(QString::number(contents.head.number), kindOf(contents.head.type, state)),
             sumOf(contents), pointsOf(contents) };
}

QString chequeUid(const QString& documentIdentity)
{
    return QUuid::createUuidV5(QUuid(), documentIdentity.toUtf8()).toString(QUuid::WithoutBraces).toUpper();
}

QList<BookLine> compareBooks(const ServiceControl& service)
{
    QHash<QString, ServiceCheque> booked;
    QHash<QString, int> bookings;
    QStringList order;
    const QList<ServiceCheque> cheques = service.cheques();
    for (const ServiceCheque& cheque : cheques) {
        if (++bookings[cheque.uid] == 1) {
            booked.insert(cheque.uid, cheque);
            order.append(cheque.uid);
        }
    }

    QList<BookLine> lines;
    QSet<QString> known;
    for (const store::DocumentEntry& entry : store::documents()) {
        if (entry.state != store::DocumentState::closed && entry.state != store::DocumentState::cancelled) {
            continue;
        }
        const QSharedPointer<AbstractDocument> document = store::documentOf(entry.identity);
        const auto& contents = dynamic_cast<const ChequeContents&>(*document);
        if (contents.liveLines().isEmpty() && contents.deletedLines().isEmpty()) {
            continue; // nothing that anybody was told of
        }
        BookLine line;
        const BookEntry booking = bookEntryOf(contents, entry.state);
        line.name = booking.name;
        line.uid = chequeUid(entry.identity);
        line.tillSum = booking.sum;
        line.tillPoints = booking.points;
        line.tillCancelled = entry.state == store::DocumentState::cancelled;
        if (const auto found = booked.constFind(line.uid); found != booked.constEnd()) {
            line.serviceSum = found->amount;
            line.servicePoints = found->points;
            line.serviceCancelled = found->cancelled;
        }
        line.difference = differenceOf(line, bookings.value(line.uid));
        known.insert(line.uid);
        lines.append(line);
    }
    for (const QString& uid : std::as_const(order)) {
        if (!known.contains(uid)) {
            BookLine line;
            line.name = booked[uid].kind;
            line.uid = uid;
            line.serviceSum = booked[uid].amount;
            line.servicePoints = booked[uid].points;
            line.difference = differenceOf(line, 1);
            lines.append(line);
        }
    }
    return lines;
}

QStringList bookTable(const QList<BookLine>& lines)
{
    const auto row = [](const QString& name, const QString& a, const QString& b, const QString& c, const QString& d,
                        const QString& note) {
        return QStringLiteral("%1%2%3%4%5  %6")
            .arg(name.leftJustified(18), a.rightJustified(12), b.rightJustified(10), c.rightJustified(12),
                 d.rightJustified(10), note)
            .trimmed();
    };
    QStringList table { row(QStringLiteral("cheque"), QStringLiteral("till"), QStringLiteral("points"),
                            QStringLiteral("service"), QStringLiteral("points"), QString()) };
    Kopecks tillSum = 0;
    Kopecks tillPoints = 0;
    Kopecks serviceSum = 0;
    Kopecks servicePoints = 0;
    int differences = 0;
    for (const BookLine& line : lines) {
        table.append(row(line.name, line.tillSum ? money(*line.tillSum) : QStringLiteral("-"),
                         line.tillSum ? money(line.tillPoints) : QStringLiteral("-"),
                         line.serviceSum ? money(*line.serviceSum) : QStringLiteral("-"),
                         line.serviceSum ? money(line.servicePoints) : QStringLiteral("-"), line.difference));
        tillSum += line.tillSum.value_or(0);
        tillPoints += line.tillPoints;
        serviceSum += line.serviceSum.value_or(0);
        servicePoints += line.servicePoints;
        differences += line.difference.isEmpty() ? 0 : 1;
    }
    table.append(row(QStringLiteral("turnover"), money(tillSum), money(tillPoints), money(serviceSum),
                     money(servicePoints), QString()));
    table.append(differences == 0 ? QStringLiteral("The two books agree, to the kopeck and to the point: %1 cheques.")
                                        .arg(lines.size())
                                  : QStringLiteral("The two books differ at %1 of %2 cheques.")
                                        .arg(QString::number(differences), QString::number(lines.size())));
    return table;
}

} // namespace till
