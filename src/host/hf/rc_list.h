// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rc/ref.h"

#include <QList>

// Both are one pointer without ties to their own address, so lists may move
// them by memory copy.
template <class T> class QTypeInfo<rc::Ref<T>> : public QTypeInfoMerger<rc::Ref<T>, T*> {};
template <class T> class QTypeInfo<rc::Ptr<T>> : public QTypeInfoMerger<rc::Ptr<T>, T*> {};

/// List of strong references, implicitly shared.
template <class T> using RcList = QList<rc::Ref<T>>;
