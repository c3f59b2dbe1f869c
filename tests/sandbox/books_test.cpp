#include "tests/sandbox/cheque_text.h"
#include "tests/sandbox/sandbox_under_test.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <regex>

namespace {

constexpr unsigned seed = 20240305;

using Kopecks = long long;

[[nodiscard]] std::string text(Kopecks sum)
{
    const std::string kopecks = std::to_string(100 + std::abs(sum) % 100).substr(1);
    return (sum < 0 ? "-" : "") + std::to_string(std::abs(sum) / 100) + '.' + kopecks;
}

[[nodiscard]] Kopecks kopecks(std::string sum)
{
    sum.erase(sum.find('.'), 1);
    return std::stoll(sum);
}

struct Goods {
    Kopecks amount = 0;
    Kopecks bonus = 0;
    int quantity = 0;
    int returned = 0;
};

struct Sale {
    ChequeText cheque;
    std::vector<Goods> goods;
    Kopecks paid = 0;
};

/// A shop at work, with its own idea of what should be in the books.
class Shop {
public:
    void work(int cheques)
    {
        for (int i = 0; i < cheques; ++i) {
            const unsigned choice = next() % 10;
            if (choice < 6 || sales.empty()) {
                sell();
            } else if (choice < 8) {
                returnSome(sales[next() % sales.size()], false);
            } else {
                cancelOne();
            }
        }
    }

    void returnAll()
    {
        for (Sale& sale : sales) {
            returnSome(sale, true);
        }
    }

    SandboxUnderTest sandbox;
    std::vector<Sale> sales;
    Kopecks soldAmount = 0;
    int canceled = 0;
    int returns = 0;
    int repeats = 0;

private:
    [[nodiscard]] unsigned next()
    {
        return static_cast<unsigned>(random());
    }

    [[nodiscard]] std::string nextUid()
    {
        return std::to_string(10'000'000 + ++lastCheque) + "-0000-5000-8000-000000000000";
    }

    [[nodiscard]] static std::string lines(const std::vector<Goods>& goods)
    {
        std::string xml;
        for (std::size_t i = 0; i < goods.size(); ++i) {
            xml += LineText { .number = std::to_string(i + 1),
                              .item = "G" + std::to_string(i),
                              .amount = text(goods[i].amount),
                              .bonus = text(goods[i].bonus),
                              .quantity = std::to_string(goods[i].quantity) + ".000" }
                       .xml();
        }
        return xml;
    }

    /// Once or several times, online or late.
    void send(const ChequeText& cheque)
    {
        const unsigned times = next() % 4 == 0 ? 1 + next() % 3 : 1;
        for (unsigned i = 0; i < times; ++i) {
            const std::string operation = next() % 2 == 0 ? "Accrual" : "OfflineAccrual";
            EXPECT_EQ(sandbox.service.call(operation, cheque.parameter()).status, 200);
        }
        repeats += static_cast<int>(times) - 1;
    }

