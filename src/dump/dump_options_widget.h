// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/dump.h"
#include "hf/wizard_page.h"

#include <QPointer>

class QCheckBox;
class QSpinBox;

/// Options page for making a dump. Each control is named by its settings key
/// below "/Plugins/DuckDB/MakeDump/" and keeps its value there. Main thread.
class orbDuckDB_DumpOptionsWidget final : public HF::LWizardPage
{
    Q_OBJECT

public:
    explicit orbDuckDB_DumpOptionsWidget(QWidget* parent = nullptr);

    /// What the controls say. The limits stay 0 unless inserts have many rows.
    HF::LSQLDumpOptions get_Options() const;

private:
    QPointer<QCheckBox> m_clean;
    QPointer<QCheckBox> m_transaction;
    QPointer<QCheckBox> m_multiRowInsert;
    QPointer<QSpinBox> m_insertLimitRows;
    QPointer<QSpinBox> m_insertLimitData;
    QPointer<QCheckBox> m_replace;
};
