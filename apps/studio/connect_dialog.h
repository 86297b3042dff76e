// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/plugin.h"

#include <QDialog>

class QCheckBox;
class QFormLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

/// Connects to a database: the driver's pane, a name, read-only access, scripts to
/// run before and after; which scripts is asked anew each time. Stays open when the
/// engine refuses, with the engine's words.
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
    QLineEdit* AddScriptField(QFormLayout* form, const QString& label, const char* name);

    rc::Ref<HF::I_LConnectionFactory> m_factory;
    rc::Ptr<HF::I_LDatabase> m_database;
    QLineEdit* m_name;
    QCheckBox* m_readOnly;
    QGroupBox* m_scripts;
    QLineEdit* m_preScript;
    QLineEdit* m_postScript;
    QLabel* m_error;
    QPushButton* m_ok;
    QPointer<HF::I_LConnectPane> m_pane;
    bool m_connecting = false;
};
