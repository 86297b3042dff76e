// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTreeWidget>

namespace HF {
class LDatabaseEngine;
}

/// The engine's statement templates, by category; a double click chooses one.
class SnippetPanel : public QTreeWidget
{
    Q_OBJECT

public:
    SnippetPanel(const HF::LDatabaseEngine& engine, QWidget* parent = nullptr);

signals:
    void Chosen(const QString& text);
};
