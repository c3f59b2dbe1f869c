#include "tests/checkout/checkout_till.h"

#include "till/store/store.h"

using namespace Qt::StringLiterals;

namespace {

using DamagedOpenDocument = CheckoutTill;

/// The document that the till works on loses its end.
void damageOpenDocument()
{
    QSqlQuery query = till::store::prepare(u"UPDATE documents SET body = substr(body, 1, 40) WHERE state = 'open'"_s);
    till::store::execute(query);
}

} // namespace

TEST_F(DamagedOpenDocument, IsPutAsideAndTheTillStarts)
{
    openSale(1042);
    damageOpenDocument();
    restart();
    static_cast<void>(told());

    EXPECT_FALSE(till().restore());

    EXPECT_EQ(told(u"show"_s), "show Чек 1042 повреждён и отложен");
    EXPECT_EQ(states(), "1042 damaged");
    openSale(1043);
    EXPECT_EQ(states(), "1042 damaged, 1043 open");
}

TEST_F(DamagedOpenDocument, IsKeptAsItIs)
{
    openSale(1042);
    damageOpenDocument();
    restart();
    EXPECT_FALSE(till().restore());

    QSqlQuery query = till::store::prepare(u"SELECT length(body) FROM documents"_s);
    till::store::execute(query);
    ASSERT_TRUE(till::store::nextRow(query));
    EXPECT_EQ(query.value(0).toInt(), 40);
}
