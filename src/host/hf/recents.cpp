// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/recents.h"

#include "hf/schema_item_list.h"
#include "hf/services.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace HF {

namespace {

/// The list as one JSON text: [{"name": ..., "data": ..., "cloud": true}].
const QString NameKey = QStringLiteral("name");
const QString DataKey = QStringLiteral("data");
const QString CloudKey = QStringLiteral("cloud");

/// More would not be a list of recent things but a mistaken file.
constexpr qint64 LargestFile = 4 * 1024 * 1024;

QJsonArray ParseList(const QByteArray& json)
{
    return QJsonDocument::fromJson(json).array();
}

rc::Ptr<LRecentItem> FromJson(const rc::Ref<LRecentsList>& list, const QJsonValue& value)
{
    const QJsonObject object = value.toObject();
    const QVariant data = object.value(DataKey).toVariant();
    if (data.toString().isEmpty())
        return nullptr;
    const rc::Ref<LRecentItem> item = rc::make<LRecentItem>(list, object.value(NameKey).toString(), data);
    if (object.contains(CloudKey))
        item->AssignPropertyValueSilent(PROP_TEMPORARY, object.value(CloudKey).toBool());
    return item;
}

QJsonObject ToJson(const LRecentItem& item)
{
    QJsonObject object{{NameKey, item.get_Name()}, {DataKey, QJsonValue::fromVariant(item.get_ItemData())}};
    if (item.HasProperty(PROP_TEMPORARY))
        object.insert(CloudKey, item.GetBool(PROP_TEMPORARY));
    return object;
}

std::atomic<LTree*> TheActiveTree{nullptr};

} // namespace

LRecentItem::LRecentItem(const rc::Ref<LRecentsList>& list, const QString& name, const QVariant& data)
    : m_list(list), m_data(data)
{
    AssignName(name);
}

LLazy<QString, false> LRecentItem::get_Icon() const
{
    const rc::Ptr<LRecentsList> list = m_list.lock();
    return list ? list->GetItemIcon(rc::self(this)) : QString();
}

LLazy<QString, false> LRecentItem::get_Tip() const
{
    const rc::Ptr<LRecentsList> list = m_list.lock();
    return list ? list->GetItemTip(rc::self(this)) : QString();
}

QVariant LRecentItem::get_ItemData() const
{
    std::lock_guard guard(PropertyMutex());
    return m_data;
}

void LRecentItem::put_ItemData(const QVariant& data)
{
    std::lock_guard guard(PropertyMutex());
    m_data = data;
}

RcList<LRecentItem> LRecentsList::get_Items() const
{
    std::lock_guard guard(m_itemsMutex);
    return m_items;
}

void LRecentsList::AddRecent(const QString& name, const QVariant& data)
{
    const rc::Ref<LRecentsList> self = rc::self(this);
    {
        std::lock_guard guard(m_itemsMutex);
        const qsizetype known = IndexOf(data);
        if (known >= 0) {
            m_items.move(known, 0);
            m_items.first()->AssignName(name);
        } else {
            CheckLimitBeforeAdding();
            m_items.prepend(rc::make<LRecentItem>(self, name, data));
        }
    }
    Changed();
}

void LRecentsList::DeleteRecentByData(const QVariant& data)
{
    {
        std::lock_guard guard(m_itemsMutex);
        const qsizetype known = IndexOf(data);
        if (known < 0)
            return;
        m_items.removeAt(known);
    }
    Changed();
}

void LRecentsList::DeleteRecent(const rc::Ref<LRecentItem>& item)
{
    {
        std::lock_guard guard(m_itemsMutex);
        if (!m_items.removeOne(item))
            return;
    }
    Changed();
}

void LRecentsList::DeleteAllRecents()
{
    {
        std::lock_guard guard(m_itemsMutex);
        if (m_items.isEmpty())
            return;
        m_items.clear();
    }
    Changed();
}

void LRecentsList::CheckLimitBeforeAdding()
{
    std::lock_guard guard(m_itemsMutex);
    while (!m_items.isEmpty() && m_items.size() >= m_maximum)
        m_items.removeLast();
}

void LRecentsList::Flush()
{
    if (m_settingsKey.isEmpty())
        return;
    QJsonArray array;
    // Written under the lock, so that of two changes the later one stays.
    std::lock_guard guard(m_itemsMutex);
    for (const rc::Ref<LRecentItem>& item : m_items)
        array.append(ToJson(*item));
    ApplicationSettings().setValue(StoredKey(),
                                   array.isEmpty() ? QVariant()
                                                   : QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact)));
}

void LRecentsList::FromFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > LargestFile)
        return;
    if (Append(file.readAll()))
        Changed();
}

QString LRecentsList::GetItemIcon(const rc::Ref<const LRecentItem>& item) const
{
    return m_itemIcon;
}

QString LRecentsList::GetItemTip(const rc::Ref<const LRecentItem>& item) const
{
    return item->get_ItemData().toString();
}

void LRecentsList::Load()
{
    if (!m_settingsKey.isEmpty())
        Append(ApplicationSettings().value(StoredKey()).toString().toUtf8());
}

bool LRecentsList::Append(const QByteArray& json)
{
    const rc::Ref<LRecentsList> self = rc::self(this);
    bool changed = false;
    std::lock_guard guard(m_itemsMutex);
    for (const QJsonValue& value : ParseList(json)) {
        if (m_items.size() >= m_maximum)
            break;
        const rc::Ptr<LRecentItem> item = FromJson(self, value);
        if (!item || IndexOf(item->get_ItemData()) >= 0)
            continue;
        m_items.append(rc::Ref<LRecentItem>(item));
        changed = true;
    }
    return changed;
}

qsizetype LRecentsList::IndexOf(const QVariant& data) const
{
    for (qsizetype i = 0; i < m_items.size(); ++i)
        if (m_items.at(i)->get_ItemData() == data)
            return i;
    return -1;
}

QString LRecentsList::StoredKey() const
{
    return QStringLiteral("Recents/") + m_settingsKey;
}

void LRecentsList::Changed()
{
    Flush();
    NotifyObservers(Change::Children);
}

QStringList LRecentsListWithExamples::get_Examples() const
{
    QStringList result;
    if (m_examplesWord.isEmpty() || !QCoreApplication::instance())
        return result;
    const QString programs = QCoreApplication::applicationDirPath();
    for (const char* folder : {"/examples/", "/../share/orbis-duckdb/examples/"}) {
        const QDir examples(programs + QLatin1String(folder) + m_examplesWord);
        for (const QFileInfo& file : examples.entryInfoList(QDir::Files | QDir::Readable, QDir::Name))
            result.append(file.canonicalFilePath());
    }
    return result;
}

LTree* LTree::ActiveMenuTree()
{
    return TheActiveTree.load();
}

void LTree::SetActiveMenuTree(LTree* tree)
{
    TheActiveTree.store(tree);
}

} // namespace HF
