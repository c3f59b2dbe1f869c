#pragma once

#include "host/export.h"

#include <QtGlobal>

#include <functional>

/// Runs a function when the scope is left, by return or by exception. The function must not throw. [any-thread]
class VANTIRO_HOST_API Finally {
public:
    explicit Finally(std::function<void()> function);
    ~Finally();

private:
    Q_DISABLE_COPY_MOVE(Finally)

    std::function<void()> function;
};
