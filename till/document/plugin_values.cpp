#include "till/document/plugin_values.h"

namespace till {

namespace {

// The values are open to derived classes only, and only through an object of their own class; a pointer to the member
// is not tied to the class that it was taken in.
struct Values : PluginData {
    static constexpr QMap<QString, QMap<QString, QVariant>> PluginData::*member = &Values::pluginValues;
};

}

QMap<QString, QMap<QString, QVariant>>& pluginValuesOf(PluginData& data)
{
    return data.*Values::member;
}

}
