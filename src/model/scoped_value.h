// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/model_object.h"

/// Puts a value into an object for as long as a statement is being written,
/// without telling anybody, and takes it out again.
class orbDuckDB_ScopedValue
{
public:
    /// A negative property or the empty variant changes nothing.
    orbDuckDB_ScopedValue(const rc::Ref<const HF::I_LSchemaObject>& object, int property, const HF::LVariant& value);
    ~orbDuckDB_ScopedValue();
    orbDuckDB_ScopedValue(const orbDuckDB_ScopedValue&) = delete;
    orbDuckDB_ScopedValue& operator=(const orbDuckDB_ScopedValue&) = delete;

private:
    rc::Ref<HF::I_LSchemaObject> m_object;
    HF::LVariant m_before;
    int m_property;
    bool m_changed = false;
};
