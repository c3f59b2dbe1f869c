#pragma once

#include "host/facilities/current_time.h"

#include <QDateTime>

#include <gtest/gtest.h>

/// A clock that stands. While one of these lives, it is what `MockFactory<CurrentTime>` gives out. [cheque-thread]
class FixedTime : public CurrentTime {
public:
    explicit FixedTime(const QDateTime& time)
        : moment(time)
    {
        EXPECT_EQ(MockFactory<CurrentTime>::mocked, nullptr) << "two substitutes at once";
        MockFactory<CurrentTime>::mocked = this;
    }

    ~FixedTime() override
    {
        MockFactory<CurrentTime>::mocked = nullptr;
    }

    [[nodiscard]] QDateTime getCurrentTime() const override
    {
        return moment;
    }

private:
    QDateTime moment;
};
