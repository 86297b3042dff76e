// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/builders.h"
#include "weft/convertible.h"
#include "weft/errors.h"
#include "weft/lazy.h"
#include "weft/weak_ref.h"

#include <QAbstractItemModel>
#include <QHash>
#include <QList>
#include <QMap>
#include <QMetaMethod>
#include <QMetaType>
#include <QPointer>
#include <QStringList>
#include <QVariant>
#include <QWidget>
