// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/structure_menu.h"

#include "hf/background.h"
#include "hf/database.h"
#include "hf/services.h"
#include "studio/design_preview.h"
#include "studio/design_session.h"
#include "studio/design_tab.h"
#include "studio/main_window.h"

#include <QCoreApplication>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>

namespace {

QString NewText(int type)
{
    switch (type) {
    case HF::TYPE_SCHEMA: return QObject::tr("New Schema...");
    case HF::TYPE_TABLE: return QObject::tr("New Table...");
    case HF::TYPE_VIEW: return QObject::tr("New View...");
    case HF::TYPE_FUNCTION: return QObject::tr("New Macro...");
    case HF::TYPE_SEQUENCE: return QObject::tr("New Sequence...");
    case HF::TYPE_FIELD: return QObject::tr("New Column...");
    case HF::TYPE_METHOD: return QObject::tr("New Generated Column...");
    case HF::TYPE_INDEX: return QObject::tr("New Index...");
    case HF::TYPE_UNIQUE: return QObject::tr("New Unique...");
    case HF::TYPE_CHECK: return QObject::tr("New Check...");
    case HF::TYPE_LINK: return QObject::tr("New Foreign Key...");
    default: return QString();
    }
}

/// What can be made below an object of a type.
QList<int> NewBelow(int type)
{
    switch (type) {
    case HF::TYPE_DATABASE: return {HF::TYPE_SCHEMA};
    case HF::TYPE_SCHEMA: return {HF::TYPE_TABLE, HF::TYPE_VIEW, HF::TYPE_FUNCTION, HF::TYPE_SEQUENCE};
    case HF::TYPE_TABLE:
        return {HF::TYPE_FIELD, HF::TYPE_METHOD, HF::TYPE_INDEX, HF::TYPE_UNIQUE, HF::TYPE_CHECK, HF::TYPE_LINK};
    default: return {};
    }
}

bool IsOfView(const HF::LTreeItem& object)
{
    const rc::Ptr<HF::LTreeItem> parent = object.get_ParentObject();
    return parent && parent->get_ObjectType() == HF::TYPE_VIEW;
}

/// Objects of the selection that can be dropped together; empty when one of them cannot.
RcList<HF::I_LSchemaObject> Droppable(const RcList<HF::LTreeItem>& selection)
{
    RcList<HF::I_LSchemaObject> objects;
    for (const rc::Ref<HF::LTreeItem>& item : selection) {
        const auto object = rc::cast<HF::I_LSchemaObject>(item);
        if (!object || object->get_ObjectType() == HF::TYPE_DATABASE || IsOfView(*item)
            || DesignTarget::Of(rc::Ptr<HF::LTreeItem>(item)).type == HF::TYPE_NONE
            || (!objects.isEmpty() && objects.first()->get_Database().get() != object->get_Database().get()))
            return {};
        objects.append(rc::Ref<HF::I_LSchemaObject>(object));
    }
    return objects;
}

bool MayRename(const HF::I_LSchemaObject& object)
{
    switch (object.get_ObjectType()) {
    case HF::TYPE_TABLE:
    case HF::TYPE_VIEW:
    case HF::TYPE_FUNCTION:
    case HF::TYPE_INDEX:
    case HF::TYPE_FIELD:
    case HF::TYPE_METHOD: return true;
    default: return false;
    }
}

} // namespace

struct StructureMenu::Prepared
{
    rc::Ptr<HF::I_LDatabase> database;
    rc::Ptr<HF::LDesign> design;
    HF::LDesignPlan plan;
};

StructureMenu::StructureMenu(MainWindow& window) : QObject(&window), m_window(window) {}

