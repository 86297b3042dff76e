// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/connection.h"

#include <QPointer>
#include <QWidget>

class QLineEdit;

/// The engine's page in the preferences. Each field is bound to its settings
/// key and stored while typing; what it says takes effect at the next open. A
/// field without an acceptable value has no key. Main thread.
class orbDuckDB_LocalConnectionPrefsWidget final : public QWidget
{
    Q_OBJECT

public:
    orbDuckDB_LocalConnectionPrefsWidget(const rc::Ref<HF::I_LConnection>& connection, QWidget* parent);

private:
    rc::Ref<HF::I_LConnection> m_connection; ///< lives as long as the page that is about it
    QPointer<QLineEdit> m_defaultExtension;
    QPointer<QLineEdit> m_threads;
    QPointer<QLineEdit> m_memoryLimit;
    QPointer<QLineEdit> m_pivotLimit;
};
