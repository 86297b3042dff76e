// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/settings_store.h"

#include <QHash>

#include <atomic>
#include <mutex>

namespace weft {

namespace {

/// Stands in until somebody brings a store with a file behind it.
class memory_store : public settings_store
{
public:
    QVariant value(const QString& key, const QVariant& otherwise) const override
    {
        std::lock_guard guard(m_mutex);
        return m_values.value(key, otherwise);
    }
    void setValue(const QString& key, const QVariant& value) override
    {
        std::lock_guard guard(m_mutex);
        if (value.isValid())
            m_values.insert(key, value);
        else
            m_values.remove(key);
    }

private:
    mutable std::mutex m_mutex;
    QHash<QString, QVariant> m_values;
};

// Constant-initialised: the provider may come from another file's initialiser.
constinit std::atomic<settings_store& (*)()> Provider{nullptr};

} // namespace

settings_store& application_store()
{
    if (auto* provider = Provider.load())
        return provider();
    static memory_store* store = new memory_store;
    return *store;
}

void set_application_store(settings_store& (*provider)())
{
    Provider.store(provider);
}

} // namespace weft
