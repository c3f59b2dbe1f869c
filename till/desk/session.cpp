#include "host/framework/session.h"

#include "till/desk/open_document.h"
#include "till/framework/loyalty_registry.h"

template class Singleton<Session>;

namespace {

QSharedPointer<AbstractDocument>& openDocument()
{
    static QSharedPointer<AbstractDocument> document;
    return document;
}

} // namespace

namespace till {

void setOpenDocument(const QSharedPointer<AbstractDocument>& document)
{
    openDocument() = document;
    for (BasicLoyaltySystem* const system : Singleton<LoyaltyRegistry>::get()->systems()) {
        system->setDocument(document);
    }
}

QStringList& pendingModifiers()
{
    static QStringList modifiers;
    return modifiers;
}

} // namespace till

ModifiersContainer::ModifiersContainer() = default;
ModifiersContainer::~ModifiersContainer() = default;

void ModifiersContainer::clearAll()
{
    till::pendingModifiers().clear();
}

Session::Session() = default;
Session::~Session() = default;

QSharedPointer<AbstractDocument> Session::getDocument()
{
    return openDocument();
}

ModifiersContainer* Session::getModifiers()
{
    static ModifiersContainer container;
    return &container;
}
