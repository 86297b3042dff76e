// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/enums.h"
#include "hf/variant.h"
#include "rc/ref.h"

#include <QList>
#include <QStringList>

namespace HF {

class I_LDatabase;
class I_LSchemaObject;

/// One statement of a structure change and those that follow it.
struct HF_EXPORT LQueryNode
{
    QList<LQueryNode> children;
    rc::Weak<const I_LSchemaObject> object;
    int property = -1; ///< -1 where no one property is meant
    ELQueryKind kind = KIND_CHANGE_PROPERTY;
    QString sql; ///< may be empty, hold several statements or a comment
    LVariant value;
};

/// The statements below a list of nodes, depth first, without the empty ones,
/// each closed by FinishQuery.
HF_EXPORT QStringList FlattenQueryNodes(const QList<LQueryNode>& nodes);

/// Runs statements in their order: those marked "--SO--" alone, the others in
/// one transaction unless `transactable` is false or there is only one. At the
/// first failure the transaction is rolled back, the engine's text goes to the
/// error log with the statement, and the rest does not run. After success the
/// database is flushed. Any thread.
HF_EXPORT bool RunStatements(const rc::Ref<I_LDatabase>& database, const QStringList& statements, bool transactable);

} // namespace HF
