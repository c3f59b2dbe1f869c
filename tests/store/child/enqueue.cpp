#include "host/framework/db_queue_broker.h"
#include "tests/store/child/jobs.h"
#include "tests/store/numbered_records.h"
#include "till/store/store.h"

void enqueueNumbered(const QString& folder, int first, int count)
{
    till::store::open(folder);
    DBQueueBroker broker;
    for (int number = first; count == 0 || number < first + count; ++number) {
        broker.enqueue(QStringLiteral("vantiro"), numberedMessage(number), QString());
        tell(number);
    }
    till::store::close();
}
