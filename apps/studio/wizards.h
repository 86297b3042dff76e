// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"

#include <functional>

class QWidget;

/// Opens the wizard that dumps what an item of the tree stands for: a database,
/// a schema or list of schemas, a table. Main thread.
void ShowDumpWizard(QWidget& parent, const rc::Ref<HF::LTreeItem>& item);

/// Opens the wizard that loads a dump into the item's database, otherwise into
/// `current`. `show` opens a failed statement. Main thread.
void ShowLoadWizard(QWidget& parent, const rc::Ref<HF::LTreeItem>& item, const rc::Ptr<HF::I_LDatabase>& current,
                    std::function<void(const rc::Ref<HF::I_LDatabase>& database, const QString& text)> show);
