#include "bench/cheque_forms.h"

#include "bonus/vantiro_bonus_interface.h"
#include "client/xml_writer.h"

#include <memory>

namespace {

/// The client, open to what makes the text of a cheque.
class TextClient : public VantiroBonusInterface {
public:
    using VantiroInterface::getXmlCheckString;
};

QString ordinary(const TextClient& client, const LongCheque& cheque)
{
    return client.getXmlCheckString(
        client.buildXmlCheck(cheque.sale, cheque.positionCoupons, cheque.coupons, cheque.granted));
}

/// Made from an ordinary one, which is part of its cost.
QString accrual(const TextClient& client, const LongCheque& cheque)
{
    QDomDocument document = client.buildXmlCheck(cheque.sale, cheque.positionCoupons, cheque.coupons, {});
    document = client.buildAccrualXmlCheck(document, cheque.spent, cheque.positionCoupons, cheque.coupons,
                                           cheque.sale->getMoneyItems());
    return client.getXmlCheckString(document);
}

QString goodsReturn(const TextClient& client, const LongCheque& cheque)
{
    return client.getXmlCheckString(client.buildBackXmlCheck(cheque.goodsReturn));
}

QString any(const TextClient& client, const LongCheque& cheque)
{
    return client.getXmlCheckString(client.buildAccrualAnyXmlCheck(cheque.sale));
}

QString canceled(const TextClient& client, const LongCheque& cheque)
{
    return client.getXmlCheckString(
        client.buildAccrualCanceledXmlCheck(cheque.sale, cheque.positionCoupons, cheque.coupons));
}

QString canceledAndEmptied(const TextClient& client, const LongCheque& cheque)
{
    return client.getXmlCheckString(
        client.buildAccrualCanceledXmlCheck(cheque.emptied, cheque.positionCoupons, cheque.coupons));
}

QString accrualRequest(TextClient& client, const LongCheque& cheque)
{
    QDomDocument request;
    QDomElement body;
    client.buildOnlineOrOfflineAccrualRequest(cheque.sale, cheque.spent, cheque.positionCoupons, cheque.coupons,
                                              request, body, false);
    client.createXmlRequest(request, body);
    return vantiro::writeXml(request);
}

template <class Build>
[[nodiscard]] ChequeForm form(const char* name, Build build)
{
    return { name, [build](const LongCheque& cheque) {
                return [build, &cheque, client = std::make_shared<TextClient>()] { return build(*client, cheque); };
            } };
}

} // namespace

const std::vector<ChequeForm>& chequeForms()
{
    static const std::vector<ChequeForm> forms {
        form("ordinary", ordinary),
        form("accrual", accrual),
        form("return", goodsReturn),
        form("any", any),
        form("canceled", canceled),
        form("canceled_emptied", canceledAndEmptied),
        form("accrual_request", accrualRequest),
    };
    return forms;
}