void StructureMenu::AddActions(QMenu& menu, const rc::Ref<HF::LTreeItem>& item,
                               const RcList<HF::LTreeItem>& selection)
{
    if (selection.size() > 1) {
        if (const RcList<HF::I_LSchemaObject> objects = Droppable(selection); !objects.isEmpty())
            menu.addAction(HF::LoadCachedIcon(QStringLiteral(":/weft/icons/trash.svg")),
                           tr("Drop %n objects...", nullptr, int(objects.size())), this, [this, objects] { Drop(objects); });
        return;
    }
    const auto object = rc::cast<HF::I_LSchemaObject>(item);
    rc::Ptr<HF::I_LSchemaObject> parent = object;
    QList<int> types;
    if (const auto list = rc::cast<HF::LSchemaItemList>(item)) {
        parent = list->get_Owner();
        if (parent && NewBelow(parent->get_ObjectType()).contains(list->get_ItemType()))
            types.append(list->get_ItemType());
    } else if (object) {
        types = NewBelow(object->get_ObjectType());
    }
    const bool mayChange = parent && (parent->get_ObjectType() == HF::TYPE_DATABASE
                                      || DesignTarget::Of(rc::Ptr<HF::LTreeItem>(parent)).type != HF::TYPE_NONE);
    if (!mayChange || IsOfView(*item))
        return;
    if (!menu.isEmpty())
        menu.addSeparator();
    QMenu* into = &menu;
    if (types.size() > 1)
        into = menu.addMenu(HF::LoadCachedIcon(QStringLiteral(":/icons/add.svg")), tr("New"));
    // Kinds whose own menu has no way into the editor.
    const QList<rc::Ptr<HF::LAction>> own = item->get_ActionsForMenu();
    const bool hasDesign = std::any_of(own.begin(), own.end(), [](const rc::Ptr<HF::LAction>& action) {
        return action && action->get_Id() == QLatin1String(HF::DO_DESIGN);
    });
    if (object && !hasDesign)
        menu.addAction(HF::LoadCachedIcon(QStringLiteral(":/icons/design.svg")),
                       QCoreApplication::translate("QObject", "Design"), this,
                       [this, item] { m_window.OpenEditor(QString::fromLatin1(HF::DO_DESIGN), item); });
    for (const int type : types)
        into->addAction(NewText(type), this, [this, parent, type] {
            Create(rc::Ref<HF::I_LSchemaObject>(parent), HF::ELObjectType(type));
        });
    if (!object || object->get_ObjectType() == HF::TYPE_DATABASE)
        return;
    const rc::Ref<HF::I_LSchemaObject> known(object);
    if (MayRename(*known))
        menu.addAction(tr("Rename..."), this, [this, known] {
            const QString old = known->get_Name();
            const auto name = HF::InputTextWithTitle(tr("Rename"), tr("New name of %1:").arg(old), old, tr("Rename"));
            if (name && !name->trimmed().isEmpty() && *name != old)
                Rename(known, name->trimmed());
        });
    menu.addAction(HF::LoadCachedIcon(QStringLiteral(":/weft/icons/trash.svg")), tr("Drop..."), this,
                   [this, known] { Drop({known}); });
}

void StructureMenu::Create(const rc::Ref<HF::I_LSchemaObject>& parent, HF::ELObjectType type)
{
    const rc::Ptr<HF::I_LDatabase> database = parent->get_Database();
    if (!database)
        return;
    if (parent->get_ObjectType() == HF::TYPE_TABLE) {
        if (DesignTab* tab = m_window.OpenDesign(database, DesignTarget::Of(rc::Ptr<HF::LTreeItem>(parent))))
            tab->AddPartWhenRead(type);
        return;
    }
    // The object knows the way: a dialog of its own, or this window's editor.
    const RcList<HF::I_LSchemaObject> made = parent->CreateChildObjectDialog(type).Force();
    if (made.isEmpty())
        return;
    emit Changed(database, QString());
    m_window.Reveal(rc::Ref<HF::LTreeItem>(made.first()));
}

