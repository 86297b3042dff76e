// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace HF {

/// Kinds of objects in the tree.
enum ELObjectType : int {
    TYPE_NONE = 0,
    TYPE_CHECK = 4,
    TYPE_CURSOR = 8,
    TYPE_DATABASE = 9,
    TYPE_FIELD = 17,
    TYPE_FUNCTION = 18,
    TYPE_INDEX = 19,
    TYPE_LINK = 22,
    TYPE_METHOD = 23, ///< a generated column
    TYPE_SCHEMA = 35,
    TYPE_SEQUENCE = 37,
    TYPE_TABLE = 40,
    TYPE_UNIQUE = 44,
    TYPE_VIEW = 46,
    TYPE_CONNECTION = 101,
    TYPE_CONNECTION_FACTORY = 102,
    TYPE_RECENTS = 103,
    TYPE_RECENT_ITEM = 104,
    TYPE_LIST = 105,
};

/// Types of fields.
enum ELFieldType : int {
    FIELD_UNKNOWN = 0,
    FIELD_ENUM = 1,
    FIELD_BOOLEAN = 3,
    FIELD_SMALLINT = 5,
    FIELD_INTEGER = 9,
    FIELD_BIGINT = 11,
    FIELD_UHUGEINT = 12,
    FIELD_FLOAT = 13,
    FIELD_DOUBLE = 14,
    FIELD_DATE = 16,
    FIELD_TIME = 17,
    FIELD_TIMESTAMP = 18,
    FIELD_VARCHAR = 20,
    FIELD_BLOB = 23,
    FIELD_UUID = 42,
    FIELD_ARRAY = 44,
    FIELD_DECIMAL = 46,
    FIELD_TIMESTAMP_TZ = 54,
    FIELD_BIT = 55,
    FIELD_INTERVAL = 57,
    FIELD_JSON = 71,
    FIELD_LIST = 74,
    FIELD_MAP = 75,
    FIELD_STRUCT = 76,
    FIELD_UNION = 77,
};

/// Engines by number.
enum ELConnectionFactoryId : int {
    FACTORY_NONE = 0,
    FACTORY_DUCKDB = 2048,
};

/// Kinds of database objects in identifiers: a set of bits.
enum ELDbObjType : std::uint64_t {
    DBOBJ_UNKNOWN = 0,
    DBOBJ_FIELD = 1ull << 9,
    DBOBJ_FUNCTION = 1ull << 10,
    DBOBJ_SCHEMA = 1ull << 18,
    DBOBJ_SEQUENCE = 1ull << 19,
    DBOBJ_TABLE = 1ull << 21,
    DBOBJ_TYPE = 1ull << 24,
    DBOBJ_VIEW = 1ull << 26,
    DBOBJ_INDEX = 1ull << 32,
};

/// What a request for statements stands for.
enum ELQueryKind : int {
    KIND_ALTER_GROUP = 1,
    KIND_CHANGE_PROPERTY = 2,
    KIND_CREATE = 3,
    KIND_DROP = 4,
    KIND_DEFINITION = 5,
    KIND_CALL = 6,
    KIND_REBUILD = 8,
};

/// Where a cursor lives, how it locks, how it moves: arguments of SqlQuery and
/// SqlSelect. The driver uses one combination only.
enum ELCursorLocation : int { CURSOR_CLIENT = 1 };
enum ELLockType : int { LOCK_OPTIMISTIC = 2 };
enum ELCursorDirection : int { CURSOR_FORWARD = 1 };

/// Bits of the flags of a query.
enum ELQueryFlags : int {
    QUERY_DEFAULT = 0,
    QUERY_NO_LOG = 16,        ///< writes no query log entry
    QUERY_SILENT_ERROR = 32,  ///< keeps the error from the error log
    QUERY_BACKGROUND = 128,   ///< logged as not asked for by the user
};

/// How names compare.
enum ELCaseSensitivity : int { CASE_INSENSITIVE = 0, CASE_SENSITIVE = 1 };

/// Results of LConnectionFactory::ProbeLocation.
enum ELProbeResult : int { PROBE_UNREACHABLE = 2, PROBE_REACHABLE = 4 };

/// What a dump holds.
enum ELDumpData : int { DUMP_DATA = 0, DUMP_STRUCTURE = 1, DUMP_BOTH = 2 };

/// Dump formats by number; SQL is the only one of this engine.
enum ELDumpKind : int { DUMP_KIND_SQL = 5 };

/// Events told to the watchers of a script object.
enum ELScriptEvent : int {
    SCRIPT_EVENT_PROPERTY = 1, ///< argument: name of the script property
    SCRIPT_EVENT_ROW = 2,      ///< argument: number of the row that was written
    SCRIPT_EVENT_CLOSING = 5,
};

} // namespace HF
