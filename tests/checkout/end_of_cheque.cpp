#include "tests/checkout/end_of_cheque.h"

using namespace Qt::StringLiterals;

Crash::Crash()
    : std::runtime_error("the till dies here")
{
}

void PrintTo(const EndStory& story, std::ostream* stream)
{
    *stream << story.rule;
}

namespace {

/// The cheque within a request.
[[nodiscard]] QString chequeOf(const QString& body)
{
    const qsizetype from = body.indexOf(u"<![CDATA["_s);
    return body.mid(from, body.indexOf(u"]]>"_s) - from);
}

void sellWithEverything(EndOfCheque& shop, int number)
{
    shop.openSaleWithCard(number);
    ASSERT_TRUE(shop.till().addCoupon(u"c-1"_s));
    ASSERT_TRUE(shop.till().addCoupon(u"p-1"_s));
    shop.service.grant(discountOnPosition(1, 77, u"17.98"_s));
    ASSERT_TRUE(shop.till().request());
    shop.service.answer(u"SubtractBonus45"_s, spreadOf({ { 1, u"30.00"_s } }));
    ASSERT_TRUE(shop.till().payPoints(30.0));
}

void payEverything(EndOfCheque& shop, int number)
{
    sellWithEverything(shop, number);
    shop.till().payCertificate(u"70001"_s, 100.0);
    shop.till().payCash({});
}

void sellWithoutCard(EndOfCheque& shop, int number)
{
    shop.openSale(number);
    shop.till().payCash({});
}

void openReturn(EndOfCheque& shop, int number)
{
    shop.till().openReturn(number);
    shop.scan(u"1"_s, 10.0);
}

void openReturnOf(EndOfCheque& shop, int number)
{
    const int sale = number + 10'000;
    const bool down = std::exchange(shop.service.down, false);
    shop.openSaleWithCard(sale);
    shop.till().payCash({});
    ASSERT_TRUE(shop.till().close());
    shop.till().openReturnOf(sale, number);
    shop.till().takeBack(1, 1.0);
    shop.service.down = down;
}

void revealAndPay(EndOfCheque& shop, int number)
{
    shop.openSaleWithCard(number + 10'000);
    shop.till().putOut();
    shop.till().reveal(number + 10'000, number);
    shop.till().payCash({});
}

void takeAllOff(EndOfCheque& shop, int number)
{
    shop.openSaleWithCard(number);
    shop.till().remove(1);
    shop.till().remove(2);
}

}

const std::vector<EndStory> endStories {
    { "CloseOfASaleWithEverything", payEverything },
    { "CloseOfASaleWithEverythingInAnOutage", payEverything, false, true },
    { "CloseWithoutACard", sellWithoutCard },
    { "CloseWithoutACardInAnOutage", sellWithoutCard, false, true },
    { "CloseOfAReturn", openReturn },
    { "CloseOfAReturnOfASale", openReturnOf },
    { "CloseOfAReturnOfASaleInAnOutage", openReturnOf, false, true },
    { "CloseOfARevealedCheque", revealAndPay },
    { "CloseOfARevealedChequeInAnOutage", revealAndPay, false, true },
    { "CancelWithPoints", sellWithEverything, true },
    { "CancelOfAPaidCheque", payEverything, true },
    { "CancelWithAllLinesOff", takeAllOff, true },
    { "CancelInAnOutage", takeAllOff, true, true },
};

void EndOfCheque::prepare(int number)
{
    service.down = false;
    service.within = {};
    crashAt = -1;
    GetParam().prepare(*this, number);
    firstQueued = queued().size();
    answered.clear();
    posts = 0;
    service.down = GetParam().offline;
    service.within = [this](const QString& action) {
        if (posts++ == crashAt) {
            throw Crash();
        }
        if (!service.down && action == u"Accrual"_s) {
            answered.append(chequeOf(service.asked.constLast().body));
        }
    };
}

bool EndOfCheque::finish()
{
    return GetParam().cancels ? till().cancel() : till().close();
}

void EndOfCheque::restoreAndFinish()
{
    ASSERT_TRUE(till().restore());
    if (till().isOpen()) {
        ASSERT_TRUE(finish());
    }
}

std::string EndOfCheque::state(int number) const
{
    const std::string all = ", " + states();
    const std::string mark = ", " + std::to_string(number) + ' ';
    const std::size_t from = all.find(mark) + mark.size();
    return all.substr(from, all.find(',', from) - from) + (till().isOpen() ? ", open" : "");
}

QStringList EndOfCheque::toldOf(int number, QStringList* identities)
{
    QStringList cheques = answered;
    const QStringList messages = queued();
    for (qsizetype i = firstQueued; i < messages.size(); ++i) {
        cheques.append(chequeOf(messages.at(i)));
    }
    identities->clear();
    for (QString& cheque : cheques) {
        const QString identity = QString::fromStdString(valueBehind(cheque, u"ChequeUID=\""_s));
        identities->append(identity);
        cheque.replace(identity, u"UID"_s);
        cheque.replace(QString::number(number), u"NUMBER"_s);
    }
    identities->removeDuplicates();
    return cheques;
}
