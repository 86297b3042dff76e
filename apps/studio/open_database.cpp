// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/open_database.h"

#include "hf/background.h"

void OpenInBackground(const rc::Ref<HF::I_LConnectionFactory>& factory, const HF::LConnectionParameters& parameters,
                      QObject* context, std::function<void(const OpenOutcome&)> done)
{
    const rc::Ref<HF::I_LConnectionHandler> handler = factory->CreateHandler();
    HF::RunInBackground([handler, parameters] { return handler->Open(parameters).Force(); }, context,
                        [factory, handler, done = std::move(done)](bool opened) {
                            OpenOutcome outcome;
                            const HF::LConnectionResult result = factory->Connect(handler).Force();
                            outcome.database = result.Database;
                            if (!outcome.database) {
                                outcome.error = handler->GetLastError();
                                if (outcome.error.isEmpty())
                                    outcome.error = QObject::tr("The database could not be opened.");
                            }
                            done(outcome);
                        });
}
