#include "host/framework/base_activity_listener.h"

BaseActivityListener::BaseActivityListener(QObject* parent)
    : QObject(parent)
{
}

BaseActivityListener::~BaseActivityListener() = default;
