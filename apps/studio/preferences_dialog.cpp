// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/preferences_dialog.h"

#include "studio/appearance.h"
#include "uik/settings.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QTabWidget>
#include <QVBoxLayout>

PreferencesDialog::PreferencesDialog(HF::I_LPlugin& plugin, QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("Preferences"));
    auto* tabs = new QTabWidget(this);

    auto* general = new QWidget(tabs);
    auto* form = new QFormLayout(general);
    auto* appearance = new QComboBox(general);
    appearance->addItem(tr("Like the desktop"), int(Appearance::Desktop));
    appearance->addItem(tr("Light"), int(Appearance::Light));
    appearance->addItem(tr("Dark"), int(Appearance::Dark));
    appearance->setCurrentIndex(appearance->findData(int(StoredAppearance())));
    connect(appearance, &QComboBox::currentIndexChanged, this,
            [appearance] { StoreAppearance(Appearance(appearance->currentData().toInt())); });
    form->addRow(tr("Appearance:"), appearance);
    tabs->addTab(general, tr("General"));

    if (const QPointer<QWidget> page = plugin.CreatePreferencesWidget(tabs))
        tabs->addTab(page, plugin.get_Name());

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::accept);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs);
    layout->addWidget(buttons);
}
