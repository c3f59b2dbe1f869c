#include "tests/restore/cheque_host.h"

#include "host/framework/activity_notifier.h"
#include "host/framework/documents_dao.h"
#include "host/framework/save_to_file_logic.h"
#include "till/desk/open_document.h"
#include "till/document/card.h"
#include "till/store/document_json.h"
#include "till/store/store.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>

#include <stdexcept>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString hostGroup = u"Host"_s;

} // namespace

ChequeHost::ChequeHost()
{
    if (!plugin.init()) {
        throw std::runtime_error("the plug-in is not taken");
    }
}

ChequeHost::~ChequeHost()
{
    till::setOpenDocument(nullptr);
}

QStringList ChequeHost::road(const QString& name)
{
    static const QMap<QString, QString> roads {
        { u"sale"_s,
          u"open card request discounts cheque-coupon position-coupon other-position-coupon position-off request offer "
          "discounts choose spend points set-aside reveal request discounts cheque-coupon pay commit closed end"_s },
        { u"early-set-aside"_s,
          u"open card request set-aside reveal request offer choose spend points pay commit closed end"_s },
        { u"offline"_s, u"open card cheque-coupon request request position-coupon offer pay commit closed end"_s },
        { u"no-card"_s, u"open request discounts position-coupon pay closed end"_s },
        { u"cancelled"_s,
          u"open card request cheque-coupon position-coupon choose spend points roll-back cancelled end"_s },
        { u"rolled-back"_s,
          u"open card request cheque-coupon choose spend points roll-back request choose spend points roll-back pay "
          "commit closed end"_s },
    };
    return roads.value(name).split(u' ', Qt::SkipEmptyParts);
}

QString ChequeHost::perform(const QString& step)
{
    using Step = QString (ChequeHost::*)();
    static const QMap<QString, Step> steps {
        { u"open"_s, &ChequeHost::open },
        { u"card"_s, &ChequeHost::presentCard },
        { u"request"_s, &ChequeHost::request },
        { u"discounts"_s, &ChequeHost::putDiscounts },
        { u"position-off"_s, &ChequeHost::removePosition },
        { u"offer"_s, &ChequeHost::offerPoints },
        { u"choose"_s, &ChequeHost::choosePoints },
        { u"spend"_s, &ChequeHost::spendPoints },
        { u"points"_s, &ChequeHost::putPoints },
        { u"roll-back"_s, &ChequeHost::rollBack },
        { u"set-aside"_s, &ChequeHost::setAside },
        { u"reveal"_s, &ChequeHost::reveal },
        { u"pay"_s, &ChequeHost::pay },
        { u"commit"_s, &ChequeHost::commit },
        { u"closed"_s, &ChequeHost::tellClosed },
        { u"cancelled"_s, &ChequeHost::tellCancelled },
        { u"end"_s, &ChequeHost::end },
    };
    QString result;
    if (step == u"cheque-coupon") {
        result = addCoupon(u"vantiro-c1"_s, 2);
    } else if (step == u"position-coupon") {
        result = addCoupon(u"vantiro-p1"_s, 1);
    } else if (step == u"other-position-coupon") {
        result = addCoupon(u"vantiro-p2"_s, 3);
    } else {
        result = (this->*steps.value(step))();
    }
    const QString error = plugin.getLastErrorString().ru();
    plugin.clearLastErrorString();
    return result + (error.isEmpty() ? QString() : u" ("_s + error + u')') + summary();
}

void ChequeHost::resume(bool restoring)
{
    document = storedDocument();
    if (document.isNull()) {
        throw std::runtime_error("the store has no document");
    }
    if (contents().head.deferred || kept(over).toBool()) {
        document.reset(); // not the open one
        return;
    }
    till::setOpenDocument(document);
    if (restoring) {
        Singleton<ActivityNotifier>::get()->notify(Event(EActivityListener::restoreDocument));
    }
    // Two things are not part of what the plug-in stores: an amount that was chosen and not spent yet, and a spending's
    // being undone, which it forgets but leaves stored until its next update.
    if (const QVariant chosen = kept(chosenPoints); chosen.isValid()) {
        plugin.setPointsForSpend(document, chosen.toDouble());
    }
    if (kept(rolledBack).toBool()) {
        plugin.cancel();
    }
}

QStringList ChequeHost::onDisk()
{
    QStringList lines { u"document "_s + QString::fromUtf8(till::toJson(storedDocument())) };
    QSqlQuery query = till::store::prepare(u"SELECT queue, message FROM queue ORDER BY rowid"_s);
    till::store::execute(query);
    while (query.next()) {
        const QJsonObject message = QJsonDocument::fromJson(query.value(1).toByteArray()).object();
        const QByteArray headers = QJsonDocument(message[u"headers"_s].toObject()).toJson(QJsonDocument::Compact);
        lines.append(u"queued for %1 %2 %3 %4 %5"_s.arg(query.value(0).toString(), message[u"request"_s].toString(),
                                                        message[u"url"_s].toString(), QString::fromUtf8(headers),
                                                        message[u"body"_s].toString().replace(u'\n', u'|')));
    }
    return lines;
}

QSharedPointer<AbstractDocument> ChequeHost::storedDocument()
{
    return Singleton<DocumentsDao>::get()->getDocument(identity, 0);
}

till::ChequeContents& ChequeHost::contents() const
{
    return dynamic_cast<till::ChequeContents&>(*document);
}

void ChequeHost::save() const
{
    MockFactory<SaveToFileLogic>::create()->save(document, QString());
}

void ChequeHost::keep(const QString& name, const QVariant& value) const
{
    document->setValue(hostGroup, name, value);
}

QVariant ChequeHost::kept(const QString& name) const
{
    const QVariant value = document->getValue(hostGroup, name, QVariant());
    return value.isNull() ? QVariant() : value; // the store has a null of its own
}

QString ChequeHost::summary() const
{
    if (document.isNull()) {
        return u"; no document"_s;
    }
    QStringList numbers;
    for (const QSharedPointer<Coupon>& coupon : std::as_const(contents().coupons)) {
        numbers.append(coupon->getNumber());
    }
    const QSharedPointer<DocumentCardRecord> card = contents().card(plugin.getCardMode());
    return u"; sum %1, impacts %2, coupons %3, card %4"_s.arg(
        QString::number(contents().sum(), 'f', 2), QString::number(contents().impacts.size()), numbers.join(u' '),
        card ? QString::number(card.dynamicCast<till::Card>()->fields.spentSum, 'f', 2) : u"none"_s);
}
