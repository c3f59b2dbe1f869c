#pragma once

#include "tests/support/client_under_test.h"

/// The client at the server of the scripted services, with the parts of its operations open to view. [cheque-thread]
class BonusClient : public ClientUnderTest {
public:
    BonusClient()
        : ClientUnderTest({ ScriptedService::address })
    {
    }

    using VantiroBonusInterface::extractCheckDiscounts;
    using VantiroBonusInterface::extractPositionDiscounts;
    using VantiroBonusInterface::getCertificatesFromDocument;
    using VantiroBonusInterface::lastReport;
    using VantiroBonusInterface::prepareBonusImpact;
    using VantiroBonusInterface::processResponseXml;
    using VantiroInterface::processXmlAlignNode;
    using VantiroInterface::processXmlTextNode;
};
