#include "tests/walk/walked_till.h"

#include "host/facilities/exceptions.h"
#include "tests/walk/built_document.h"
#include "tests/walk/till_parts.h"
#include "tests/walk/till_view.h"
#include "tests/walk/wire_text.h"
#include "till/desk/open_document.h"
#include "till/document/cheque_contents.h"
#include "till/store/document_json.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <exception>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace walk {

namespace {

constexpr int cardMode = 7;

till::ChequeContents& contentsOf(const QSharedPointer<AbstractDocument>& document)
{
    return dynamic_cast<till::ChequeContents&>(*document);
}

QString yesOrNo(bool result)
{
    return result ? u"true"_s : u"false"_s;
}

// What the parser and the printer of XML write into the log differs from one version of Qt to the next.
QStringList steady(const QString& log)
{
    QStringList lines = log.isEmpty() ? QStringList() : log.split(u"\n"_s);
    QStringList kept;
    bool inReport = false;
    for (QString& line : lines) {
        const bool begins = line.startsWith(u"info: "_s) || line.startsWith(u"error: "_s)
            || line.startsWith(u"warn: "_s) || line.startsWith(u"debug: "_s);
        if (inReport && !begins) {
            continue;
        }
        inReport = line.startsWith(u"info: lastReport = "_s);
        if (inReport) {
            line = u"info: lastReport = …"_s;
        } else if (line.contains(u"ответ от сервера("_s)) {
            line = line.section(u'(', 0, 0) + u"(…"_s;
        }
        kept.append(line);
    }
    return kept;
}

QStringList toLines(const std::string& text)
{
    const QString lines = QString::fromStdString(text);
    return lines.isEmpty() ? QStringList() : lines.split(u'\n');
}

} // namespace

WalkedTill::WalkedTill(const Setting& itsSetting, const Document& document)
    : setting(itsSetting)
    , probe(DocumentBuilder().identity(u"probe"_s).build())
{
    start(build(document));
}

WalkedTill::~WalkedTill() = default;

void WalkedTill::start(const QSharedPointer<AbstractDocument>& document)
{
    tasks.reset();
    couponLogic.reset();
    saves.reset();
    till.reset(); // before the next: there is one loyalty system of a card mode
    till = std::make_unique<TillAtWork>(document, setting.keys());
    till->plugin.setRoundPrecisionForSpend(setting.step);
    saves = std::make_unique<Saves>();
    couponLogic = std::make_unique<Coupons>(*till);
    tasks = std::make_unique<Tasks>();
    saves->latest = till::toJson(document);
}

void WalkedTill::open(const QSharedPointer<AbstractDocument>& document)
{
    previous = till->document();
    till->open(document);
    saves->latest = till::toJson(document);
}

Account WalkedTill::run(const Step& step, const Script& script)
{
    for (const RestOutcome& outcome : script.outcomes) {
        till->server.end(outcome);
    }
    for (const std::optional<QString>& entry : script.entries) {
        if (entry) {
            till->cashier.enter(*entry);
        } else {
            till->cashier.cancel();
        }
    }
    const bool restarts = step.act == Act::restart;
    const qsizetype shownBefore = restarts ? 0 : till->cashier.shown().size();
    const qsizetype queuedBefore = restarts ? 0 : till->queue.records().size();

    Account account;
    saves->fail = step.savesFail;
    try {
        account.result = perform(step);
    } catch (const BasicException& exception) {
        account.result = u"throws "_s + exception.tr().ru();
    } catch (const std::exception& exception) {
        account.result = u"throws "_s + QString::fromUtf8(exception.what());
    }
    saves->fail = false;

    account.told = toLines(till->told());
    account.log = steady(QString::fromStdString(till->log()));
    account.shown = till->cashier.shown().mid(shownBefore);
    for (const QString& line : std::as_const(account.told)) {
        if (line.startsWith(u"post "_s)) {
            const RestPost post = till->server.take();
            account.sent.append(post.url.toString() + u' ' + wireText(post.body));
        }
    }
    for (const ScriptedQueue::Record& record : till->queue.records().mid(queuedBefore)) {
        const QJsonObject headers = record.message[u"headers"_s].toObject();
        EXPECT_EQ(headers[u"SOAPAction"_s].toString().toStdString(),
                  "http://tempuri.org/IVantiroService/OfflineAccrual");
        EXPECT_EQ(headers[u"Authorization"_s].toString().toStdString(), "Basic Og==");
        account.queued.append(record.message[u"url"_s].toString() + u' '
                              + wireText(record.message[u"body"_s].toString().toUtf8()));
    }
    return account;
}

QString WalkedTill::perform(const Step& step)
{
    switch (step.act) {
    case Act::open:
        open(build(step.document));
        break;
    case Act::addPosition:
        addPosition(step.amount);
        break;
    case Act::removePosition:
        takeOff(step.number);
        break;
    case Act::selectPosition:
        till->contents().selectPosition(step.number);
        break;
    case Act::event:
        tellEvent(step.number, static_cast<About>(step.variant));
        break;
    case Act::putOut:
        putOut(step.document);
        break;
    case Act::bringBack:
        bringBack();
        break;
    case Act::restart:
        restart(static_cast<Restart>(step.number), static_cast<Restoring>(step.variant));
        break;
    case Act::ping:
        return tasks->runFirst();
    default:
        return performOnCheque(step);
    }
    return u"done"_s;
}

