#pragma once

#include <QtGlobal>

// Every class of the contract lives in the host: the host compiles its members and its meta-object once, and plug-ins
// leave them undefined. Both sides are built with hidden visibility, so the name, the vtable and the type information
// of each contract class are made visible here; without that, `dynamic_cast`, `catch` and static members would
// silently come twice, once on each side.
#define VANTIRO_HOST_API Q_DECL_EXPORT
