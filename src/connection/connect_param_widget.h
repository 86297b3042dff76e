// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/plugin.h"

#include <QPointer>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

/// The engine's page in the connect dialog: a local file, or a MotherDuck
/// database with its access token. The token lives in the field only; it has no
/// settings key. Main thread.
///
/// The dialog may hold a field named "name", which gets a suggested connection
/// name until the user has edited it, and a button named "ok", which is enabled
/// while the input is valid. It may be an HF::I_LConnectDialog, whose IsValid
/// must not ask this page in turn.
class orbDuckDB_LocalConnectParamWidget final : public HF::I_LConnectPane
{
    Q_OBJECT

public:
    orbDuckDB_LocalConnectParamWidget(QWidget* dialog, QWidget* parent);

    bool IsValid() const override;
    HF::LConnectionParameters GetParameters() const override;
    /// Leaves the method as it is.
    void SetParameters(const HF::LConnectionParameters& parameters) override;
    void Reset() override {}
    QList<HF::LProperty> GetProperties() const override;
    void SetEnabled(bool enabled) override;
    void SetFocus() override;

private:
    enum Method { LocalFile = 0, MotherDuck = 1 };

    Method get_Method() const;
    void BuildControls();
    /// Lays the rows of the chosen method out anew.
    void RebuildForm();
    void SuggestName();
    void PathChanged();
    void CheckValidity();
    void SelectPath();
    /// What is missing before the input can be accepted; empty when nothing is.
    QString Hint() const;

    QPointer<QWidget> m_dialog;
    QPointer<QLineEdit> m_connectionName;
    QPointer<QPushButton> m_accept;
    QPointer<QLineEdit> m_database;
    QPointer<QLineEdit> m_userAgent;
    QPointer<QLineEdit> m_accessToken;
    QPointer<QComboBox> m_method;
    QPointer<QLineEdit> m_path;
    QPointer<QPushButton> m_select;
    QPointer<QLabel> m_hint;
    QPointer<QWidget> m_form;
};
