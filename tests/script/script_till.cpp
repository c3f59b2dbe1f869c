#include "tests/script/script_till.h"

#include "host/facilities/exceptions.h"
#include "till/script/script_line.h"
#include "till/store/store.h"

using namespace Qt::StringLiterals;
using vantiro_test::Answer;
using vantiro_test::HttpRequest;

ScriptTill::ScriptTill(bool controlsService)
    : service([this](const HttpRequest& request) { return answer(request); })
    , control([this](const HttpRequest& request) { return answerControl(request); })
    , delivery({ .timeout = 5 })
{
    results = {
        { "IsCardValid", "true" },
        { "GetCardBalance", R"(<B><Balance Value="1000,00"/></B>)" },
        { "GetDiscounts",
          R"(<R><ChequeLine ChequeLineNo="1"><Discount DiscountID="77" Amount="10.00" Type="Amount" Percent="0"/></ChequeLine></R>)" },
        { "GetMessages", R"(<R><Msg Device="1" Body="Приходите ещё"/></R>)" },
        { "GetCardDiscountAmount", "50.00" },
        { "GetVerifyCode", "1234:9000000001" },
        { "IsCouponValid", "true" },
        { "SubtractBonus45", R"(<C><ChequeLine ChequeLineNo="1" Amount="30.00"/></C>)" },
        { "Accrual", "Спасибо" },
    };
    config.set(u"Vantiro:hosts"_s, service.url().toString());
    config.set(u"Vantiro:checkCouponPrefix"_s, u"c-"_s);
    till::store::open(place.filePath(u"till"_s));
    QSqlQuery query = till::store::prepare(u"PRAGMA synchronous = OFF"_s); // the power does not go here
    till::store::execute(query);
    if (controlsService) {
        serviceControl = till::ServiceControl({ { u"first"_s, service.url(), control.url() } });
    }
    screen = std::make_unique<till::Screen>([this](const QString& line) { lines.append(line); }, nullptr);
    plugin = std::make_unique<Vantiro>();
    EXPECT_TRUE(plugin->init());
    checkout = std::make_unique<till::Checkout>();
    startPlayer(true, false);
}

ScriptTill::~ScriptTill()
{
    player.reset();
    checkout.reset();
    plugin.reset();
    screen.reset();
    till::store::close();
}

void ScriptTill::startPlayer(bool canCrash, bool showWire)
{
    player.reset();
    const std::function<void()> crash = [this] { ++crashes; };
    player = std::make_unique<till::Player>(till::Player::Parts {
        *checkout, *screen, delivery, serviceControl, canCrash ? crash : std::function<void()>(), showWire });
}

std::string ScriptTill::play(const QString& line)
{
    try {
        player->play({ 1, till::wordsOf(line), line });
    } catch (const till::ScriptError& error) {
        return error.text().toStdString();
    } catch (const BasicException& failure) {
        return "store: " + failure.tr().ru().toStdString();
    }
    return "";
}

void ScriptTill::playWell(const QStringList& script)
{
    for (const QString& line : script) {
        EXPECT_EQ(play(line), "") << line.toStdString();
    }
}

std::string ScriptTill::output()
{
    return std::exchange(lines, {}).join(u'\n').toStdString();
}

std::string ScriptTill::controlCalls() const
{
    QByteArray calls;
    const QList<HttpRequest> requests = control.requests();
    for (const HttpRequest& request : requests) {
        calls += request.method + ' ' + request.target + ' ' + request.body.simplified() + '\n';
    }
    return calls.toStdString();
}

Answer ScriptTill::answer(const HttpRequest& request) const
{
    if (down) {
        return Answer(Answer::nothing().hangUp());
    }
    const QByteArray header = request.header("SOAPAction");
    const QByteArray action = header.mid(header.lastIndexOf('/') + 1);
    const QByteArray text = QString::fromUtf8(results.value(action)).toHtmlEscaped().toUtf8();
    return Answer::reply(200,
                         R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body><)" + action
                             + R"(Response xmlns="http://tempuri.org/"><)" + action + "Result>" + text + "</" + action
                             + "Result></" + action + "Response></s:Body></s:Envelope>");
}

Answer ScriptTill::answerControl(const HttpRequest& request) const
{
    return request.target == "/books" ? Answer::reply(200, books) : Answer::reply(controlStatus, controlBody);
}
