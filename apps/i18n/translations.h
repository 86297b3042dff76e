// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QCoreApplication;

/// Installs the texts of the user's language, the program's and Qt's own; once,
/// before any text is asked for. ORBIS_LANGUAGE names another language, such as
/// "de"; "C" and English give the language of the sources, whose file only holds
/// the forms that follow a number.
void InstallTranslations(QCoreApplication& application);

/// Back to the language of the sources, for output that a program reads.
void RemoveTranslations(QCoreApplication& application);
