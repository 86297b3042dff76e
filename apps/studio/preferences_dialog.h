// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/plugin.h"

#include <QDialog>

/// The preferences: a page of the program and the page of each plug-in.
class PreferencesDialog : public QDialog
{
    Q_OBJECT

public:
    PreferencesDialog(HF::I_LPlugin& plugin, QWidget* parent = nullptr);
};
