// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/cursor.h"
#include "hf/ident.h"

/// Reads the names for completion from the rows of an ident query, sorted by
/// full name. Their paths are in column "fld_path", joined by NUL, or else in
/// "fld_ident", joined by line feeds. Null or without these and "fld_kind": none.
QList<HF::LIdent> ReadIdents(const rc::Ptr<HF::I_LCursor>& cursor);

/// One ident of a path and the kind's text.
HF::LIdent MakeIdent(const QString& path, const QString& kind, QChar separator = u'\n');
