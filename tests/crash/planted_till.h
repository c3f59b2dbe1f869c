#pragma once

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

class DBQueueBroker;
class RestClient;

namespace crash {

/// What the tests of the drill plant, to see that it would be noticed.
enum class Defect : std::uint8_t {
    none,
    closedBeforeQueued, // a cheque stands as closed before its message is in the queue
    removedBeforeAnswer, // a message leaves the queue before it is posted
    renamedByRestart, // a till that has started again tells its cheques under other identities
    spendsTwice, // a subtraction is posted twice
    twoBooks, // the two ends of the service do not know what the other one has counted
};

/// None when there is no such defect. The names are those above.
[[nodiscard]] std::optional<Defect> defectOf(const QString& name);
[[nodiscard]] QString nameOf(Defect defect);

/// As long as one of these lives, the till of this process has the defect; one of the service, and none, plant nothing.
/// [cheque-thread]
class PlantedTill {
public:
    PlantedTill(Defect defect, bool isRestart);
    ~PlantedTill();
    Q_DISABLE_COPY_MOVE(PlantedTill)

private:
    std::unique_ptr<RestClient> client;
    std::unique_ptr<DBQueueBroker> broker;
};

} // namespace crash
