// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"

#include <functional>

class QObject;

/// Outcome of an open: the database, or why there is none.
struct OpenOutcome
{
    rc::Ptr<HF::I_LDatabase> database;
    QString error;
};

/// Opens a location through the factory, on a worker. `done` runs on the main
/// thread unless the context is gone by then.
void OpenInBackground(const rc::Ref<HF::I_LConnectionFactory>& factory, const HF::LConnectionParameters& parameters,
                      QObject* context, std::function<void(const OpenOutcome&)> done);
