// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/export.h"
#include "rc/ref.h"
#include "weft/string.h"
#include "weft/error.h"

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

} // namespace HF
