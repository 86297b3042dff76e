// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <QWidget>

/// A connection that has options for loading dumps.
class orb_I_DumpableConnection
{
public:
    virtual ~orb_I_DumpableConnection() = default;
    /// The options page for a dump format (ELDumpKind), owned by its later parent;
    /// null for formats without one. Main thread.
    virtual QPointer<QWidget> CreateDumpOptionsWidget(int format) const = 0;
};
