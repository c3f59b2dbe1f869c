#include "host/facilities/current_time.h"

template class MockFactory<CurrentTime>;

CurrentTime::CurrentTime() = default;
CurrentTime::~CurrentTime() = default;

QDateTime CurrentTime::getCurrentTime() const
{
    return QDateTime::currentDateTime();
}
