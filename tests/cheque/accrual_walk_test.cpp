#include "tests/cheque/cheque_support.h"
#include "tests/support/document_builder.h"
#include "tests/support/xml_compare.h"

using namespace Qt::StringLiterals;

namespace {

class AccrualWalk : public ChequeTest { };

}

// The walk begins at the first line and goes to the end: whatever stands behind it counts as a line as well.
TEST_F(AccrualWalk, GoesFromTheFirstLineToTheEnd)
{
    const QDomDocument cheque = client.buildAccrualXmlCheck(parsed(uR"(
        <Cheque>
          <ChequeLines>
            <Before ChequeLineNo="9"/>
            <ChequeLine ChequeLineNo="1" BonusDiscount="9.99"/>
            <!-- between -->
            <Behind ChequeLineNo="2" BonusDiscount="9.99"><Item ItemID="2"/></Behind>
          </ChequeLines>
          <ChequeLines>
            <ChequeLine ChequeLineNo="3"/>
          </ChequeLines>
        </Cheque>)"_s),
                                                            { bonusImpact({ { 1, 1.0 }, { 2, 2.0 } }) }, {}, {}, {});

    EXPECT_TRUE(sameXml(cheque, uR"(
        <Cheque>
          <ChequeLines>
            <ChequeLine ChequeLineNo="1" BonusDiscount="1.00"/>
            <ChequeLine ChequeLineNo="2" BonusDiscount="2.00"><Item ItemID="2"/></ChequeLine>
          </ChequeLines>
          <Discounts/>
          <Payments/>
          <Messages/>
        </Cheque>)"_s));
}