void StructureMenu::Drop(const RcList<HF::I_LSchemaObject>& objects)
{
    QStringList names;
    for (const rc::Ref<HF::I_LSchemaObject>& object : objects)
        names.append(QCoreApplication::translate("QObject", object->get_ObjectTypeName().toUtf8().constData()) + u' '
                     + (object->get_Name().isEmpty() ? object->get_Info().Force() : object->get_Name()));
    const qsizetype more = names.size() - 20;
    if (more > 0)
        names = names.first(20) + QStringList(tr("and %n more", nullptr, int(more)));
    Prepare(
        objects,
        [](HF::LDesign& design, const rc::Ref<HF::LModelObject>& model) {
            design.Drop(model);
            return QString();
        },
        names.size() == 1 ? tr("Drop %1?").arg(names.first())
                          : tr("Drop these objects?") + u'\n' + names.join(u'\n'));
}

void StructureMenu::Rename(const rc::Ref<HF::I_LSchemaObject>& object, const QString& name)
{
    Prepare(
        {object},
        [name](HF::LDesign& design, const rc::Ref<HF::LModelObject>& model) {
            return design.Change(model, PROP_NAME, name);
        },
        QString());
}

void StructureMenu::Prepare(const RcList<HF::I_LSchemaObject>& objects, Edit edit, const QString& question)
{
    const rc::Ptr<HF::I_LDatabase> database = objects.isEmpty() ? nullptr : objects.first()->get_Database();
    if (!database)
        return;
    m_window.statusBar()->showMessage(tr("Reading what depends on %1...").arg(objects.first()->get_Name()));
    HF::RunInBackground(
        [database, objects, edit] {
            Prepared prepared;
            prepared.database = database;
            const auto design = rc::make<HF::LDesign>(rc::Ref<HF::I_LDatabase>(database));
            prepared.design = design;
            QString refusal;
            for (const rc::Ref<HF::I_LSchemaObject>& object : objects) {
                const rc::Ptr<HF::LModelObject> model = design->ModelOf(rc::Ref<const HF::LTreeItem>(*object));
                refusal = model ? edit(*design, rc::Ref<HF::LModelObject>(model))
                                : tr("%1 is no longer there.").arg(object->get_Name());
                if (!refusal.isEmpty())
                    break;
            }
            if (refusal.isEmpty())
                prepared.plan = design->get_Plan();
            else
                prepared.plan.problems.append(refusal);
            return prepared;
        },
        this,
        [this, question](const Prepared& prepared) {
            m_window.statusBar()->clearMessage();
            if (!prepared.plan.problems.isEmpty())
                Failed(prepared.database, prepared.plan.problems.join(u'\n'));
            else if ((question.isEmpty() && prepared.plan.warnings.isEmpty()) || Confirm(question, prepared.plan))
                Run(prepared);
        });
}

bool StructureMenu::Confirm(const QString& question, const HF::LDesignPlan& plan)
{
    QMessageBox box(QMessageBox::Warning, tr("Change Structure"), question.isEmpty() ? tr("Go on?") : question,
                    QMessageBox::Cancel, &m_window);
    box.setInformativeText(plan.warnings.join(QLatin1String("\n\n")));
    box.setDetailedText(PlanText(plan));
    QPushButton* go = box.addButton(tr("Apply"), QMessageBox::AcceptRole);
    box.setDefaultButton(QMessageBox::Cancel);
    box.exec();
    return box.clickedButton() == go;
}

void StructureMenu::Run(const Prepared& prepared)
{
    m_window.statusBar()->showMessage(tr("Changing the structure..."));
    HF::RunInBackground([design = prepared.design] { return design->Apply(); }, this,
                        [this, database = prepared.database](const HF::LDesignReport& report) {
                            m_window.statusBar()->clearMessage();
                            if (report.success)
                                emit Changed(database, QString());
                            else
                                Failed(database, report.error);
                        });
}

void StructureMenu::Failed(const rc::Ptr<HF::I_LDatabase>& database, const QString& problem)
{
    emit Changed(database, problem);
    HF::Alert(problem);
}
