// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/connection_factory.h"

#include <QWidget>

#include <memory>

namespace HF {

/// What a plug-in's orbInstantiatePlugin returns. Owned by the host. Main thread.
class HF_EXPORT I_LPlugin
{
public:
    virtual ~I_LPlugin();
    virtual QString get_Name() const = 0;
    virtual int get_Type() const = 0;
    virtual QString get_Version() const = 0;
    virtual void HostStarted() = 0;
    /// The page for the preferences dialog, owned through its parent; may be null.
    virtual QPointer<QWidget> CreatePreferencesWidget(QPointer<QWidget> parent) = 0;
    virtual RcList<I_LConnectionFactory> GetConnectionFactories() = 0;
    virtual void HostStopping() = 0;
};

/// The engine's page in the connect dialog.
class HF_EXPORT I_LConnectPane : public QWidget
{
public:
    using QWidget::QWidget;
    virtual bool IsValid() const = 0;
    virtual LConnectionParameters GetParameters() const = 0;
    virtual void SetParameters(const LConnectionParameters& parameters) = 0;
    virtual void Reset() = 0;
    virtual QList<LProperty> GetProperties() const = 0;
    virtual void SetEnabled(bool enabled) = 0;
    virtual void SetFocus() = 0;
};

/// Face of the host's connect dialog towards its pane.
class HF_EXPORT I_LConnectDialog
{
public:
    virtual ~I_LConnectDialog() = default;
    /// What the dialog itself holds is acceptable.
    virtual bool IsValid() const = 0;
};

/// A loaded plug-in; the shared object stays loaded until the process ends.
struct HF_EXPORT LLoadedPlugin
{
    std::unique_ptr<I_LPlugin> plugin;
    QString error; ///< why there is none
};

/// Loads the shared object and calls its orbInstantiatePlugin. Never throws.
HF_EXPORT LLoadedPlugin LoadPlugin(const QString& path);

} // namespace HF
