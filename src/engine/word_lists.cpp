// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/word_lists.h"

#include <algorithm>

const QStringList& DuckDBAggregateFunctions()
{
    static const QStringList words = {
        "ANY_VALUE", "APPROX_COUNT_DISTINCT", "APPROX_QUANTILE", "ARBITRARY", "ARGMAX", "ARGMIN", "ARG_MAX",
        "ARG_MAX_NULL", "ARG_MIN", "ARG_MIN_NULL", "ARRAY_AGG", "AVG", "BITSTRING_AGG", "BIT_AND", "BIT_OR",
        "BIT_XOR", "BOOL_AND", "BOOL_OR", "CORR", "COUNT", "COUNT DISTINCT", "COUNT_STAR", "COVAR_POP",
        "COVAR_SAMP", "ENTROPY", "FAVG", "FIRST", "FSUM", "GROUP_CONCAT", "HISTOGRAM", "KAHAN_SUM",
        "KURTOSIS", "KURTOSIS_POP", "LAST", "LIST", "LISTAGG", "MAD", "MAX", "MAX DISTINCT", "MAX_BY", "MEAN",
        "MEDIAN", "MIN", "MIN DISTINCT", "MIN_BY", "MODE", "PRODUCT", "QUANTILE", "QUANTILE_CONT",
        "QUANTILE_DISC", "REGR_AVGX", "REGR_AVGY", "REGR_COUNT", "REGR_INTERCEPT", "REGR_R2", "REGR_SLOPE",
        "REGR_SXX", "REGR_SXY", "REGR_SYY", "RESERVOIR_QUANTILE", "SEM", "SKEWNESS", "STDDEV", "STDDEV_POP",
        "STDDEV_SAMP", "STRING_AGG", "SUM", "SUMKAHAN", "SUM_NO_OVERFLOW", "VARIANCE", "VAR_POP", "VAR_SAMP"};
    return words;
}

const QStringList& DuckDBStatementKeywords(bool sorted)
{
    // "dettach" as the host's editor knows it.
    static const QStringList words = {"alter",  "begin",  "call",     "commit", "create", "delete",
                                      "drop",   "end",    "insert",   "rollback", "select", "set",
                                      "start",  "table",  "update",   "attach", "dettach"};
    if (!sorted)
        return words;
    static const QStringList sortedWords = [] {
        QStringList copy = words;
        copy.sort(Qt::CaseSensitive);
        return copy;
    }();
    return sortedWords;
}

QStringList DuckDBFollowingKeywords(int keyword)
{
    switch (keyword) {
    case StatementToken_Alter:
        return {"table"};
    case StatementToken_Attach:
    case StatementToken_Detach:
        return {"database"};
    case StatementToken_Begin:
    case StatementToken_Commit:
    case StatementToken_End:
    case StatementToken_Start:
        return {"transaction"};
    case StatementToken_Create:
    case StatementToken_Drop:
        return {"function", "index", "macro", "macro table", "schema", "sequence", "table", "type", "view"};
    case StatementToken_Delete:
        return {"from"};
    case StatementToken_Insert:
        return {"into"};
    default:
        return {};
    }
}
