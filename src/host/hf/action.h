// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/export.h"
#include "hf/rc_list.h"

#include <QString>
#include <QVariant>

#include <functional>

class QAction;

namespace HF {

class LTreeItem;

/// A menu or toolbar action on tree items. Main thread.
class HF_EXPORT LAction : public rc::RefCounted
{
public:
    using RunFunction = std::function<void(RcList<LTreeItem>, QVariant)>;
    using UpdateFunction = std::function<void(QAction&, RcList<LTreeItem>, QVariant)>;

    /// `update` sets enabled state and text before the action shows; may be empty.
    LAction(const char* id, QString text, RunFunction run, UpdateFunction update = {}, QString icon = {});

    QString get_Id() const { return m_id; }
    QString get_Text() const { return m_text; }
    QString get_Icon() const { return m_icon; }
    void Run(const RcList<LTreeItem>& items, const QVariant& argument = {}) const;
    void Update(QAction& action, const RcList<LTreeItem>& items, const QVariant& argument = {}) const;

private:
    QString m_id;
    QString m_text;
    QString m_icon;
    RunFunction m_run;
    UpdateFunction m_update;
};

/// Identifiers of actions.
HF_EXPORT extern const char* const DO_OPEN_DATABASE;
HF_EXPORT extern const char* const DO_OPEN_PREFERENCES;
HF_EXPORT extern const char* const DO_OPEN_QUERY_EDITOR;
HF_EXPORT extern const char* const DO_OPEN_QUERY_BUILDER;
HF_EXPORT extern const char* const DO_OPEN_DATA_EDITOR;
HF_EXPORT extern const char* const DO_CLOSE;
HF_EXPORT extern const char* const DO_SETUP_VIRTUAL_LINKS;
HF_EXPORT extern const char* const DO_BACKUP;
HF_EXPORT extern const char* const DO_SHOW_ON_DISK;
HF_EXPORT extern const char* const DO_DUMP_CREATE;
HF_EXPORT extern const char* const DO_DUMP_LOAD;
HF_EXPORT extern const char* const DO_DELETE_PHYSICALLY;
HF_EXPORT extern const char* const DO_DROP_SELF;
HF_EXPORT extern const char* const DO_DESIGN;
HF_EXPORT extern const char* const DO_DUPLICATE;
HF_EXPORT extern const char* const DO_DELETE_ALL_RECORDS;
HF_EXPORT extern const char* const DO_EXECUTE;
HF_EXPORT extern const char* const DO_REFRESH;
HF_EXPORT extern const char* const DO_EXPORT_CSV;
HF_EXPORT extern const char* const DO_IMPORT_CSV;
HF_EXPORT extern const char* const DO_OPEN_RECENT;

/// Words for the kinds of objects (lower case, untranslated).
HF_EXPORT extern const char* const OBJECT_CHECK;
HF_EXPORT extern const char* const OBJECT_CONNECTION;
HF_EXPORT extern const char* const OBJECT_DATABASE;
HF_EXPORT extern const char* const OBJECT_FIELD;
HF_EXPORT extern const char* const OBJECT_FUNCTION;
HF_EXPORT extern const char* const OBJECT_INDEX;
HF_EXPORT extern const char* const OBJECT_LINK;
HF_EXPORT extern const char* const OBJECT_METHOD;
HF_EXPORT extern const char* const OBJECT_SCHEMA;
HF_EXPORT extern const char* const OBJECT_SEQUENCE;
HF_EXPORT extern const char* const OBJECT_TABLE;
HF_EXPORT extern const char* const OBJECT_UNIQUE;
HF_EXPORT extern const char* const OBJECT_VIEW;

} // namespace HF
