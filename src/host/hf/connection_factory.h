// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/connection_parameters.h"
#include "hf/schema_object.h"

namespace HF {

class I_LConnectPane;
class I_LConnectionFactory;

/// Outcome of a connect; either may be null.
struct HF_EXPORT LConnectionResult
{
    rc::Ptr<I_LConnection> Connection;
    rc::Ptr<I_LDatabase> Database;
};

/// Turns parameters into an open engine; see the factory's Connect.
class HF_EXPORT I_LConnectionHandler : public rc::RefCounted
{
public:
    virtual rc::Ref<I_LConnectionFactory> GetFactory() const = 0;
    virtual LConnectionParameters GetParameters() const = 0;
    /// The text of the last failed open, empty otherwise.
    virtual QString GetLastError() const = 0;
    virtual bool IsOpened() const = 0;
    virtual LLazy<rc::Ref<I_LConnectionHandler>, false> Clone() = 0;
    /// True while another thread opens.
    virtual bool IsBusy() const = 0;
    virtual LLazy<bool, true> Open(const LConnectionParameters& parameters) = 0;
};

/// The object that the host knows an engine by.
class HF_EXPORT I_LConnectionFactory : public I_LSchemaObject
{
public:
    virtual int GetFactoryId() const = 0;
    virtual LLazy<bool, false> get_IsConnected() const = 0;
    virtual LLazy<LConnectionResult, true> Connect(const rc::Ref<I_LConnectionHandler>& handler) = 0;
    virtual rc::Ref<I_LConnectionHandler> CreateHandler() const = 0;
    virtual QPointer<I_LConnectPane> CreateConnectPane(QWidget* dialog, QPointer<QWidget> parent) const = 0;
    /// ELProbeResult.
    virtual int ProbeLocation(const LConnectionParameters& parameters) const = 0;
    virtual const LDatabaseEngine& get_Engine() const = 0;
    /// The connections of a workspace; empty text: those of none.
    virtual RcList<I_LConnection> get_Connections(const QString& workspace) const = 0;
};

/// Base of factories: the connections that were made, by workspace.
class HF_EXPORT LConnectionFactory : public I_LConnectionFactory
{
public:
    explicit LConnectionFactory(const QString& name);
    ~LConnectionFactory() override;

    int get_ObjectType() const override { return TYPE_CONNECTION_FACTORY; }
    QString get_ObjectTypeName() const override;
    RcList<I_LConnection> get_Connections(const QString& workspace) const override;
    rc::Ptr<I_LConnection> FindConnection(const QString& workspace, const QString& name) const;
    /// Encodings a dump can be written in, the default first.
    virtual QStringList GetDumpEncodings() const;
    /// Is attached to the factory's connections.
    rc::Ref<LObserver> get_Observer() const { return m_observer; }
    /// Keeps a new connection. Called by the constructor of LConnection, so the
    /// workspace comes along: the object itself cannot be asked yet. A factory that
    /// makes connections on several threads locks around look-up and creation.
    void AddConnection(const rc::Ref<I_LConnection>& connection, const QString& workspace);

private:
    struct Entry
    {
        rc::Ref<I_LConnection> connection;
        QString workspace;
    };

    rc::Ref<LObserver> m_observer;
    mutable std::mutex m_connectionsMutex;
    std::vector<Entry> m_connections;
};

} // namespace HF
