// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/export.h"
#include "rc/ref.h"
#include "weft/string.h"
#include "weft/error.h"

#include <functional>
#include <optional>

namespace HF {

class I_LConnection;
class I_LDatabase;

/// What a connection is opened with. A value. The access token stands here in
/// plain text and nowhere else: nothing stores or logs it.
struct HF_EXPORT LConnectionParameters
{
    int FactoryId = 0;
    weft::String Location; ///< empty: a handler that opens nothing
    weft::String HostName;
    weft::String AccessToken;
    weft::String UserAgent;
    weft::String WorkspaceId;
    weft::String PreScript;  ///< file of the user's script before a connect
    weft::String PostScript; ///< and after one
    bool ReadOnly = false;

    /// Runs the user's script before a connect, which may change the record. The
    /// error when it failed. Without a script nothing happens.
    std::optional<weft::Error> RunPreScript();
    /// Runs the user's script after a connect; a failure goes to the error log.
    void RunPostScript(const rc::Ptr<I_LConnection>& connection, const rc::Ptr<I_LDatabase>& database) const;
};

/// Runs the user's script in a file and gives its error. Before a connect both
/// objects are null and the script may change the record.
using LScriptRunner = std::function<std::optional<weft::Error>(const QString& file, LConnectionParameters& parameters,
                                                               const rc::Ptr<I_LConnection>& connection,
                                                               const rc::Ptr<I_LDatabase>& database)>;
/// Installs what runs scripts; until then a script that is named is an error. Any
/// thread; the runner is called on the thread that connects.
HF_EXPORT void SetScriptRunner(LScriptRunner runner);

} // namespace HF
