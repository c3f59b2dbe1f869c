#pragma once

#include <QObject>

/// The least that Qt loads as a plug-in.
class EmptyPlugin : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "Empty")
};