QString WalkedTill::performOnCheque(const Step& step)
{
    OpenVantiro& plugin = till->plugin;
    switch (step.act) {
    case Act::identify:
        return identify(step.text);
    case Act::cardInfo:
        return cardInfo();
    case Act::cardNumber:
        return cardNumber(step.number);
    case Act::request:
        return yesOrNo(plugin.request(till->document()));
    case Act::hasPoints:
        return yesOrNo(plugin.hasPointsForSpend());
    case Act::getPoints:
        return exact(plugin.getPointsForSpend(till->document()));
    case Act::setPoints:
        plugin.setPointsForSpend(till->document(), step.amount);
        return u"done"_s;
    case Act::spend:
        return spend();
    case Act::rollback:
        return yesOrNo(plugin.rollback(till->document()));
    case Act::cancel:
        return yesOrNo(plugin.cancel());
    case Act::commit:
        return yesOrNo(plugin.commit(till->document()));
    case Act::addCoupon:
        return addCoupon(step.text);
    case Act::deleteCoupon:
        return yesOrNo(till->deleteCoupon(step.text));
    case Act::beforePutout:
        plugin.beforePutoutCheck();
        return u"done"_s;
    case Act::afterPutout:
        plugin.afterPutoutCheck();
        return u"done"_s;
    case Act::reveal:
        till->contents().head.deferred = step.variant == 1;
        plugin.revealCheck();
        till->contents().head.deferred = false;
        return u"done"_s;
    default:
        plugin.clearAfterClose();
        return u"done"_s;
    }
}

QString WalkedTill::identify(const QString& number)
{
    QSharedPointer<DocumentCardRecord> card
        = QSharedPointer<till::Card>::create(till::CardFields { number, 0, {}, 0.0, 0.0 });
    const bool isOurs = till->plugin.identifyByCard(card, {});
    if (isOurs) {
        till->contents().setCard(cardMode, 0, card);
    }
    return yesOrNo(isOurs);
}

QString WalkedTill::cardInfo()
{
    QSharedPointer<DocumentCardRecord> card = till->card();
    if (card.isNull()) {
        card = QSharedPointer<till::Card>::create(till::CardFields { u"9000000003"_s, 0, {}, 0.0, 0.0 });
    }
    return till->plugin.getCardInfo(card, {}) ? u"true, balance "_s + exact(card->getBonusBalance().toDouble())
                                              : u"false"_s;
}

QString WalkedTill::cardNumber(int type)
{
    const CardNumberResult result = till->plugin.getCardNumber({ type, u"79990001122"_s });
    return u"%1, number %2, error %3: %4"_s.arg(result.ok ? u"yes"_s : u"no"_s, result.cardNumber,
                                                result.error.getKey(), result.error.ru());
}

QString WalkedTill::spend()
{
    const qsizetype before = till->plugin.bonusImpacts.size();
    const bool result = till->plugin.spendPoints();
    if (result && till->plugin.bonusImpacts.size() > before) {
        till->card()->fields.spentSum += till->plugin.bonusImpacts.constLast()->getTotals()->getDiscountSum();
    }
    return yesOrNo(result);
}

QString WalkedTill::addCoupon(const QString& number)
{
    till::pendingModifiers() = { u"2"_s };
    const bool result = till->addCoupon(number);
    return yesOrNo(result) + u", modifiers "_s + (till::pendingModifiers().isEmpty() ? u"dropped"_s : u"kept"_s);
}

void WalkedTill::addPosition(double sum)
{
    till::LineFields line;
    line.code = u"1042"_s;
    line.price = sum;
    till->contents().addLine(line);
}

void WalkedTill::takeOff(int position)
{
    const QSharedPointer<GoodsItem> line = till->contents().remove(position);
    Event event = TillAtWork::event(21, till->document());
    till->tell(event.addArgument(u"position"_s, QVariant::fromValue(line)));
}

void WalkedTill::tellEvent(int code, About which)
{
    Document empty;
    empty.identity = u"empty"_s;
    if (code < 9 || code > 22 || code == 9) {
        till->tell(Event(static_cast<EActivityListener::Event>(code)));
    } else if (which == About::stornoOfCurrent) {
        Event event = TillAtWork::event(code, build(empty));
        till->tell(event.addArgument(u"documentBeforeStorno"_s, QVariant::fromValue(till->document())));
    } else {
        till->tell(TillAtWork::event(code,
                                     which == About::previous       ? previous
                                         : which == About::emptyOne ? build(empty)
                                                                    : till->document()));
    }
}

void WalkedTill::putOut(const Document& next)
{
    till->plugin.beforePutoutCheck();
    setAside.append(till::toJson(till->document()));
    till->plugin.afterPutoutCheck();
    open(build(next));
}

// The cheque comes back under a new number, identity and shift of the till.
void WalkedTill::bringBack()
{
    QJsonObject text = QJsonDocument::fromJson(setAside.takeFirst()).object();
    text[u"identity"_s] = text[u"identity"_s].toString() + u"-back"_s;
    const auto back = till::documentFromJson(QJsonDocument(text).toJson());
    till::ChequeHead& head = contentsOf(back).head;
    head.number += 1000;
    head.shift += 1;
    head.deferred = true;
    open(back);
    till->plugin.revealCheck();
    head.deferred = false;
}

void WalkedTill::restart(Restart from, Restoring how)
{
    const QByteArray text = from == Restart::asSaved ? saves->latest : till::toJson(till->document());
    start(till::documentFromJson(text));
    if (how == Restoring::byEvent) {
        till->tell(Event(EActivityListener::restoreDocument));
    } else if (how == Restoring::byHook) {
        EXPECT_TRUE(till->plugin.restoreLoyaltySystem());
    }
}

View WalkedTill::view()
{
    saves->isProbe = true;
    const CouponStores coupons = storesOf(till->plugin, probe);
    saves->isProbe = false;
    return viewOf(*till, coupons);
}

} // namespace walk
