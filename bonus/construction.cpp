#include "bonus/vantiro_bonus_interface.h"

VantiroBonusInterface::VantiroBonusInterface()
    : VantiroInterface(QStringLiteral("vantiro"))
{
}

VantiroBonusInterface::~VantiroBonusInterface() = default;
