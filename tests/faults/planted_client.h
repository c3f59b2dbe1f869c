#pragma once

#include <QString>

#include <memory>

namespace faults {

/// A defect of the HTTP client, planted for the tests of the harness. While one of these lives, every client is
/// defective; the empty name plants nothing. [cheque-thread]
///
///     EveryReplyIsASuccess     whatever its status
///     LossIsAnEmptyReply       no reply counts as an empty one
///     LateReplyWaitsOn         a timeout lasts three times as long
///     ErrorIsALoss             an error status counts as no reply
///     LossIsRepeated           a request without a reply is sent to the same server again
class PlantedClient {
public:
    explicit PlantedClient(const QString& defect);
    ~PlantedClient();
    Q_DISABLE_COPY_MOVE(PlantedClient)

private:
    class Client;

    std::unique_ptr<Client> client;
};

}
