// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/sql_value.h"

namespace HF {

/// Base of all values. A grid holds one of these for each cell, so they are
/// small: members start in the padding that the counts leave, and memory comes
/// from the pool. Made by rc::make only. Any thread may read.
class HF_EXPORT LValue : public I_LSqlValue
{
public:
    bool get_IsNull() const final { return m_null; }
    QByteArray get_Data() const override;
    long get_Length() const override;

protected:
    explicit LValue(bool isNull) : m_null(isNull) {}
    /// Same class and same null flag; a null is the same whatever it holds.
    bool IsSameKind(const I_LSqlValue& other) const;

    bool m_null;
};

/// Stands where there is no value at all, such as a separator among field types.
class HF_EXPORT LValueInvalid final : public LValue
{
public:
    LValueInvalid() : LValue(true) {}
    /// The one that all share.
    static rc::Ref<LValueInvalid> Instance();

    QString get_String() const override;
    QVariant ToQVariant() const override;
    rc::Ref<I_LSqlValue> FromString(const QString& text) const override;
    rc::Ref<I_LSqlValue> CreateEmpty(bool isNull) const override;
    bool IsSame(const I_LSqlValue& other) const override;
};

/// "true" and "false".
class HF_EXPORT LValueBoolean final : public LValue
{
public:
    explicit LValueBoolean(bool value = false, bool isNull = false) : LValue(isNull), m_value(value) {}

    bool get_Boolean() const { return m_value; }
    QString get_String() const override;
    QVariant ToQVariant() const override;
    rc::Ref<I_LSqlValue> FromString(const QString& text) const override;
    rc::Ref<I_LSqlValue> CreateEmpty(bool isNull) const override;
    bool IsSame(const I_LSqlValue& other) const override;

private:
    bool m_value;
};

} // namespace HF
