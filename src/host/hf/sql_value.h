// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/export.h"
#include "hf/rc_list.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

namespace HF {

/// One value of a cell or a bind, with its null flag. Values are immutable once
/// shared; edits make new ones.
class HF_EXPORT I_LSqlValue : public rc::RefCounted
{
public:
    static void* operator new(std::size_t size) { return rc::impl::pool_allocate(size); }
    static void operator delete(void* block) noexcept { rc::impl::pool_free(block); }

    virtual bool get_IsNull() const = 0;
    /// The value as text; empty when null.
    virtual QString get_String() const = 0;
    /// Bytes of a byte array, UTF-8 of everything else.
    virtual QByteArray get_Data() const = 0;
    /// Length of the text in UTF-16 units, of a byte array in bytes.
    virtual long get_Length() const = 0;
    /// The nearest Qt type; invalid when null. Numbers keep all digits.
    virtual QVariant ToQVariant() const = 0;
    /// A value of the same class from a text; null flag off. A text that does not
    /// fit gives an LValueString with it.
    virtual rc::Ref<I_LSqlValue> FromString(const QString& text) const = 0;
    /// An empty value of the same class.
    virtual rc::Ref<I_LSqlValue> CreateEmpty(bool isNull) const = 0;
    /// Same class, same null flag, same value.
    virtual bool IsSame(const I_LSqlValue& other) const = 0;

protected:
    I_LSqlValue() : RefCounted(FromPool{}) {}
};

} // namespace HF
