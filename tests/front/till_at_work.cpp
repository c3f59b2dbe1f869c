#include "tests/front/till_at_work.h"

#include "host/facilities/exceptions.h"
#include "host/framework/activity_notifier.h"
#include "tests/support/client_under_test.h"
#include "till/desk/open_document.h"
#include "till/document/cheque_contents.h"
#include "till/document/coupon_record.h"
#include "till/framework/action_dispatcher.h"

#include <gtest/gtest.h>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int cardMode = 7;
const QString pluginGroup = u"Vantiro"_s;

[[nodiscard]] QString argumentText(const Event& event, const QString& name)
{
    const QVariant value = event.value(name, QVariant());
    if (value.metaType() == QMetaType::fromType<tr::Tr>()) {
        return value.value<tr::Tr>().ru();
    }
    return value.toString();
}

}

void Journal::write(const QString& line)
{
    lines.append(line);
}

std::string Journal::read()
{
    return std::exchange(lines, {}).join(u'\n').toStdString();
}

class TillAtWork::JournalDialog : public ScriptedDialog {
public:
    explicit JournalDialog(Journal& target)
        : journal(target)
    {
    }

    [[nodiscard]] core::BasicDialog::Result showForm(const core::InputForm& form) override
    {
        journal.write(u"form "_s + form.id);
        return ScriptedDialog::showForm(form);
    }

    void showError(const tr::Tr& text, int first, int second) override
    {
        ScriptedDialog::showError(text, first, second);
        journal.write(shown().constLast());
    }

    void showMessage(const tr::Tr& text, int first, int second, int third) override
    {
        ScriptedDialog::showMessage(text, first, second, third);
        journal.write(shown().constLast());
    }

private:
    Journal& journal;
};

class TillAtWork::JournalQueue : public ScriptedQueue {
public:
    explicit JournalQueue(Journal& target)
        : journal(target)
    {
    }

    void enqueue(const QString& queue, const QJsonObject& message, const QString& extra) override
    {
        ScriptedQueue::enqueue(queue, message, extra);
        journal.write(u"enqueue %1 %2"_s.arg(queue, message[u"request"_s].toString()));
    }

private:
    Journal& journal;
};

class TillAtWork::JournalSaves : public SaveToFileLogic {
public:
    explicit JournalSaves(Journal& target)
        : journal(target)
    {
        EXPECT_EQ(MockFactory<SaveToFileLogic>::mocked, nullptr) << "two substitutes at once";
        MockFactory<SaveToFileLogic>::mocked = this;
    }

    ~JournalSaves() override
    {
        MockFactory<SaveToFileLogic>::mocked = nullptr;
    }

    void save(const QSharedPointer<AbstractDocument>& document, const QString& extra) override
    {
        EXPECT_FALSE(document.isNull());
        EXPECT_EQ(extra.toStdString(), "");
        if (!failure.isEmpty()) {
            throw BasicException(tr::Tr(failure));
        }
        journal.write(u"save"_s);
    }

    QString failure;

private:
    Journal& journal;
};

class TillAtWork::JournalPrinter : public TextPrinter {
public:
    explicit JournalPrinter(Journal& target)
        : journal(target)
    {
        EXPECT_EQ(MockFactory<TextPrinter>::mocked, nullptr) << "two substitutes at once";
        MockFactory<TextPrinter>::mocked = this;
    }

    ~JournalPrinter() override
    {
        MockFactory<TextPrinter>::mocked = nullptr;
    }

    void printText(const QString& text, int option) override
    {
        journal.write(u"print %1: %2"_s.arg(QString::number(option), text));
    }

private:
    Journal& journal;
};

class TillAtWork::JournalCoupons : public CouponLogic {
public:
    explicit JournalCoupons(Journal& target)
        : journal(target)
    {
        EXPECT_EQ(MockFactory<CouponLogic>::mocked, nullptr) << "two substitutes at once";
        MockFactory<CouponLogic>::mocked = this;
    }

    ~JournalCoupons() override
    {
        MockFactory<CouponLogic>::mocked = nullptr;
    }

