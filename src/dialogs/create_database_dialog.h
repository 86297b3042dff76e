// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"

#include <QDialog>
#include <QPointer>

class QComboBox;
class QFormLayout;
class QLineEdit;
class QPushButton;

/// Asks for a place and a path and creates a database there. Stays open while
/// creating fails; why is in the error log. Main thread.
class orbDuckDB_DialogCreateDatabase final : public QDialog
{
    Q_OBJECT

public:
    explicit orbDuckDB_DialogCreateDatabase(const rc::Ref<HF::I_LConnection>& connection);

    /// Null unless the dialog was accepted.
    rc::Ptr<HF::I_LDatabase> get_CreatedDatabase() const { return m_createdDatabase; }

private:
    enum Location { Disk = 0, Memory = 1 };

    Location get_Location() const;
    void BuildControls();
    void BuildLayout();
    /// Folder that new databases are proposed in.
    static QString DefaultDatabasePath();
    QString DefaultPath() const;
    void Update();
    void Select();
    void ResetSettings();
    void Create();

    rc::Ref<HF::I_LConnection> m_connection;
    rc::Ptr<HF::I_LDatabase> m_createdDatabase;
    QPointer<QFormLayout> m_form;
    QPointer<QComboBox> m_location;
    QPointer<QLineEdit> m_path;
    QPointer<QPushButton> m_select;
    QPointer<QPushButton> m_reset;
};
