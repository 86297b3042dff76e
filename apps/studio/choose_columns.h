// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include <optional>

class QWidget;

/// Lets the user choose columns and their order; nothing when cancelled.
std::optional<QStringList> ChooseColumns(QWidget* parent, const QString& title, const QStringList& all,
                                         const QStringList& chosen);
