// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/schema_object.h"

#include <QStringList>
#include <QWidget>

namespace HF {

class LScintilla;

/// Shows one SQL property of an object; writes it back where it is not
/// read-only. Main thread; owned through its parent.
class HF_EXPORT LDatabaseObjectEditor : public QWidget
{
public:
    /// `properties` and `actions` name what stands beside the text; both may be empty.
    LDatabaseObjectEditor(const rc::Ref<I_LSchemaObject>& object, int property, const QStringList& properties,
                          const QStringList& actions, QWidget* parent);
    /// Applies the edited text; true when the object took it.
    bool Apply();
    bool IsModified() const;

private:
    rc::Ref<I_LSchemaObject> m_object;
    int m_property;
    LScintilla* m_text;
};

/// An editor of one SQL property.
HF_EXPORT QPointer<QWidget> CreatePropertySQLEditor(const rc::Ref<I_LSchemaObject>& object, int property,
                                                    QPointer<QWidget> parent);

} // namespace HF
