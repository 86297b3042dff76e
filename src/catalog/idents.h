// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/cursor.h"
#include "hf/ident.h"

/// Reads the names for completion from the rows of an ident query, sorted by
/// full name. Null or without the columns "fld_kind" and "fld_ident": none.
QList<HF::LIdent> ReadIdents(const rc::Ptr<HF::I_LCursor>& cursor);

/// One ident of a path (parts joined by line feeds) and the kind's text.
HF::LIdent MakeIdent(const QString& path, const QString& kind);
