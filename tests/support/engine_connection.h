// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/engine.h"
#include "support/fake_connection.h"

namespace support {

/// A connection that knows the engine's rules and has no databases of its own.
class EngineConnection : public FakeConnection
{
public:
    const HF::LDatabaseEngine& get_Engine() const override { return orbDuckDB_Engine::Instance(); }
    const HF::LDatabaseEngine* get_DatabaseEngine() const override { return &get_Engine(); }
};

} // namespace support
