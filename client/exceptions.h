#pragma once

#include "host/facilities/exceptions.h"

// The class of the exception is the contract: hooks decide by it, and nothing after the exchange reads texts or status
// numbers. `VantiroNoConnectionException` alone puts a document into offline mode, so a fault must never be reported as
// a lost connection, nor the reverse.

/// The reply could not be used: it is not XML, or an expected element is missing or malformed.
class VantiroException : public BasicException {
public:
    explicit VantiroException(const tr::Tr& reason);
};

/// No usable reply from any server. The request may have been executed all the same.
class VantiroNoConnectionException : public VantiroException {
public:
    using VantiroException::VantiroException;
};

/// The server answered with a SOAP fault; the text is the server's own.
class VantiroFaultException : public VantiroException {
public:
    using VantiroException::VantiroException;
};
