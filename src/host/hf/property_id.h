// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/export.h"

#include <QString>

namespace HF {

/// Numbers of properties and their names.
struct HF_EXPORT LPropertyID
{
    /// Makes a new number, at load time. Names need not be unique: a known
    /// (name, category) pair gives its number again.
    static int CreateID(const char* name, const char* category);

    /// Short name of a number, such as "Default schemas"; "Property N" for unknown
    /// ones. Untranslated: also part of stored keys.
    static QString GetPropertyName(int id);

    /// The name in the user's language, for the eye.
    static QString GetPropertyTitle(int id);
};

} // namespace HF

/// Property numbers of schema objects. The host owns them; the catalogue
/// objects write them and the models read them.
enum PropertyNumber : int {
    PROP_FIELD_KEY_FLAG = 2,
    PROP_COLLATION = 7,
    PROP_COMMENT = 9,
    PROP_COLUMNS = 18,
    PROP_OBJECT_ID = 22,
    PROP_NAME = 26,
    PROP_KEY_COLUMNS = 34,
    PROP_SQL_TEXT = 35,
    PROP_SCHEMA_NAME = 37,
    PROP_TEMPORARY = 45,
    PROP_DEFINITION = 46,
    PROP_TYPE_NAME = 47,
    PROP_UNIQUE = 48,
    PROP_ARRAY_SIZE = 58,
    PROP_ELEMENT_TYPE = 59,
    PROP_CHECK_EXPRESSION = 60,
    PROP_SEARCH_PATH = 96,
    PROP_PATH = 100,
    PROP_COUNT_FUNCTIONS = 107,
    PROP_COUNT_LINKS = 109,
    PROP_COUNT_SEQUENCES = 113,
    PROP_COUNT_SCHEMAS = 115,
    PROP_COUNT_TABLES = 116,
    PROP_COUNT_VIEWS = 118,
    PROP_DEFAULT = 130,
    PROP_TYPE_ARGUMENTS = 132,
    PROP_INDEXED = 136,
    PROP_NULLABLE = 140,
    PROP_FIELD_POSITION = 141,
    PROP_PRECISION = 142,
    PROP_SCALE = 143,
    PROP_FUNCTION_ARG_COUNT = 145,
    PROP_FUNCTION_TYPE = 146,
    PROP_LINK_CARDINALITY = 154,
    PROP_LINK_COLUMNS = 156,
    PROP_LINK_TABLE = 158,
    PROP_LINK_SCHEMA = 159,
    PROP_LINK_PARENT_TABLE = 160,
    PROP_LINK_PARENT_SCHEMA = 161,
    PROP_METHOD_EXPRESSION = 176,
    PROP_SEQ_CYCLE = 185,
    PROP_SEQ_LAST_VALUE = 186,
    PROP_SEQ_INCREMENT = 187,
    PROP_SEQ_MIN = 188,
    PROP_SEQ_MAX = 189,
    PROP_SEQ_START = 190,
    PROP_COUNT_CHECKS = 191,
    PROP_COUNT_FIELDS = 192,
    PROP_COUNT_INDEXES = 193,
    PROP_COUNT_METHODS = 194,
    PROP_RECORD_COUNT = 197,
    PROP_COUNT_UNIQUES = 200,
};
