#pragma once

#include "host/export.h"
#include "host/facilities/tr.h"

#include <stdexcept>

/// The root of all exceptions that host and plug-ins throw at each other. The class of an exception is its meaning;
/// the text is for people. [any-thread]
class VANTIRO_HOST_API BasicException : public std::runtime_error {
public:
    /// Keeps a copy of the text. `what()` gives its Russian wording as UTF-8.
    explicit BasicException(const tr::Tr& text);
    BasicException(const BasicException& other);
    BasicException& operator=(const BasicException& other);
    ~BasicException() override;

    [[nodiscard]] tr::Tr tr() const;

private:
    tr::Tr text;
};

/// An operation on a document is refused.
class VANTIRO_HOST_API DocumentException : public BasicException {
public:
    /// `recoverable` tells the host whether the cashier may repeat the operation on the same document; plug-ins pass
    /// false.
    DocumentException(const tr::Tr& text, bool recoverable);
    ~DocumentException() override;

    [[nodiscard]] bool isRecoverable() const;

private:
    bool recoverable;
};

/// An operation on a coupon is refused.
class VANTIRO_HOST_API CouponException : public DocumentException {
public:
    using DocumentException::DocumentException;
    ~CouponException() override;
};

/// A coupon cannot be added to the cheque.
class VANTIRO_HOST_API CouponAddException : public CouponException {
public:
    using CouponException::CouponException;
    ~CouponAddException() override;
};
