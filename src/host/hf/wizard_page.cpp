// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/wizard_page.h"

namespace HF {

LWizardPage::LWizardPage(QWidget* parent) : QWizardPage(parent) {}
LWizardPage::~LWizardPage() = default;

} // namespace HF
