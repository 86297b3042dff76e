// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalog/index_parser.h"

namespace {
const QString Pattern = QStringLiteral("CREATE [ UNIQUE ] INDEX %INDEX ON %NAME1 [ . %NAME2 ] ( #COLUMNS @STOP");
}

orbDuckDB_IndexParser::orbDuckDB_IndexParser() : LParser(Pattern) {}

QStringList orbDuckDB_IndexParser::ReadList()
{
    QStringList items;
    int parentheses = 0;
    int braces = 0;
    int brackets = 0;
    qsizetype start = TokenStart();
    while (!AtEnd()) {
        const QString& token = Token();
        if (token == u"`" || token == u"\"" || token == u"'") {
            ReadExpressionUntilToken(QString(token));
        } else if (token == u"[") {
            ++brackets;
        } else if (token == u"]") {
            --brackets;
        } else if (token == u"{") {
            ++braces;
        } else if (token == u"}") {
            --braces;
        } else if (token == u"(") {
            ++parentheses;
        } else if (token == u")") {
            if (parentheses == 0) {
                items.append(Text().mid(start, TokenStart() - start));
                return items;
            }
            --parentheses;
        } else if (token == u"," && parentheses == 0 && braces == 0 && brackets == 0) {
            items.append(Text().mid(start, TokenStart() - start));
            NextToken();
            start = TokenStart();
            continue;
        }
        NextToken();
    }
    return items;
}
