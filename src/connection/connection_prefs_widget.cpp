// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/connection_prefs_widget.h"

#include "uik/ui.h"

#include <QIntValidator>
#include <QLineEdit>

#include <limits>

namespace {

QLineEdit* NamedField(QWidget* parent, const char* name)
{
    auto* field = new QLineEdit(parent);
    field->setObjectName(QLatin1String(name));
    return field;
}

/// Whole numbers from one, in plain digits: the stored text is read as a
/// number without regard to the user's language.
void AcceptNumbersOnly(QLineEdit* field)
{
    auto* validator = new QIntValidator(1, std::numeric_limits<int>::max(), field);
    QLocale plain = QLocale::c();
    plain.setNumberOptions(QLocale::RejectGroupSeparator | QLocale::OmitGroupSeparator);
    validator->setLocale(plain);
    field->setValidator(validator);
}

} // namespace

orbDuckDB_LocalConnectionPrefsWidget::orbDuckDB_LocalConnectionPrefsWidget(const rc::Ref<HF::I_LConnection>& connection,
                                                                           QWidget* parent)
    : QWidget(parent),
      m_connection(connection),
      m_defaultExtension(NamedField(this, "defaultExtension")),
      m_threads(NamedField(this, "threads")),
      m_memoryLimit(NamedField(this, "memoryLimit")),
      m_pivotLimit(NamedField(this, "pivotLimit"))
{
    for (QLineEdit* field : {m_threads.data(), m_memoryLimit.data(), m_pivotLimit.data()})
        field->setPlaceholderText(QObject::tr("Default"));
    AcceptNumbersOnly(m_threads);
    AcceptNumbersOnly(m_pivotLimit);

    const auto bound = [](QLineEdit* field, const char* key, const QVariant& otherwise) {
        return weft::ui_item(field) | uik::settings_entry(QLatin1String(key), otherwise);
    };
    const QString memoryTip = QObject::tr(
        "The maximum memory of the system (e.g., 1GB). Expected units: KB, MB, GB, TB, KiB, MiB, GiB or TiB");
    weft::ui_item()
        .set_layout(weft::vlayout({
            weft::label_bold(QObject::tr("DuckDB Engine Preferences")),
            weft::hline(),
            weft::form({
                weft::row(QObject::tr("Default database extension:"),
                          bound(m_defaultExtension, "/DuckDB/DefaultExtension", QStringLiteral("duckdb"))),
                weft::row(QObject::tr("Threads:"),
                          bound(m_threads, "/DuckDB/Threads", QString()) |
                              uik::tip(QObject::tr("The number of total threads used by the system"))),
                weft::row(QObject::tr("Memory limit:"),
                          bound(m_memoryLimit, "/DuckDB/MemoryLimit", QString()) | uik::tip(memoryTip)),
                weft::row(QObject::tr("Pivot limit:"),
                          bound(m_pivotLimit, "/DuckDB/PivotLimit", QString()) |
                              uik::tip(QObject::tr("The maximum number of pivot columns in a pivot statement"))),
            }),
            weft::expander(),
        }))
        .apply_to(this);
}