    void deleteCoupon(const control::Action& action) override
    {
        journal.write(u"coupon off "_s + action.value(u"couponNumber"_s, QVariant()).toString());
    }

private:
    Journal& journal;
};

class TillAtWork::JournalListener : public BaseActivityListener {
public:
    explicit JournalListener(Journal& target)
        : BaseActivityListener(nullptr)
        , journal(target)
    {
        Singleton<ActivityNotifier>::get()->subscribe(this);
    }

    void handleEvent(const Event& event) override
    {
        const int code = event.getCode();
        if (code != 72 && code != 73 && code != 127 && code != 245) {
            return; // the till's own
        }
        QString line = u"event "_s + QString::number(code);
        for (const QString& name : { u"message"_s, u"text"_s, u"couponNumber"_s, u"forCustomer"_s }) {
            if (event.contains(name)) {
                line += u' ' + name + u'=' + argumentText(event, name);
            }
        }
        journal.write(line);
    }

private:
    Journal& journal;
};

DocumentBuilder TillAtWork::saleWithoutCard()
{
    return DocumentBuilder().line(Goods(1, u"1042"_s, 89.90, 2.0));
}

DocumentBuilder TillAtWork::saleWithCard()
{
    return saleWithoutCard().card(u"9000000001"_s);
}

TillAtWork::TillAtWork(const DocumentBuilder& document, const Settings& settings)
    : TillAtWork(QSharedPointer<AbstractDocument>(document.build()), settings)
{
}

TillAtWork::TillAtWork(const QSharedPointer<AbstractDocument>& document, const Settings& settings)
    : clock(at("2024-03-05T14:08:00"))
    , dialog(std::make_unique<JournalDialog>(journal))
    , messages(std::make_unique<JournalQueue>(journal))
    , saves(std::make_unique<JournalSaves>(journal))
    , printer(std::make_unique<JournalPrinter>(journal))
    , couponLogic(std::make_unique<JournalCoupons>(journal))
    , listener(std::make_unique<JournalListener>(journal))
    , cashier(*dialog)
    , queue(*messages)
{
    config.set(u"Vantiro:hosts"_s, ScriptedService::address);
    for (auto setting = settings.cbegin(); setting != settings.cend(); ++setting) {
        config.set(setting.key(), setting.value());
    }
    server.whilePosting([this] { journal.write(u"post "_s + server.latestAction()); });
    EXPECT_TRUE(plugin.init());
    open(document);
}

TillAtWork::~TillAtWork()
{
    till::setOpenDocument(nullptr);
}

void TillAtWork::open(const QSharedPointer<AbstractDocument>& document)
{
    current = document;
    till::setOpenDocument(current);
}

const QSharedPointer<AbstractDocument>& TillAtWork::document() const
{
    return current;
}

till::ChequeContents& TillAtWork::contents() const
{
    return dynamic_cast<till::ChequeContents&>(*current);
}

QSharedPointer<till::Card> TillAtWork::card() const
{
    return contents().card(cardMode).dynamicCast<till::Card>();
}

QVariant TillAtWork::stored(const QString& key) const
{
    return current->getValue(pluginGroup, key, QVariant());
}

void TillAtWork::store(const QString& key, const QVariant& value)
{
    current->setValue(pluginGroup, key, value);
}

void TillAtWork::goOffline()
{
    store(u"offlineMode"_s, true);
}

void TillAtWork::answerRequest(const QByteArray& points)
{
    server.answerText("GetDiscounts",
                      uR"(<R><ChequeLine ChequeLineNo="1"><Discount DiscountID="77" Amount="17.98" Type="Percent")"
                      uR"( Percent="10"/></ChequeLine></R>)"_s);
    server.answerText("GetMessages",
                      uR"(<R><Msg Device="1" Body="Спасибо за покупку"/><Msg Device="2" Body="Предложите пакет"/></R>)"_s);
    if (card()) {
        server.answerText("GetCardDiscountAmount", QString::fromLatin1(points));
    }
}

