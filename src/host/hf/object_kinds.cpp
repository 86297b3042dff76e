// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/object_kinds.h"

#include "hf/app_controller.h"
#include "hf/database.h"

#include <QAction>

namespace HF {

namespace {

const char* const IconClock = ":/icons/sign-clock.svg";

QString WithClock(const QString& icon, bool temporary)
{
    return temporary ? icon + u'\n' + QLatin1String(IconClock) : icon;
}

QString Columns(const LHasProperties& object)
{
    const QStringList columns = object.GetStringList(PROP_COLUMNS);
    return columns.isEmpty() ? QString() : u'(' + columns.join(QLatin1String(", ")) + u')';
}

/// Most kinds have one design action, made once.
rc::Ref<LAction> DesignAction()
{
    static const rc::Ref<LAction> action =
        MakeEditorAction(DO_DESIGN, QObject::tr("Design"), QStringLiteral(":/icons/design.svg"));
    return action;
}

} // namespace

rc::Ref<LAction> MakeEditorAction(const char* id, const QString& text, const QString& icon)
{
    const QString name = QString::fromLatin1(id);
    return rc::make<LAction>(
        id, text,
        [name](const RcList<LTreeItem>& items, const QVariant&) {
            I_LApplicationUi* ui = AppCtrlInstance().get_Ui();
            if (!ui)
                return;
            for (const rc::Ref<LTreeItem>& item : items)
                ui->OpenEditor(name, item);
        },
        [](QAction& action, const RcList<LTreeItem>& items, const QVariant&) {
            action.setVisible(AppCtrlInstance().get_Ui() != nullptr);
            action.setEnabled(!items.isEmpty());
        },
        icon);
}

QString LTable::get_ObjectTypeName() const { return QString::fromLatin1(OBJECT_TABLE); }

LLazy<QString, false> LTable::get_Icon() const
{
    return WithClock(QStringLiteral(":/weft/icons/table.svg"), GetBool(PROP_TEMPORARY));
}

LLazy<QString, false> LTable::get_Tip() const { return GetString(PROP_COMMENT); }

rc::Ptr<LAction> LTable::get_Action(const QString& id) const
{
    for (const rc::Ref<LAction>& action :
         {ActionOpenDataEditor(), ActionDesign(), ActionDuplicate(), ActionDeleteAllRecords(), ActionDumpCreate()})
        if (action->get_Id() == id)
            return action;
    return LDatabaseObject_Impl::get_Action(id);
}

LVariant LTable::ShowPropertyEditor(int id, QPoint at, bool modal)
{
    return LDatabaseObject_Impl::ShowPropertyEditor(id, at, modal);
}

rc::Ref<LAction> LTable::ActionOpenDataEditor()
{
    static const auto action =
        MakeEditorAction(DO_OPEN_DATA_EDITOR, QObject::tr("Open Data Editor"), QStringLiteral(":/icons/data.svg"));
    return action;
}

rc::Ref<LAction> LTable::ActionDesign() { return DesignAction(); }

rc::Ref<LAction> LTable::ActionDuplicate()
{
    static const auto action =
        MakeEditorAction(DO_DUPLICATE, QObject::tr("Duplicate..."), QStringLiteral(":/icons/duplicate.svg"));
    return action;
}

rc::Ref<LAction> LTable::ActionDeleteAllRecords()
{
    static const auto action = MakeEditorAction(DO_DELETE_ALL_RECORDS, QObject::tr("Delete All Records..."),
                                                QStringLiteral(":/weft/icons/trash.svg"));
    return action;
}

rc::Ref<LAction> LTable::ActionDumpCreate() { return LDatabase::ActionDumpCreate(); }

QString LView::get_ObjectTypeName() const { return QString::fromLatin1(OBJECT_VIEW); }

QList<rc::Ptr<LAction>> LView::get_ActionsForMenu() const { return {ActionExecute(), nullptr, ActionDesign()}; }

rc::Ref<LAction> LView::ActionExecute()
{
    static const auto action =
        MakeEditorAction(DO_EXECUTE, QObject::tr("Open View"), QStringLiteral(":/icons/execute.svg"));
    return action;
}

rc::Ref<LAction> LView::ActionDesign() { return DesignAction(); }

QString LIndex::get_ObjectTypeName() const { return QString::fromLatin1(OBJECT_INDEX); }
LLazy<QString, false> LIndex::get_Icon() const { return QStringLiteral(":/weft/icons/index.svg"); }
LLazy<QString, false> LIndex::get_Info() const { return Columns(*this); }
QList<rc::Ptr<LAction>> LIndex::get_ActionsForMenu() const { return {ActionDesign()}; }
rc::Ref<LAction> LIndex::ActionDesign() { return DesignAction(); }

QString LUnique::get_ObjectTypeName() const { return QString::fromLatin1(OBJECT_UNIQUE); }
LLazy<QString, false> LUnique::get_Icon() const { return QStringLiteral(":/icons/unique.svg"); }
LLazy<QString, false> LUnique::get_Info() const { return Columns(*this); }
QList<rc::Ptr<LAction>> LUnique::get_ActionsForMenu() const { return {ActionDesign()}; }
rc::Ref<LAction> LUnique::ActionDesign() { return DesignAction(); }

QString LCheck::get_ObjectTypeName() const { return QString::fromLatin1(OBJECT_CHECK); }
LLazy<QString, false> LCheck::get_Icon() const { return QStringLiteral(":/icons/check.svg"); }
LLazy<QString, false> LCheck::get_Info() const { return GetString(PROP_CHECK_EXPRESSION); }

QString LLink::get_ObjectTypeName() const { return QString::fromLatin1(OBJECT_LINK); }
LLazy<QString, false> LLink::get_Icon() const { return QStringLiteral(":/weft/icons/link2.svg"); }

LLazy<QString, false> LLink::get_Info() const
{
    return QStringLiteral("%1(%2) -> %3(%4)")
        .arg(GetString(PROP_LINK_TABLE), GetStringList(PROP_LINK_COLUMNS).join(QLatin1String(", ")),
             GetString(PROP_LINK_PARENT_TABLE), GetStringList(PROP_KEY_COLUMNS).join(QLatin1String(", ")));
}

rc::Ref<LAction> LLink::ActionDesign() { return DesignAction(); }

QString LFunction::get_ObjectTypeName() const { return QString::fromLatin1(OBJECT_FUNCTION); }

LLazy<QString, false> LFunction::get_Icon() const
{
    return WithClock(QStringLiteral(":/icons/procedure.svg"), GetBool(PROP_TEMPORARY));
}

QList<rc::Ptr<LAction>> LFunction::get_ActionsForMenu() const { return {ActionOpenQueryEditor()}; }

rc::Ref<LAction> LFunction::ActionOpenQueryEditor()
{
    static const auto action = MakeEditorAction(DO_OPEN_QUERY_EDITOR, QObject::tr("Open SQL Editor"),
                                                QStringLiteral(":/icons/sql-editor.svg"));
    return action;
}

QString LSequence::get_ObjectTypeName() const { return QString::fromLatin1(OBJECT_SEQUENCE); }

LLazy<QString, false> LSequence::get_Icon() const
{
    return WithClock(QStringLiteral(":/icons/sequence.svg"), GetBool(PROP_TEMPORARY));
}

QList<rc::Ptr<LAction>> LSequence::get_ActionsForMenu() const { return {ActionDesign()}; }
rc::Ref<LAction> LSequence::ActionDesign() { return DesignAction(); }

} // namespace HF
