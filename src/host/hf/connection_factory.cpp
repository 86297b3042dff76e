// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/connection_factory.h"

#include "hf/connection.h"
#include "hf/schema_item_list.h"

#include <QTextCodec>

#include <algorithm>

namespace HF {

LConnectionFactory::LConnectionFactory(const QString& name) : m_observer(rc::make<LObserver>())
{
    AssignName(name);
}

LConnectionFactory::~LConnectionFactory() = default;

QString LConnectionFactory::get_ObjectTypeName() const
{
    return QStringLiteral("connection factory");
}

RcList<I_LConnection> LConnectionFactory::get_Connections(const QString& workspace) const
{
    std::lock_guard guard(m_connectionsMutex);
    RcList<I_LConnection> connections;
    for (const Entry& entry : m_connections)
        if (entry.workspace == workspace)
            connections.append(entry.connection);
    return connections;
}

rc::Ptr<I_LConnection> LConnectionFactory::FindConnection(const QString& workspace, const QString& name) const
{
    for (const rc::Ref<I_LConnection>& connection : get_Connections(workspace))
        if (connection->get_Name() == name)
            return connection;
    return nullptr;
}

QStringList LConnectionFactory::GetDumpEncodings() const
{
    static const QStringList encodings = [] {
        QStringList names;
        for (const QByteArray& name : QTextCodec::availableCodecs())
            // One name a codec: the list holds every alias.
            if (const QTextCodec* codec = QTextCodec::codecForName(name); codec && codec->name() == name)
                names.append(QString::fromLatin1(name));
        names.removeDuplicates();
        std::sort(names.begin(), names.end(),
                  [](const QString& a, const QString& b) { return a.compare(b, Qt::CaseInsensitive) < 0; });
        names.removeAll(QStringLiteral("UTF-8"));
        names.prepend(QStringLiteral("UTF-8"));
        return names;
    }();
    return encodings;
}

void LConnectionFactory::AddConnection(const rc::Ref<I_LConnection>& connection, const QString& workspace)
{
    std::lock_guard guard(m_connectionsMutex);
    for (const Entry& entry : m_connections)
        if (entry.connection == connection)
            return;
    m_connections.push_back({connection, workspace});
}

} // namespace HF
