// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/wizards.h"

#include "hf/schema_item_list.h"
#include "hf/services.h"
#include "studio/dump_wizard.h"
#include "studio/load_wizard.h"

namespace {

rc::Ptr<HF::LDatabase> DatabaseOf(const rc::Ref<HF::LTreeItem>& item)
{
    rc::Ptr<HF::I_LDatabase> database = rc::cast<HF::I_LDatabase>(item);
    if (!database)
        if (const auto object = rc::cast<HF::LDatabaseObject_Impl>(item))
            database = object->get_Database();
    if (!database)
        if (const rc::Ptr<HF::LTreeItem> parent = item->get_ParentObject())
            return DatabaseOf(rc::Ref<HF::LTreeItem>(parent));
    return database ? rc::cast<HF::LDatabase>(rc::Ref<HF::I_LDatabase>(*database)) : nullptr;
}

} // namespace

void ShowDumpWizard(QWidget& parent, const rc::Ref<HF::LTreeItem>& item)
{
    const rc::Ptr<HF::LDatabase> database = DatabaseOf(item);
    if (!database)
        return;
    RcList<HF::LTreeItem> picked;
    if (rc::cast<HF::I_LTable>(item) || item->get_ObjectType() == HF::TYPE_SCHEMA)
        picked.append(item);
    auto* const wizard = new DumpWizard(rc::Ref<HF::LDatabase>(*database), picked, &parent);
    wizard->setAttribute(Qt::WA_DeleteOnClose);
    wizard->open();
}

void ShowLoadWizard(QWidget& parent, const rc::Ref<HF::LTreeItem>& item, const rc::Ptr<HF::I_LDatabase>& current,
                    std::function<void(const rc::Ref<HF::I_LDatabase>&, const QString&)> show)
{
    rc::Ptr<HF::LDatabase> database = DatabaseOf(item);
    if (!database && current)
        database = rc::cast<HF::LDatabase>(rc::Ref<HF::I_LDatabase>(*current));
    if (!database) {
        HF::Alert(QObject::tr("Open a database first, for the dump to be loaded into."));
        return;
    }
    auto* const wizard = new LoadWizard(rc::Ref<HF::LDatabase>(*database), &parent);
    wizard->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(wizard, &LoadWizard::StatementChosen, wizard,
                     [show, database](const QString& text) { show(rc::Ref<HF::I_LDatabase>(*database), text); });
    QObject::connect(wizard, &LoadWizard::Loaded, wizard, [database] {
        database->InvalidateIdents();
        database->UpdateChildObjectsLater(HF::TYPE_SCHEMA);
    });
    wizard->open();
}
