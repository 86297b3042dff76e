// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database_object.h"

#include <QWidget>

/// One object on a tab: its SQL text where it has one, and its properties.
class ObjectTab : public QWidget
{
    Q_OBJECT

public:
    ObjectTab(const rc::Ref<HF::LDatabaseObject_Impl>& object, QWidget* parent = nullptr);
};
