#include "host/facilities/exceptions.h"

BasicException::BasicException(const tr::Tr& reason)
    : std::runtime_error(reason.ru().toStdString())
    , text(reason)
{
}

BasicException::BasicException(const BasicException& other) = default;
BasicException& BasicException::operator=(const BasicException& other) = default;
BasicException::~BasicException() = default;

tr::Tr BasicException::tr() const
{
    return text;
}

DocumentException::DocumentException(const tr::Tr& reason, bool mayBeRepeated)
    : BasicException(reason)
    , recoverable(mayBeRepeated)
{
}

DocumentException::~DocumentException() = default;

bool DocumentException::isRecoverable() const
{
    return recoverable;
}

CouponException::~CouponException() = default;

CouponAddException::~CouponAddException() = default;
