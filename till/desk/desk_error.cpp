#include "till/desk/desk_error.h"

namespace till {

DeskError::DeskError(const QString& sentence)
    : std::runtime_error(sentence.toStdString())
{
}

DeskError::DeskError(const DeskError& other) = default;
DeskError& DeskError::operator=(const DeskError& other) = default;
DeskError::~DeskError() = default;

QString DeskError::text() const
{
    return QString::fromUtf8(what());
}

} // namespace till
