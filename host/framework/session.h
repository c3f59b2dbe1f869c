#pragma once

#include "host/document/abstract_document.h"
#include "host/export.h"
#include "host/facilities/singleton.h"

#include <QSharedPointer>

/// The host's pending modifiers: what the cashier has keyed in for the next position. [cheque-thread]
class VANTIRO_HOST_API ModifiersContainer {
public:
    ModifiersContainer();
    virtual ~ModifiersContainer();

    virtual void clearAll();

private:
    Q_DISABLE_COPY(ModifiersContainer)
};

/// The cashier's session. [cheque-thread]
class VANTIRO_HOST_API Session {
public:
    Session();
    virtual ~Session();

    /// The open document, null if none is open.
    [[nodiscard]] virtual QSharedPointer<AbstractDocument> getDocument();
    /// Never null; owned by the session.
    [[nodiscard]] virtual ModifiersContainer* getModifiers();

private:
    Q_DISABLE_COPY(Session)
};

extern template class VANTIRO_HOST_API Singleton<Session>;
