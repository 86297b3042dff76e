// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/connection_parameters.h"

#include "hf/database.h"
#include "hf/log.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <mutex>

namespace HF {

namespace {

std::mutex g_runnerMutex;

LScriptRunner& Runner()
{
    static auto* const runner = new LScriptRunner;
    return *runner;
}

std::optional<weft::Error> RunScript(const weft::String& file, LConnectionParameters& parameters,
                                     const rc::Ptr<I_LConnection>& connection, const rc::Ptr<I_LDatabase>& database)
{
    const QString path = file.ToQString();
    if (!QFileInfo(path).isFile())
        return weft::Error(QObject::tr("Script \"%1\" does not exist.").arg(path));
    LScriptRunner runner;
    {
        std::lock_guard guard(g_runnerMutex);
        runner = Runner();
    }
    if (!runner)
        return weft::Error(QObject::tr("Script \"%1\" cannot be run: there is no script runtime.").arg(path));
    return runner(path, parameters, connection, database);
}

} // namespace

void SetScriptRunner(LScriptRunner runner)
{
    std::lock_guard guard(g_runnerMutex);
    Runner() = std::move(runner);
}

std::optional<weft::Error> LConnectionParameters::RunPreScript()
{
    if (PreScript.empty())
        return std::nullopt;
    return RunScript(PreScript, *this, nullptr, nullptr);
}

void LConnectionParameters::RunPostScript(const rc::Ptr<I_LConnection>& connection,
                                          const rc::Ptr<I_LDatabase>& database) const
{
    if (PostScript.empty())
        return;
    LConnectionParameters copy = *this;
    if (const std::optional<weft::Error> error = RunScript(PostScript, copy, connection, database))
        LogError(error->message().ToQString());
}

} // namespace HF
