// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/plugin.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

/// Connects to a database: the driver's pane, a name, read-only access. Stays
/// open when the engine refuses, with the engine's words.
class ConnectDialog : public QDialog, public HF::I_LConnectDialog
{
    Q_OBJECT

public:
    ConnectDialog(const rc::Ref<HF::I_LConnectionFactory>& factory, QWidget* parent = nullptr);

    bool IsValid() const override;
    rc::Ptr<HF::I_LDatabase> get_Database() const { return m_database; }
    HF::I_LConnectPane* get_Pane() const { return m_pane; }
    QString get_Error() const;

    void Connect();

private:
    rc::Ref<HF::I_LConnectionFactory> m_factory;
    rc::Ptr<HF::I_LDatabase> m_database;
    QLineEdit* m_name;
    QCheckBox* m_readOnly;
    QLabel* m_error;
    QPushButton* m_ok;
    QPointer<HF::I_LConnectPane> m_pane;
    bool m_connecting = false;
};
