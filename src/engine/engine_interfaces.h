// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/keywords.h"
#include "hf/lazy.h"

#include <QStringList>

#include <optional>

/// Keeps the search path that the engine answers for a database; implemented by
/// the database, which empties it whenever its default schemas change. Any thread.
class orb_I_SearchPathCache
{
public:
    virtual ~orb_I_SearchPathCache() = default;
    /// Nothing when it has not been worked out since the last change.
    virtual std::optional<QStringList> get_SearchPathCache() const = 0;
    virtual void put_SearchPathCache(const std::optional<QStringList>& names) = 0;
};

/// Keeps the words and functions of the engine, each read at most once;
/// implemented by the connection. Any thread.
class orb_I_EngineWords
{
public:
    virtual ~orb_I_EngineWords() = default;
    virtual HF::LLazy<HF::LDatabaseKeywords, false> get_KeywordsLazy() const = 0;
    virtual HF::LLazy<HF::LSQLFunctions, false> get_FunctionsLazy() const = 0;
};
