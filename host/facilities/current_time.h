#pragma once

#include "host/export.h"
#include "host/facilities/mock_factory.h"

#include <QDateTime>

/// The clock, made through `MockFactory<CurrentTime>` so that time can be fixed. [any-thread]
class VANTIRO_HOST_API CurrentTime {
public:
    CurrentTime();
    virtual ~CurrentTime();

    /// The current date and time in the time zone of the till.
    [[nodiscard]] virtual QDateTime getCurrentTime() const;

private:
    Q_DISABLE_COPY(CurrentTime)
};

extern template class VANTIRO_HOST_API MockFactory<CurrentTime>;
