// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/enums.h"
#include "hf/export.h"
#include "rc/ref.h"
#include "uik/settings.h"

#include <QIcon>
#include <QString>

#include <optional>

class QWidget;

namespace HF {

class LRecentsList;
class LTreeItem;

/// The settings store.
HF_EXPORT uik::uik_settings& ApplicationSettings();

/// A message box; on the error stream when there is no window system.
HF_EXPORT void Alert(const QString& text);
/// A line of text from the user; nothing when cancelled. Main thread.
HF_EXPORT std::optional<QString> InputText(const QString& prompt, const QString& initial = {});
HF_EXPORT std::optional<QString> InputTextWithTitle(const QString& title, const QString& prompt, const QString& initial,
                                                    const QString& acceptButton);
/// Limits the window to the screen and lets it shrink to its contents.
HF_EXPORT void SetWidgetConstraints(QWidget& window);
HF_EXPORT QString GetFactoryTypeNameTranslated(ELConnectionFactoryId id);
/// Icon of a resource path; behind a line feed the path of an overlay. Cached. Main thread.
HF_EXPORT QIcon LoadCachedIcon(const QString& path);
/// Plural of an English lower-case noun of the object kinds.
HF_EXPORT QString PluralStr(const QString& word);
HF_EXPORT void OpenURL(const QString& url);
/// The location as it reads from any folder: a file's path is made absolute, ":memory:",
/// "md:name" and the like stay.
HF_EXPORT QString AbsoluteLocation(const QString& location);
/// Takes items out of the list whose files are gone, unless they live elsewhere
/// than on disk.
HF_EXPORT void CheckRecentDatabasesPaths(const rc::Ref<LRecentsList>& list);
/// Counts a use; kept in the settings, sent nowhere.
HF_EXPORT void AddStatistic(const QString& name, unsigned count);
/// Workspaces; empty means none.
HF_EXPORT QString GetActiveWorkspaceID();
HF_EXPORT void SetActiveWorkspaceID(const QString& workspace);
HF_EXPORT QString GetWorkspaceID(const rc::Ptr<const LTreeItem>& item);

} // namespace HF
