// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/commands.h"
#include "cli/exit_code.h"
#include "cli/host_session.h"
#include "cli/json_writer.h"

#include <memory>

#include <unistd.h>

namespace orbis {

namespace {

QString KindWord(HF::ELDbObjType kind)
{
    switch (kind) {
    case HF::DBOBJ_FIELD: return QStringLiteral("field");
    case HF::DBOBJ_FUNCTION: return QStringLiteral("function");
    case HF::DBOBJ_SCHEMA: return QStringLiteral("schema");
    case HF::DBOBJ_SEQUENCE: return QStringLiteral("sequence");
    case HF::DBOBJ_TABLE: return QStringLiteral("table");
    case HF::DBOBJ_TYPE: return QStringLiteral("type");
    case HF::DBOBJ_VIEW: return QStringLiteral("view");
    case HF::DBOBJ_INDEX: return QStringLiteral("index");
    default: return QStringLiteral("unknown");
    }
}

void WriteJson(const QList<HF::LIdent>& idents, Output& output)
{
    JsonWriter json(output);
    json.BeginArray();
    for (const HF::LIdent& ident : idents) {
        json.BreakLine();
        json.BeginArray();
        for (const HF::LIdent::Element& element : ident.get_Elements()) {
            json.BeginObject();
            json.Key(u"kind");
            json.Number(static_cast<qint64>(element.type));
            json.Key(u"name");
            json.Text(element.name);
            json.EndObject();
        }
        json.EndArray();
    }
    json.EndArray();
    json.Finish();
}

} // namespace

int RunIdents(const CommandLine& line)
{
    const std::unique_ptr<HostSession> session = HostSession::Load(line);
    if (!session)
        return ExitCannotOpen;
    const rc::Ptr<HF::I_LDatabase> database = session->Open(line.arguments[0]);
    if (!database)
        return ExitCannotOpen;
    const QList<HF::LIdent> idents = line.Has(QStringLiteral("system")) ? database->get_SystemIdents().Force()
                                                                        : database->get_Idents().Force();
    Output output(STDOUT_FILENO);
    if (line.Has(QStringLiteral("json"))) {
        WriteJson(idents, output);
    } else {
        for (const HF::LIdent& ident : idents)
            output.Write(QStringLiteral("%1\t%2\n").arg(KindWord(ident.get_Type()), ident.get_FullName()));
    }
    return FinishOutput(output);
}

} // namespace orbis
