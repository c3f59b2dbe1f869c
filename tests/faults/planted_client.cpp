#include "tests/faults/planted_client.h"

#include "host/facilities/rest_client.h"

namespace faults {

class PlantedClient::Client : public RestClient {
public:
    explicit Client(const QString& plantedDefect)
        : defect(plantedDefect)
    {
    }

    void post(const QUrl& url, const QByteArray& body, const QHash<QString, QString>& headers) override
    {
        RestClient::post(url, body, headers);
        if (defect == u"LossIsRepeated" && RestClient::hasConnectionError()) {
            RestClient::post(url, body, headers);
        }
    }

    void setTimeout(int seconds) override
    {
        RestClient::setTimeout(defect == u"LateReplyWaitsOn" ? 3 * seconds : seconds);
    }

    [[nodiscard]] bool isSuccess() override
    {
        return RestClient::isSuccess() || (defect == u"EveryReplyIsASuccess" && RestClient::hasHttpError());
    }

    [[nodiscard]] bool hasConnectionError() override
    {
        if (defect == u"ErrorIsALoss" && RestClient::hasHttpError()) {
            return true;
        }
        return RestClient::hasConnectionError() && defect != u"LossIsAnEmptyReply";
    }

    [[nodiscard]] bool hasHttpError() override
    {
        return RestClient::hasHttpError() && defect != u"EveryReplyIsASuccess" && defect != u"ErrorIsALoss";
    }

private:
    QString defect;
};

PlantedClient::PlantedClient(const QString& defect)
{
    if (!defect.isEmpty()) {
        client = std::make_unique<Client>(defect);
        MockFactory<RestClient>::mocked = client.get();
    }
}

PlantedClient::~PlantedClient()
{
    if (client) {
        MockFactory<RestClient>::mocked = nullptr;
    }
}

}