void TillAtWork::requestWell(const QByteArray& points)
{
    answerRequest(points);
    EXPECT_TRUE(plugin.request(current)) << lastError();
    for (const QByteArray action : { "GetDiscounts", "GetMessages", "GetCardDiscountAmount" }) {
        if (card() || action != "GetCardDiscountAmount") {
            EXPECT_FALSE(server.take(action).isEmpty());
        }
    }
    static_cast<void>(told());
    static_cast<void>(log());
}

void TillAtWork::answerSpending(const QByteArray& onPosition1)
{
    server.answerText(
        "SubtractBonus45",
        uR"(<Cheque><ChequeLines><ChequeLine ChequeLineNo="1" Amount="%1"/></ChequeLines></Cheque>)"_s.arg(
            QString::fromLatin1(onPosition1)));
}

void TillAtWork::spendWell(double points)
{
    answerSpending(QByteArray::number(points, 'f', 2));
    plugin.setPointsForSpend(current, points);
    EXPECT_TRUE(plugin.spendPoints()) << lastError();
    EXPECT_FALSE(server.take("SubtractBonus45").isEmpty());
    static_cast<void>(told());
    static_cast<void>(log());
}

bool TillAtWork::addCoupon(const QString& number)
{
    control::Action action;
    action.appendArgument(number, u"couponNumber"_s);
    return Singleton<till::ActionDispatcher>::get()->carryOut(
        EContext::openDocument, control::addCoupon, action, [this, &number](const control::Action& taken) {
            journal.write(u"host adds %1 type=%2 same=%3"_s.arg(
                number, taken.value(u"couponType"_s, QVariant()).toString(),
                taken.value(u"allowSameCouponNumber"_s, QVariant()).toString()));
            contents().coupons.append(QSharedPointer<till::CouponRecord>::create(number));
            return true;
        });
}

bool TillAtWork::deleteCoupon(const QString& number)
{
    CouponPtr coupon = QSharedPointer<till::CouponRecord>::create(number);
    for (const CouponPtr& onCheque : std::as_const(contents().coupons)) {
        if (onCheque->getNumber() == number) {
            coupon = onCheque;
            break;
        }
    }
    control::Action action;
    action.appendArgument(QVariant::fromValue(coupon), u"coupon"_s);
    return Singleton<till::ActionDispatcher>::get()->carryOut(EContext::openDocument, control::deleteCoupon, action,
                                                              [this, &coupon, &number](const control::Action&) {
                                                                  journal.write(u"host deletes "_s + number);
                                                                  contents().coupons.removeOne(coupon);
                                                                  return true;
                                                              });
}

void TillAtWork::tell(const Event& event)
{
    Singleton<ActivityNotifier>::get()->notify(event);
}

Event TillAtWork::event(int code, const QSharedPointer<AbstractDocument>& document)
{
    return Event(static_cast<EActivityListener::Event>(code))
        .addArgument(u"document"_s, QVariant::fromValue(document));
}

std::string TillAtWork::log()
{
    QStringList lines = logRecorder.of(u"vantiro"_s);
    logRecorder.clear();
    lines.removeIf([](const QString& line) { return line.startsWith(u"trace: "_s); });
    return readable(lines);
}

std::string TillAtWork::lastError() const
{
    const tr::Tr text = plugin.getLastErrorString();
    return readable(text.getKey() + u": "_s + text.ru());
}

std::string TillAtWork::told()
{
    return journal.read();
}

void TillAtWork::failSaves(const QString& reason)
{
    saves->failure = reason;
}

std::string told(const QList<QString>& coupons)
{
    return QStringList(coupons).join(u' ').toStdString();
}

std::string told(const QMap<int, QList<QString>>& coupons)
{
    QStringList positions;
    for (auto it = coupons.cbegin(); it != coupons.cend(); ++it) {
        positions.append(u"%1: %2"_s.arg(QString::number(it.key()), QStringList(*it).join(u' ')));
    }
    return positions.join(u"; "_s).toStdString();
}
