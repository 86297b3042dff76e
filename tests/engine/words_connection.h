// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/engine.h"
#include "engine/engine_interfaces.h"
#include "support/fake_connection.h"

/// A connection that brings its own words.
class WordsConnection final : public support::FakeConnection, public orb_I_EngineWords
{
public:
    HF::LLazy<HF::LDatabaseKeywords, false> keywords;
    HF::LLazy<HF::LSQLFunctions, false> functions;

    HF::LLazy<HF::LDatabaseKeywords, false> get_KeywordsLazy() const override { return keywords; }
    HF::LLazy<HF::LSQLFunctions, false> get_FunctionsLazy() const override { return functions; }
};
