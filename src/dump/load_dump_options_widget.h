// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/wizard_page.h"

#include <QPointer>

class QCheckBox;

/// Options page for loading an SQL dump. Each control is named by its settings
/// key below "/Plugins/DuckDB/LoadDump/" and keeps its value there. Main thread.
class orbDuckDB_LoadDumpOptionsWidget_SQL final : public HF::LWizardPage
{
    Q_OBJECT

public:
    explicit orbDuckDB_LoadDumpOptionsWidget_SQL(QWidget* parent = nullptr);

    bool get_MultipleStatements() const;
    bool get_StopOnError() const;

private:
    QPointer<QCheckBox> m_multipleStatements;
    QPointer<QCheckBox> m_stopOnError;
};
