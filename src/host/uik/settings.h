// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/settings_store.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

namespace uik {

/// The settings store: one INI file under the user's configuration folder.
/// "/A/B" and "A/B" are one key. Writes reach the disk soon after, by
/// replacing the file. An invalid value removes its key. Without slashes a key is
/// empty, and an empty key holds nothing. A file that cannot be read or written
/// leaves the store in memory only. Any thread.
class ORB_SHARED uik_settings : public weft::settings_store
{
public:
    /// Another file; for tests and for programs that were given one.
    explicit uik_settings(const QString& file);
    ~uik_settings() override;

    QVariant value(const QString& key, const QVariant& otherwise = {}) const override;
    void setValue(const QString& key, const QVariant& value) override;
    bool contains(const QString& key) const;
    void remove(const QString& key); ///< and everything below it
    QStringList childKeys(const QString& group) const;
    QStringList childGroups(const QString& group) const;
    void sync();
    QString fileName() const;
    /// Goes on with another file; what was written so far stays in the old one.
    void SetFile(const QString& file);

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

/// The application's store. The file is the one of SetSettingsFile, else of the
/// environment variable ORBIS_SETTINGS, else the user's.
ORB_SHARED uik_settings& settings();
/// Takes another file, before the first use of settings() or after it; an empty
/// name means the environment's or the user's again.
ORB_SHARED void SetSettingsFile(const QString& file);

} // namespace uik
