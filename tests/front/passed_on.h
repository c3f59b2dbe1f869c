#pragma once

#include "host/facilities/exceptions.h"

#include <string>
#include <typeinfo>

/// The text of the exception that the call lets pass to the host: one of no service, exactly of the class
/// `BasicException`. "nothing" when none comes.
template <class Call>
[[nodiscard]] std::string passedOn(const Call& call)
{
    try {
        static_cast<void>(call());
    } catch (const BasicException& exception) {
        const bool isPlain = typeid(exception) == typeid(BasicException);
        return (isPlain ? "" : "of another class: ") + exception.tr().ru().toStdString();
    }
    return "nothing";
}
