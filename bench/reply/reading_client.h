#pragma once

#include "bonus/vantiro_bonus_interface.h"
#include "client/reply.h"

/// The client, open to the road on which the discounts of a reply are read.
class ReadingClient : public VantiroBonusInterface {
public:
    using VantiroBonusInterface::extractCheckDiscounts;
    using VantiroBonusInterface::extractPositionDiscounts;

    /// The inner document of a reply to `GetDiscounts`, through everything that a reply has to pass.
    [[nodiscard]] QDomDocument discountsIn(const QByteArray& reply) const
    {
        const QDomDocument answer = createXmlAnswer(reply);
        const QDomElement result
            = vantiro::reply::requireSingle(answer, QStringLiteral("GetDiscountsResult"), tr::Tr());
        return processResponseXml(result.text());
    }
};
