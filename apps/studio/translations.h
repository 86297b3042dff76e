// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QCoreApplication;

/// Installs the texts of the user's language, the program's and Qt's own.
/// ORBIS_LANGUAGE names another, such as "de"; "C" none.
void InstallTranslations(QCoreApplication& application);
