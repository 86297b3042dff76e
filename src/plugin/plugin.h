// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/plugin.h"

/// The plug-in as the host holds it. Has no state: that lives in the connection
/// factory, which outlives it. Main thread.
class orbDuckDB_Plugin final : public HF::I_LPlugin
{
public:
    QString get_Name() const override;
    int get_Type() const override { return 16; }
    QString get_Version() const override { return QStringLiteral("14.6.1"); }
    void HostStarted() override {}
    /// Null without a connection in the active workspace; makes none.
    QPointer<QWidget> CreatePreferencesWidget(QPointer<QWidget> parent) override;
    RcList<HF::I_LConnectionFactory> GetConnectionFactories() override;
    void HostStopping() override {}
};
