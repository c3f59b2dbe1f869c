#pragma once

#include "host/export.h"
#include "host/framework/action_handler.h"
#include "host/framework/action_trigger.h"

#include <QObject>
#include <QSet>
#include <QString>

#include <memory>

/// What every plug-in is to the host: reached by `qobject_cast<BasicPlugin*>` from the instance of the library. The
/// order of the operations is binary contract. [cheque-thread]
class VANTIRO_HOST_API BasicPlugin {
public:
    BasicPlugin();
    virtual ~BasicPlugin();

    /// Called by the host once, after the library is loaded and before anything else. False means that the plug-in
    /// cannot work; the host then calls `deinit` and nothing more.
    virtual bool init() = 0;
    /// Called by the host once, at shutdown; afterwards nothing but the destructor.
    virtual void deinit() = 0;

    /// Whether a feature that the host has set is the given one.
    [[nodiscard]] virtual bool isFeatureMatched(const QString& feature) const;
    virtual void setFeature(const QString& feature);

    /// Called by the plug-in, in `init`.
    virtual void addHandler(const ActionHandler& handler);
    /// Called by the plug-in, in `init`: from now on the handler is called when the action occurs. Triggers end with
    /// the plug-in.
    virtual void addTrigger(const ActionTrigger& trigger);

    /// Switches the triggers of these actions (`control::EActionType` as numbers) off until `enableTriggers`.
    virtual void disableTriggers(const QSet<int>& actions);
    virtual void enableTriggers();

private:
    Q_DISABLE_COPY(BasicPlugin)

    struct Private;
    std::unique_ptr<Private> d;
};

Q_DECLARE_INTERFACE(BasicPlugin, "norvik.AbstractPlugin")
