// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/command_line.h"
#include "cli/exit_code.h"
#include "cli/host_session.h"

#include "hf/table_cursor.h"

#include <memory>
#include <optional>

namespace orbis {

/// What a command on one table works with.
struct OpenedTable
{
    int exitCode = ExitDone; ///< not ExitDone: there is no cursor, and that was told
    std::unique_ptr<HostSession> session;
    rc::Ptr<HF::I_LTableCursor> cursor; ///< nothing read yet
};

/// Opens the database that the first argument of the command names, and in it the
/// table or view of the second.
OpenedTable OpenTable(const CommandLine& line);

/// What a command says of one column.
struct ColumnText
{
    enum Kind {
        Null,  ///< "COL:null"
        Text,  ///< "COL=VALUE"; "@@..." stands for a text that begins with "@"
        File,  ///< "COL=@FILE": the bytes of a file
    };

    QString column;
    Kind kind = Text;
    QString text; ///< value or file name
};

/// Takes "COL=VALUE", "COL=@FILE" or "COL:null" apart; the column may stand in
/// double quotes, doubled inside. Nothing for anything else.
std::optional<ColumnText> ParseColumnText(const QString& text);

/// Reads "COL", "COL:asc" or "COL:desc"; the column may stand in double quotes.
std::optional<HF::LSortField> ParseSortField(const QString& text);

} // namespace orbis
