// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/connection_factory.h"
#include "plugin/plugin.h"

#include "hf/database.h"

#include <memory>

/// The one symbol of the plug-in. The host owns the result. Opens nothing and
/// runs no SQL; afterwards the default connection stands in the host's tree.
extern "C" __attribute__((visibility("default"))) HF::I_LPlugin* orbInstantiatePlugin()
{
    auto plugin = std::make_unique<orbDuckDB_Plugin>();
    const auto handler = rc::make<orbDuckDB_LocalConnectionHandler>();
    const HF::LConnectionResult result = ConnectionFactoryInstance()->Connect(handler).Force();
    return plugin.release();
}
