// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/cursor.h"

#include <memory>

namespace HF {

/// The column of a grid that numbers the rows from 1. It shows the row at the
/// cursor's position and takes no values.
class HF_EXPORT LRecordNumberField final : public LField
{
public:
    LRecordNumberField(const rc::Ptr<I_LSchemaObject>& owner, const std::shared_ptr<unsigned long>& position);

    rc::Ptr<I_LSqlValue> get_DefaultValue() const override { return nullptr; }
    LLazy<ELFieldType, false> get_Type() const override { return FIELD_BIGINT; }
    LLazy<bool, false> IsPK() const override { return false; }
    LLazy<bool, false> get_IsEncrypted() const override { return false; }
    bool get_IsDirty() const override { return false; }
    /// A row that is not written yet has no number.
    bool get_IsNull() const override;
    void SetNull() override {}
    bool get_IsReadOnly() const override { return true; }
    QString get_String(long maxLength) const override;
    void SetString(const QString&) override {}
    int Compare(const I_LField& other) const override;
    rc::Ptr<I_LSqlValue> get_Value(long maxLength) const override;
    void SetValue(const rc::Ptr<I_LSqlValue>&) override {}
    long get_Length() const override { return get_Value(-1)->get_Length(); }
    QByteArray get_Data(long maxLength) const override;
    void SetData(const QByteArray&) override {}
    void Revert() override {}
    rc::Ptr<I_LSchemaObject> get_Owner() const override { return m_owner.lock(); }

private:
    rc::Weak<I_LSchemaObject> m_owner;
    std::shared_ptr<unsigned long> m_position;
};

} // namespace HF
