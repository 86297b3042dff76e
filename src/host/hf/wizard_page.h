// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/export.h"

#include <QWizardPage>

namespace HF {

/// A page of the host's wizards, such as the options of a dump. Lives on the
/// main thread, owned by its wizard or by whatever widget it is put in.
class HF_EXPORT LWizardPage : public QWizardPage
{
public:
    explicit LWizardPage(QWidget* parent = nullptr);
    ~LWizardPage() override;
};

} // namespace HF
