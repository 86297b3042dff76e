// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/connection_factory.h"

#include <functional>

namespace orbis {

/// Lets connections run the scripts that their parameters name, before and after
/// they are made, until the object goes. A script finds the parameters in the
/// global `parameters`, and the one after a connect also `connection` and
/// `database`. It runs on the main thread; whoever connects waits for it.
class ConnectScripts
{
public:
    /// Takes the lines of `console`. Main thread.
    using Sink = std::function<void(const QString& line, bool isError)>;

    explicit ConnectScripts(const rc::Ref<HF::I_LConnectionFactory>& factory, Sink sink);
    ~ConnectScripts();
    ConnectScripts(const ConnectScripts&) = delete;
    ConnectScripts& operator=(const ConnectScripts&) = delete;
};

} // namespace orbis
