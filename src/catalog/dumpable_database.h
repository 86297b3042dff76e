// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <QWidget>

/// A database that has options for making dumps.
class orb_I_DumpableDatabase
{
public:
    virtual ~orb_I_DumpableDatabase() = default;
    /// The options page for a dump format (ELDumpKind), owned by its later parent;
    /// null for formats without one. Main thread.
    virtual QPointer<QWidget> CreateDumpOptionsWidget(int kind) = 0;
};
