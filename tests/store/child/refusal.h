#pragma once

#include "host/facilities/exceptions.h"

#include <QString>

/// The Russian text of the `BasicException` that the call ends with; "(none)" when it ends without.
template <class Call>
[[nodiscard]] QString refusalOf(const Call& call)
{
    try {
        call();
    } catch (const BasicException& exception) {
        return exception.tr().ru();
    }
    return QStringLiteral("(none)");
}
