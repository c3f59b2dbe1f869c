#pragma once

#include "host/export.h"

#include <QString>

#include <stdexcept>

namespace till {

/// What was asked of the till cannot be done now: a cheque that is not open, an amount that is too large. Nothing has
/// changed. The text is a sentence for the person at the till. A value.
class VANTIRO_HOST_API DeskError : public std::runtime_error {
public:
    explicit DeskError(const QString& sentence);
    DeskError(const DeskError& other);
    DeskError& operator=(const DeskError& other);
    ~DeskError() override;

    [[nodiscard]] QString text() const;
};

} // namespace till
