// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/export.h"

#include <QString>
#include <QVariant>

namespace weft {

/// Keys and values that outlive the process; what a settings entry of a widget
/// is bound to.
class ORB_SHARED settings_store
{
public:
    virtual ~settings_store() = default;
    /// `otherwise` when there is no such key.
    virtual QVariant value(const QString& key, const QVariant& otherwise = {}) const = 0;
    /// An invalid value removes the key.
    virtual void setValue(const QString& key, const QVariant& value) = 0;
};

/// The application's store.
ORB_SHARED settings_store& application_store();
/// Says who makes the application's store. Asked at the first use, so that
/// loading the library touches no file.
ORB_SHARED void set_application_store(settings_store& (*provider)());

} // namespace weft
