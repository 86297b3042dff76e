// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rc/ref.h"

#include <QList>

// Both are one pointer without ties to their own address, so lists may move
// them by memory copy; copying and ending them goes by the counts.
template <class T>
class QTypeInfo<rc::Ref<T>>
{
public:
    static constexpr bool isPointer = false;
    static constexpr bool isIntegral = false;
    static constexpr bool isComplex = true;
    static constexpr bool isRelocatable = true;
};
template <class T> class QTypeInfo<rc::Ptr<T>> : public QTypeInfo<rc::Ref<T>> {};

/// List of strong references, implicitly shared.
template <class T> using RcList = QList<rc::Ref<T>>;
