// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/scoped_value.h"

orbDuckDB_ScopedValue::orbDuckDB_ScopedValue(const rc::Ref<const HF::I_LSchemaObject>& object, int property,
                                             const HF::LVariant& value)
    : m_object(const_cast<HF::I_LSchemaObject&>(*object)), m_property(property)
{
    if (property < 0 || !value.IsValid())
        return;
    {
        const std::lock_guard guard(m_object->PropertyMutex());
        if (const HF::LProperty* const raw = std::as_const(m_object->RawProperties()).get_PropertyRaw(property))
            m_before = raw->value;
    }
    if (const auto model = rc::cast<HF::I_LModelObject>(m_object))
        model->MarkPropertyChanging(property, true);
    m_object->AssignPropertyValueSilent(property, value);
    m_changed = true;
}

orbDuckDB_ScopedValue::~orbDuckDB_ScopedValue()
{
    if (!m_changed)
        return;
    m_object->AssignPropertyValueSilent(m_property, m_before);
    if (const auto model = rc::cast<HF::I_LModelObject>(m_object))
        model->MarkPropertyChanging(m_property, false);
}
