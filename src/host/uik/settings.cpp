// SPDX-License-Identifier: GPL-3.0-or-later
#include "uik/settings.h"

#include <QSettings>
#include <QStandardPaths>

#include <mutex>

namespace uik {

namespace {

/// The deferred write of QSettings comes as an event, on the thread that made
/// the store, while other threads read and write: it takes the same lock.
class Store : public QSettings
{
public:
    Store(const QString& file, std::recursive_mutex& mutex) : QSettings(file, QSettings::IniFormat), m_mutex(mutex) {}

protected:
    bool event(QEvent* event) override
    {
        std::lock_guard guard(m_mutex);
        return QSettings::event(event);
    }

private:
    std::recursive_mutex& m_mutex;
};

/// Without slashes in front, behind, or two in a row.
QString Normalized(const QString& key)
{
    return key.split(u'/', Qt::SkipEmptyParts).join(u'/');
}

QString UserFile()
{
    const QString named = qEnvironmentVariable("ORBIS_SETTINGS");
    if (!named.isEmpty())
        return named;
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/orbis-duckdb/settings.ini");
}

/// The name given before the store came into being.
QString& NamedFile()
{
    static QString* file = new QString;
    return *file;
}

std::mutex& NamedFileMutex()
{
    static std::mutex* mutex = new std::mutex;
    return *mutex;
}

} // namespace

struct uik_settings::Impl
{
    mutable std::recursive_mutex mutex;
    std::unique_ptr<Store> store;

    void Open(const QString& file)
    {
        std::lock_guard guard(mutex);
        store = std::make_unique<Store>(file, mutex);
    }
};

uik_settings::uik_settings(const QString& file) : m_impl(std::make_unique<Impl>())
{
    m_impl->Open(file);
}

uik_settings::~uik_settings() = default;

QVariant uik_settings::value(const QString& key, const QVariant& otherwise) const
{
    const QString normalized = Normalized(key);
    if (normalized.isEmpty())
        return otherwise;
    std::lock_guard guard(m_impl->mutex);
    return m_impl->store->value(normalized, otherwise);
}

void uik_settings::setValue(const QString& key, const QVariant& value)
{
    const QString normalized = Normalized(key);
    if (normalized.isEmpty())
        return;
    std::lock_guard guard(m_impl->mutex);
    // An invalid value means that there is none; the file format would keep the key.
    if (!value.isValid())
        m_impl->store->remove(normalized);
    else if (!m_impl->store->contains(normalized) || m_impl->store->value(normalized) != value)
        m_impl->store->setValue(normalized, value);
}

bool uik_settings::contains(const QString& key) const
{
    const QString normalized = Normalized(key);
    std::lock_guard guard(m_impl->mutex);
    return !normalized.isEmpty() && m_impl->store->contains(normalized);
}

void uik_settings::remove(const QString& key)
{
    // An empty key would take the whole file.
    const QString normalized = Normalized(key);
    if (normalized.isEmpty())
        return;
    std::lock_guard guard(m_impl->mutex);
    m_impl->store->remove(normalized);
}

QStringList uik_settings::childKeys(const QString& group) const
{
    std::lock_guard guard(m_impl->mutex);
    m_impl->store->beginGroup(Normalized(group));
    const QStringList keys = m_impl->store->childKeys();
    m_impl->store->endGroup();
    return keys;
}

QStringList uik_settings::childGroups(const QString& group) const
{
    std::lock_guard guard(m_impl->mutex);
    m_impl->store->beginGroup(Normalized(group));
    const QStringList groups = m_impl->store->childGroups();
    m_impl->store->endGroup();
    return groups;
}

void uik_settings::sync()
{
    std::lock_guard guard(m_impl->mutex);
    m_impl->store->sync();
}

QString uik_settings::fileName() const
{
    std::lock_guard guard(m_impl->mutex);
    return m_impl->store->fileName();
}

void uik_settings::SetFile(const QString& file)
{
    m_impl->Open(file);
}

namespace {

weft::settings_store& ApplicationStore()
{
    return settings();
}

const bool StoreIsKnown = (weft::set_application_store(&ApplicationStore), true);

/// Null until the first use. Never destroyed, since objects that outlive main()
/// may still ask; WriteAtExit brings the last changes to the disk.
uik_settings* TheSettings = nullptr;

struct WriteAtExit
{
    ~WriteAtExit()
    {
        std::lock_guard guard(NamedFileMutex());
        if (TheSettings)
            TheSettings->sync();
    }
};

} // namespace

uik_settings& settings()
{
    std::lock_guard guard(NamedFileMutex());
    if (!TheSettings) {
        TheSettings = new uik_settings(NamedFile().isEmpty() ? UserFile() : NamedFile());
        // Made after the first store, so that what Qt keeps for files still lives.
        static WriteAtExit writer;
    }
    return *TheSettings;
}

void SetSettingsFile(const QString& file)
{
    std::lock_guard guard(NamedFileMutex());
    NamedFile() = file;
    if (TheSettings)
        TheSettings->SetFile(file.isEmpty() ? UserFile() : file);
}

} // namespace uik
