#include "client/exceptions.h"

VantiroException::VantiroException(const tr::Tr& reason)
    : BasicException(reason)
{
}