    [[nodiscard]] Sale openSale()
    {
        Sale sale;
        Kopecks amount = 0;
        sale.goods.resize(1 + next() % 4);
        for (Goods& goods : sale.goods) {
            goods.amount = 1 + static_cast<Kopecks>(next() % 50'000);
            goods.quantity = 1 + static_cast<int>(next() % 5);
            amount += goods.amount;
        }
        sale.cheque.uid = nextUid();
        sale.cheque.number = std::to_string(lastCheque);
        sale.cheque.card = next() % 3 == 0 ? "9000000002" : "9000000001";
        sale.cheque.amount = text(amount);
        sale.cheque.lines = lines(sale.goods);
        sale.paid = amount;
        return sale;
    }

    /// A random part of the limit; the spread is the service's.
    void spend(Sale& sale)
    {
        ChequeText& cheque = sale.cheque;
        const Kopecks limit
            = kopecks(sandbox.service.result("GetCardDiscountAmount", card(cheque.card) + cheque.parameter()));
        if (limit == 0 || next() % 2 == 0) {
            return;
        }
        const Kopecks sum = 1 + static_cast<Kopecks>(next()) % limit;
        const std::string spread
            = sandbox.service.result("SubtractBonus45", card(cheque.card) + amount(text(sum)) + cheque.parameter());
        static const std::regex line("ChequeLineNo=\"([0-9]+)\" Amount=\"([0-9.]+)\"");
        Kopecks total = 0;
        for (std::sregex_iterator i(spread.begin(), spread.end(), line); i != std::sregex_iterator(); ++i) {
            sale.goods[std::stoul((*i)[1]) - 1].bonus = kopecks((*i)[2]);
            total += kopecks((*i)[2]);
        }
        ASSERT_EQ(total, sum);
        cheque.spent = text(sum);
        cheque.amount = text(sale.paid - sum);
        cheque.lines = lines(sale.goods);
        sale.paid -= sum;
    }

    void sell()
    {
        Sale sale = openSale();
        spend(sale);
        sale.cheque.status = "Closed";
        send(sale.cheque);
        soldAmount += sale.paid;
        sales.push_back(sale);
    }

    void cancelOne()
    {
        Sale sale = openSale();
        spend(sale);
        sale.cheque.status = "Canceled";
        send(sale.cheque);
        ++canceled;
    }

    void returnSome(Sale& sale, bool all)
    {
        std::vector<Goods> back = sale.goods;
        int count = 0;
        for (std::size_t i = 0; i < back.size(); ++i) {
            const int left = sale.goods[i].quantity - sale.goods[i].returned;
            back[i].quantity = all || left == 0 ? left : static_cast<int>(next() % (static_cast<unsigned>(left) + 1));
            back[i].bonus = 0;
            sale.goods[i].returned += back[i].quantity;
            count += back[i].quantity;
        }
        if (count == 0) {
            return;
        }
        ChequeText cheque = sale.cheque;
        cheque.uid = nextUid();
        cheque.number = std::to_string(lastCheque);
        cheque.type = "Return";
        cheque.status = "Closed";
        cheque.spent = "0.00";
        cheque.saleNumber = sale.cheque.number;
        cheque.lines = lines(back);
        send(cheque);
        ++returns;
    }

    std::mt19937 random { seed };
    int lastCheque = 0;
};

/// By cards: the opening balance with what all cheques have done.
[[nodiscard]] std::map<std::string, Kopecks> balancesOf(const nlohmann::json& books)
{
    std::map<std::string, Kopecks> balances;
    for (const auto& card : books["cards"]) {
        balances[card["number"]] = kopecks(card["opening"]);
    }
    for (const auto& cheque : books["cheques"]) {
        balances[cheque["card"]] += kopecks(cheque["earned"]) - kopecks(cheque["spent"]);
    }
    return balances;
}

}

TEST(SandboxBooks, AddUpAfterASeriesOfChequesThatComeOnceOrMore)
{
    std::cout << "seed " << seed << '\n';
    Shop shop;
    shop.work(300);
    const nlohmann::json books = shop.sandbox.control.get("/books");
    EXPECT_EQ(books["totals"]["sales"], shop.sales.size());
    EXPECT_EQ(books["totals"]["saleAmount"], text(shop.soldAmount));
    EXPECT_EQ(books["totals"]["returns"], shop.returns);
    EXPECT_EQ(books["totals"]["canceled"], shop.canceled);
    EXPECT_EQ(books["totals"]["repeats"], shop.repeats);
    EXPECT_EQ(books["totals"]["conflicts"], 0);
    EXPECT_GT(shop.returns, 20);
    EXPECT_GT(shop.canceled, 20);
    EXPECT_GT(shop.repeats, 20);
    const auto balances = balancesOf(books);
    for (const char* const number : { "9000000001", "9000000002" }) {
        EXPECT_EQ(shop.sandbox.service.balance(number), text(balances.at(number)));
    }
    std::map<std::string, nlohmann::json> byUid;
    for (const auto& cheque : books["cheques"]) {
        byUid[cheque["uid"]] = cheque;
    }
    for (const Sale& sale : shop.sales) {
        ASSERT_EQ(byUid[sale.cheque.uid]["earned"], text(sale.paid * 5 / 100)) << sale.cheque.uid; // rounded down
        ASSERT_EQ(byUid[sale.cheque.uid]["spent"], sale.cheque.spent);
    }
}

TEST(SandboxBooks, AreAsAtFirstWhenAllGoodsHaveComeBack)
{
    std::cout << "seed " << seed << '\n';
    Shop shop;
    shop.work(150);
    EXPECT_NE(shop.sandbox.service.balance("9000000001"), "500.00");
    shop.returnAll();
    EXPECT_EQ(shop.sandbox.service.balance("9000000001"), "500.00");
    EXPECT_EQ(shop.sandbox.service.balance("9000000002"), "10.00");
    const nlohmann::json totals = shop.sandbox.control.get("/books")["totals"];
    EXPECT_EQ(totals["earned"], "0.00");
    EXPECT_EQ(totals["spent"], "0.00");
}
