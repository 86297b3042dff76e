// SPDX-License-Identifier: GPL-3.0-or-later
// The structure editor: what a person changes, what it comes to, what the database has afterwards.
#include "hf/engine.h"
#include "hf/scintilla.h"
#include "studio/design_parts_page.h"
#include "studio/design_preview.h"
#include "studio/design_sheet.h"
#include "studio/design_tab.h"
#include "studio/object_text.h"
#include "studio/structure_menu.h"
#include "studio/type_text.h"
#include "studio/window_fixture.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QFile>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>

namespace {

using Parts = DesignPartsModel;

void Press(QMessageBox& box, QMessageBox::ButtonRole role)
{
    for (QAbstractButton* button : box.buttons())
        if (box.buttonRole(button) == role) {
            button->click();
            return;
        }
    ADD_FAILURE() << "no such button";
    box.reject();
}

class Design : public Window
{
protected:
    rc::Ptr<HF::I_LDatabase> OpenSample()
    {
        QFile file(QStringLiteral(ORBIS_SOURCE_DIR "/examples/sample.sql"));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return OpenWith(QString::fromUtf8(file.readAll()));
    }

    rc::Ptr<HF::I_LSchemaObject> Find(const rc::Ptr<HF::I_LDatabase>& database, int type, const char* schema,
                                      const char* name)
    {
        const auto owner = database->get_ChildObject(HF::TYPE_SCHEMA, QString::fromUtf8(schema)).Force();
        if (!owner || type == HF::TYPE_SCHEMA)
            return owner;
        return owner->get_ChildObject(type, QString::fromUtf8(name)).Force();
    }

    /// The editor of an object, read.
    DesignTab* Open(const rc::Ptr<HF::I_LDatabase>& database, int type, const char* schema, const char* name)
    {
        const auto object = Find(database, type, schema, name);
        EXPECT_TRUE(object) << name;
        m_window->OpenEditor(QString::fromLatin1(HF::DO_DESIGN), rc::Ref<HF::LTreeItem>(rc::Ptr<HF::LTreeItem>(object)));
        return Ready(qobject_cast<DesignTab*>(m_window->get_Tabs()->currentWidget()));
    }
    DesignTab* Ready(DesignTab* tab)
    {
        EXPECT_TRUE(tab);
        if (!tab)
            return nullptr;
        EXPECT_TRUE(WaitFor([&] { return tab->get_Session()->get_Object() && !tab->get_Session()->IsBusy(); }));
        return tab;
    }

    /// The cell of a part by its name, in the table of its page.
    QModelIndex Cell(DesignTab* tab, int kind, const QString& name, Parts::Field field)
    {
        Parts* model = tab->PageOf(kind)->get_Model();
        for (int row = 0; row < model->rowCount(); ++row)
            if (model->ObjectAt(row)->GetString(PROP_NAME) == name)
                return model->index(row, model->ColumnOf(field));
        ADD_FAILURE() << "no part " << name.toStdString();
        return {};
    }
    void Type(DesignTab* tab, int kind, const QString& name, Parts::Field field, const QString& text)
    {
        EXPECT_TRUE(tab->PageOf(kind)->get_Model()->setData(Cell(tab, kind, name, field), text, Qt::EditRole));
    }
    void Check(DesignTab* tab, const QString& name, Parts::Field field, bool on)
    {
        tab->PageOf(HF::TYPE_FIELD)
            ->get_Model()
            ->setData(Cell(tab, HF::TYPE_FIELD, name, field), on ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
    }
    DesignSession::Object Add(DesignTab* tab, HF::ELObjectType kind)
    {
        return rc::Ref<HF::LModelObject>(tab->PageOf(kind)->Add(kind));
    }

    /// Applies and waits for the end; the report of it.
    HF::LDesignReport Apply(DesignTab* tab)
    {
        HF::LDesignReport result;
        bool ended = false;
        const auto known = QObject::connect(tab->get_Session(), &DesignSession::Applied, tab,
                                            [&](const HF::LDesignReport& report) {
                                                result = report;
                                                ended = true;
                                            });
        tab->Apply();
        EXPECT_TRUE(WaitFor([&] { return ended; }, 60000)) << tab->get_Preview()->Message().toStdString();
        QObject::disconnect(known);
        Ready(tab);
        return result;
    }

    /// The rows of a query, one text a row.
    static QStringList Rows(const rc::Ptr<HF::I_LDatabase>& database, const QString& sql)
    {
        QStringList rows;
        const auto cursor = database->SqlSelect(sql, HF::QUERY_NO_LOG, {}, 1, 2, 1);
        for (bool more = cursor && cursor->FirstRecord(); more; more = cursor->NextRecord())
            rows.append(cursor->get_Column(0)->get_String());
        return rows;
    }
    static QStringList Columns(const rc::Ptr<HF::I_LDatabase>& database, const char* table)
    {
        return Rows(database, QStringLiteral("SELECT concat_ws(' ', column_name, data_type, if(is_nullable, NULL, 'not null'), "
                                             "comment) FROM duckdb_columns() WHERE table_name = '%1' ORDER BY column_index")
                                  .arg(QLatin1String(table)));
    }
    static QStringList Constraints(const rc::Ptr<HF::I_LDatabase>& database, const char* table)
    {
        return Rows(database, QStringLiteral("SELECT constraint_text FROM duckdb_constraints() WHERE table_name = '%1' AND "
                                             "constraint_type <> 'NOT NULL' ORDER BY 1")
                                  .arg(QLatin1String(table)));
    }
};

} // namespace

TEST_F(Design, ATableOfTheSampleBecomesAnotherAndKeepsItsRows)
{
    const auto database = OpenSample();
    ASSERT_TRUE(database);
    const QStringList before = Rows(database, QStringLiteral("SELECT id || name || grams FROM shop.products ORDER BY id"));
    DesignTab* tab = Open(database, HF::TYPE_TABLE, "shop", "products");
    ASSERT_TRUE(tab);
    EXPECT_FALSE(tab->HasChanges());

    Type(tab, HF::TYPE_FIELD, QStringLiteral("grams"), Parts::Name, QStringLiteral("weight"));
    Type(tab, HF::TYPE_FIELD, QStringLiteral("weight"), Parts::Comment, QStringLiteral("in grams"));
    // The type as a person enters it: into the list of the cell's editor.
    QTableView* view = tab->PageOf(HF::TYPE_FIELD)->get_View();
    view->setCurrentIndex(Cell(tab, HF::TYPE_FIELD, QStringLiteral("weight"), Parts::Type));
    view->edit(view->currentIndex());
    auto* types = view->findChild<QComboBox*>();
    ASSERT_TRUE(types && types->findText(QStringLiteral("BigInt")) >= 0);
    types->setCurrentText(QStringLiteral("integer"));
    view->setFocus();
    view->setCurrentIndex(Cell(tab, HF::TYPE_FIELD, QStringLiteral("origin"), Parts::Name));
    Type(tab, HF::TYPE_FIELD, QStringLiteral("origin"), Parts::Default, QStringLiteral("Peru"));
    Check(tab, QStringLiteral("flavours"), Parts::NotNull, false);
    const auto stock = Add(tab, HF::TYPE_FIELD);
    Type(tab, HF::TYPE_FIELD, stock->GetString(PROP_NAME), Parts::Name, QStringLiteral("stock"));
    Type(tab, HF::TYPE_FIELD, QStringLiteral("stock"), Parts::Type, QStringLiteral("decimal(6, 1)"));
    const auto check = Add(tab, HF::TYPE_CHECK);
    EXPECT_FALSE(tab->get_Session()->Preview().problems.isEmpty()); // it has no expression yet
    EXPECT_TRUE(tab->get_Session()->Set(check, PROP_CHECK_EXPRESSION, QStringLiteral("stock >= 0")).isEmpty());
    const auto index = Add(tab, HF::TYPE_INDEX);
    tab->get_Session()->Set(index, PROP_NAME, QStringLiteral("products_origin"));
    tab->get_Session()->Set(index, PROP_COLUMNS, QStringList{QStringLiteral("origin")});
    const auto label = tab->get_Session()->get_Object()->get_Model(HF::TYPE_FIELD, QStringLiteral("label"));
    tab->PageOf(HF::TYPE_FIELD)->Select(label.get());
    tab->PageOf(HF::TYPE_FIELD)->ToggleDropped();

    tab->UpdatePreview();
    EXPECT_EQ(tab->get_Preview()->Message(), QString());
    const QString preview = tab->get_Preview()->Text();
    EXPECT_TRUE(preview.startsWith(u"BEGIN;")) << preview.toStdString();
    for (const char* part : {"weight", "'Peru'", "stock >= 0", "products_origin", "'in grams'"})
        EXPECT_TRUE(preview.contains(QLatin1String(part))) << part << "\n" << preview.toStdString();
    EXPECT_EQ(Rows(database, QStringLiteral("SELECT 1 FROM duckdb_columns() WHERE column_name = 'stock'")).size(), 0);
    EXPECT_EQ(tab->Title(), u"*products");
    const QModelIndex root = m_window->get_TreeModel()->IndexOf(database.get());
    const QPersistentModelIndex tables = Child(Child(root, QStringLiteral("shop")), QStringLiteral("Tables"));
    m_window->get_TreeView()->setCurrentIndex(Child(tables, QStringLiteral("products")));
    const auto weight = tab->get_Session()->get_Object()->get_Model(HF::TYPE_FIELD, QStringLiteral("grams"));
    tab->PageOf(HF::TYPE_FIELD)->Select(weight.get());
    view->scrollToTop();
    Keep("design.png");

    QString asked;
    const ModalWindow<QMessageBox> warning([&](QMessageBox& box) {
        asked = box.informativeText();
        Press(box, QMessageBox::AcceptRole);
    });
    const HF::LDesignReport report = Apply(tab);
    EXPECT_TRUE(report.success) << report.error.toStdString();
    EXPECT_TRUE(asked.contains(u"label")) << asked.toStdString(); // its values are lost

    const QStringList columns = Columns(database, "products");
    EXPECT_TRUE(columns.contains(u"weight INTEGER not null in grams")) << columns.join(u'\n').toStdString();
    EXPECT_TRUE(columns.contains(u"stock DECIMAL(6,1)"));
    EXPECT_TRUE(columns.filter(QStringLiteral("label")).isEmpty());
    EXPECT_EQ(columns.filter(QStringLiteral("price_per_kilo")).size(), 1);
    EXPECT_EQ(Constraints(database, "products").filter(QStringLiteral("stock >= 0")).size(), 1);
    EXPECT_EQ(Rows(database, QStringLiteral("SELECT index_name FROM duckdb_indexes() WHERE table_name = 'products'")),
              QStringList{QStringLiteral("products_origin")});
    EXPECT_EQ(Rows(database, QStringLiteral("SELECT id || name || weight FROM shop.products ORDER BY id")), before);
    EXPECT_FALSE(tab->HasChanges());
    EXPECT_EQ(tab->Title(), u"products");
    EXPECT_TRUE(Cell(tab, HF::TYPE_FIELD, QStringLiteral("weight"), Parts::Type).isValid());
    // The tree has it too.
    Child(Child(Child(Child(Child(root, QStringLiteral("shop")), QStringLiteral("Tables")), QStringLiteral("products")),
                QStringLiteral("Fields")),
          QStringLiteral("weight"));
}

TEST_F(Design, AFailureSaysWhyAndKeepsTheEdits)
{
    const auto database = OpenWith(QStringLiteral("CREATE TABLE t(a INTEGER, b VARCHAR); "
                                                  "INSERT INTO t VALUES (1, 'x'), (NULL, 'y')"));
    ASSERT_TRUE(database);
    DesignTab* tab = Open(database, HF::TYPE_TABLE, "main", "t");
    ASSERT_TRUE(tab);
    Type(tab, HF::TYPE_FIELD, QStringLiteral("b"), Parts::Name, QStringLiteral("text"));
    Check(tab, QStringLiteral("a"), Parts::NotNull, true);
    const HF::LDesignReport failed = Apply(tab);
    EXPECT_FALSE(failed.success);
    const QString message = tab->get_Preview()->Message();
    EXPECT_TRUE(message.contains(u"NOT NULL")) << message.toStdString();
    EXPECT_TRUE(message.contains(u"ALTER TABLE")) << message.toStdString(); // the statement stands below the reason
    EXPECT_TRUE(tab->HasChanges());
    EXPECT_EQ(Columns(database, "t"), QStringList({QStringLiteral("a INTEGER"), QStringLiteral("b VARCHAR")}));

    EXPECT_TRUE(database->SqlExecute(QStringLiteral("DELETE FROM t WHERE a IS NULL")));
    EXPECT_TRUE(Apply(tab).success);
    EXPECT_EQ(Columns(database, "t"), QStringList({QStringLiteral("a INTEGER not null"), QStringLiteral("text VARCHAR")}));
}

TEST_F(Design, RevertTakesEverythingBack)
{
    const auto database = OpenWith(QStringLiteral("CREATE TABLE t(a INTEGER PRIMARY KEY, b VARCHAR UNIQUE, c VARCHAR)"));
    ASSERT_TRUE(database);
    DesignTab* tab = Open(database, HF::TYPE_TABLE, "main", "t");
    ASSERT_TRUE(tab);
    Parts* model = tab->PageOf(HF::TYPE_FIELD)->get_Model();
    Check(tab, QStringLiteral("a"), Parts::Key, false);
    Check(tab, QStringLiteral("c"), Parts::Key, true);
    Check(tab, QStringLiteral("b"), Parts::Unique, false);
    Check(tab, QStringLiteral("a"), Parts::Unique, true);
    Type(tab, HF::TYPE_FIELD, QStringLiteral("c"), Parts::Name, QStringLiteral("d")); // the key follows
    EXPECT_EQ(tab->get_Session()->KeyColumns(), QStringList{QStringLiteral("d")});
    Add(tab, HF::TYPE_FIELD);
    tab->PageOf(HF::TYPE_FIELD)->Select(model->ObjectAt(0).get());
    tab->PageOf(HF::TYPE_FIELD)->ToggleDropped();
    EXPECT_EQ(model->rowCount(), 4);
    EXPECT_TRUE(tab->HasChanges());
    tab->Revert();
    EXPECT_FALSE(tab->HasChanges());
    EXPECT_EQ(tab->get_Preview()->Text(), QString());
    ASSERT_EQ(model->rowCount(), 3);
    EXPECT_EQ(Cell(tab, HF::TYPE_FIELD, QStringLiteral("c"), Parts::Key).data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
    EXPECT_EQ(Cell(tab, HF::TYPE_FIELD, QStringLiteral("b"), Parts::Unique).data(Qt::CheckStateRole).toInt(), Qt::Checked);
    EXPECT_EQ(tab->get_Session()->KeyColumns(), QStringList{QStringLiteral("a")});
}

TEST_F(Design, ANewTableWithKeysAndAForeignKey)
{
    const auto database = OpenWith(QStringLiteral("CREATE TABLE parent(id INTEGER PRIMARY KEY)"));
    ASSERT_TRUE(database);
    m_window->get_StructureMenu()->Create(
        rc::Ref<HF::I_LSchemaObject>(Find(database, HF::TYPE_SCHEMA, "main", "")), HF::TYPE_TABLE);
    DesignTab* tab = Ready(qobject_cast<DesignTab*>(m_window->get_Tabs()->currentWidget()));
    ASSERT_TRUE(tab);
    DesignSession* session = tab->get_Session();
    const auto link = Add(tab, HF::TYPE_LINK);
    session->Set(link, PROP_LINK_PARENT_TABLE, QStringLiteral("parent"));
    EXPECT_EQ(link->GetStringList(PROP_KEY_COLUMNS), QStringList{QStringLiteral("id")}); // the usual one
    session->Set(rc::Ref<HF::LModelObject>(session->get_Object()), PROP_NAME, QStringLiteral("child"));
    Type(tab, HF::TYPE_FIELD, QStringLiteral("id"), Parts::Type, QStringLiteral("bigint"));
    Check(tab, QStringLiteral("id"), Parts::Key, true);
    const auto parent = Add(tab, HF::TYPE_FIELD);
    session->Set(parent, PROP_NAME, QStringLiteral("of"));
    session->SetType(parent, QStringLiteral("INTEGER"));
    session->Set(link, PROP_LINK_COLUMNS, QStringList{QStringLiteral("of")});
    Check(tab, QStringLiteral("of"), Parts::Unique, true);
    session->Set(parent, PROP_NAME, QStringLiteral("parent")); // foreign key and unique follow
    const auto twice = Add(tab, HF::TYPE_METHOD);
    Type(tab, HF::TYPE_METHOD, twice->GetString(PROP_NAME), Parts::Default, QStringLiteral("id * 2"));
    session->Set(twice, PROP_NAME, QStringLiteral("twice"));
    session->SetType(twice, QStringLiteral("BIGINT"));
    const HF::LDesignReport report = Apply(tab);
    EXPECT_TRUE(report.success) << report.error.toStdString() << tab->get_Preview()->Text().toStdString();
    EXPECT_EQ(Columns(database, "child"), QStringList({QStringLiteral("id BIGINT not null"), QStringLiteral("parent INTEGER"),
                                                       QStringLiteral("twice BIGINT")}));
    EXPECT_EQ(Constraints(database, "child"),
              QStringList({QStringLiteral("FOREIGN KEY (parent) REFERENCES parent(id)"), QStringLiteral("PRIMARY KEY(id)"),
                           QStringLiteral("UNIQUE(parent)")}));
    EXPECT_EQ(tab->Title(), u"child");
    const QModelIndex root = m_window->get_TreeModel()->IndexOf(database.get());
    Child(Child(Child(root, QStringLiteral("main")), QStringLiteral("Tables")), QStringLiteral("child"));
}

TEST_F(Design, ANewTableOfMainMayBeTemporary)
{
    const auto database = OpenWith(QStringLiteral("CREATE SCHEMA other"));
    ASSERT_TRUE(database);
    const auto make = [&](const char* schema) {
        m_window->get_StructureMenu()->Create(rc::Ref<HF::I_LSchemaObject>(Find(database, HF::TYPE_SCHEMA, schema, "")), HF::TYPE_TABLE);
        return Ready(qobject_cast<DesignTab*>(m_window->get_Tabs()->currentWidget()));
    };
    DesignTab* elsewhere = make("other");
    ASSERT_TRUE(elsewhere && elsewhere->get_Sheet()->RowOf(PROP_TEMPORARY));
    EXPECT_FALSE(elsewhere->get_Sheet()->RowOf(PROP_TEMPORARY)->flags() & Qt::ItemIsUserCheckable);
    DesignTab* tab = make("main");
    ASSERT_TRUE(tab);
    tab->get_Session()->Set(rc::Ref<HF::LModelObject>(tab->get_Session()->get_Object()), PROP_NAME, QStringLiteral("brief"));
    tab->get_Sheet()->RowOf(PROP_TEMPORARY)->setCheckState(1, Qt::Checked);
    Add(tab, HF::TYPE_INDEX);
    tab->get_Session()->Set(rc::Ref<HF::LModelObject>(tab->get_Session()->get_Object()->get_Models(HF::TYPE_INDEX)[0]), PROP_COLUMNS, QStringList{QStringLiteral("id")});
    tab->get_Session()->Set(rc::Ref<HF::LModelObject>(tab->get_Session()->get_Object()), PROP_COMMENT, QStringLiteral("not for long"));
    const HF::LDesignReport report = Apply(tab);
    EXPECT_TRUE(report.success) << report.error.toStdString() << tab->get_Preview()->Text().toStdString();
    EXPECT_EQ(Rows(database, QStringLiteral("SELECT table_name || comment || database_name || index_count FROM duckdb_tables()")),
              QStringList{QStringLiteral("briefnot for longtemp1")});
    EXPECT_EQ(tab->Title(), u"brief");
    EXPECT_FALSE(tab->get_Sheet()->RowOf(PROP_TEMPORARY)->flags() & Qt::ItemIsUserCheckable); // it stays so
}

TEST_F(Design, ViewsTakeTextThatFitsAndFollowTheirName)
{
    const auto database = OpenWith(QStringLiteral("CREATE VIEW v AS SELECT 1 AS one"));
    ASSERT_TRUE(database);
    DesignTab* tab = Open(database, HF::TYPE_VIEW, "main", "v");
    ASSERT_TRUE(tab && tab->get_SqlEditor());
    tab->get_SqlEditor()->setText(QStringLiteral("CREATE VIEW w AS SELECT 2 AS two"));
    tab->Apply();
    EXPECT_FALSE(tab->get_Preview()->Message().isEmpty()); // another name than the view's
    EXPECT_EQ(tab->get_SqlEditor()->text(), u"CREATE VIEW w AS SELECT 2 AS two");
    EXPECT_EQ(Columns(database, "v"), QStringList{QStringLiteral("one INTEGER")});
    tab->get_SqlEditor()->setText(QStringLiteral("CREATE VIEW v AS SELECT 2 AS two"));
    EXPECT_TRUE(Apply(tab).success);
    EXPECT_EQ(Columns(database, "v"), QStringList{QStringLiteral("two INTEGER")});
    tab->get_Session()->Set(rc::Ref<HF::LModelObject>(tab->get_Session()->get_Object()), PROP_NAME, QStringLiteral("w"));
    EXPECT_TRUE(tab->get_SqlEditor()->text().contains(u"VIEW w ")) << tab->get_SqlEditor()->text().toStdString();
    EXPECT_TRUE(Apply(tab).success);
    EXPECT_EQ(Columns(database, "w"), QStringList{QStringLiteral("two INTEGER")});
    EXPECT_TRUE(Columns(database, "v").isEmpty());
}

TEST_F(Design, NewViewsAndSequencesAreThereWhenTheyAreApplied)
{
    const auto database = OpenWith(QStringLiteral("CREATE SCHEMA \"odd schema\""));
    ASSERT_TRUE(database);
    const auto make = [&](HF::ELObjectType type, const QString& name) {
        const auto schema = Find(database, HF::TYPE_SCHEMA, "odd schema", "");
        m_window->get_StructureMenu()->Create(rc::Ref<HF::I_LSchemaObject>(schema), type);
        DesignTab* tab = Ready(qobject_cast<DesignTab*>(m_window->get_Tabs()->currentWidget()));
        if (tab)
            tab->get_Session()->Set(rc::Ref<HF::LModelObject>(tab->get_Session()->get_Object()), PROP_NAME, name);
        return tab;
    };
    DesignTab* view = make(HF::TYPE_VIEW, QStringLiteral("the view"));
    ASSERT_TRUE(view);
    EXPECT_TRUE(view->get_SqlEditor()->text().contains(u"\"the view\"")) << view->get_SqlEditor()->text().toStdString();
    EXPECT_TRUE(Apply(view).success) << view->get_Preview()->Message().toStdString();
    DesignTab* sequence = make(HF::TYPE_SEQUENCE, QStringLiteral("the \"sequence\""));
    ASSERT_TRUE(sequence);
    sequence->get_Sheet()->RowOf(PROP_SEQ_START)->setText(1, QStringLiteral("50"));
    EXPECT_TRUE(Apply(sequence).success) << sequence->get_Preview()->Message().toStdString();
    EXPECT_EQ(Rows(database, QStringLiteral("SELECT view_name FROM duckdb_views() WHERE schema_name = 'odd schema' UNION "
                                            "SELECT sequence_name || start_value FROM duckdb_sequences() ORDER BY 1")),
              QStringList({QStringLiteral("the \"sequence\"50"), QStringLiteral("the view")}));
    EXPECT_TRUE(Find(database, HF::TYPE_SEQUENCE, "odd schema", "the \"sequence\""));
}

TEST_F(Design, SheetsOfMacrosSequencesAndSchemas)
{
    const auto database = OpenWith(QStringLiteral("CREATE SEQUENCE s START 5; CREATE MACRO twice(x) AS x * 2; CREATE SCHEMA other"));
    ASSERT_TRUE(database);
    DesignTab* tab = Open(database, HF::TYPE_SEQUENCE, "main", "s");
    ASSERT_TRUE(tab && tab->get_Sheet()->RowOf(PROP_SEQ_INCREMENT));
    tab->get_Sheet()->RowOf(PROP_SEQ_INCREMENT)->setText(1, QStringLiteral("10"));
    tab->get_Sheet()->RowOf(PROP_SEQ_CYCLE)->setCheckState(1, Qt::Checked);
    tab->get_Sheet()->RowOf(PROP_SEQ_MAX)->setText(1, QStringLiteral("100"));
    const ModalWindow<QMessageBox> warning([](QMessageBox& box) { Press(box, QMessageBox::AcceptRole); });
    EXPECT_TRUE(Apply(tab).success);
    EXPECT_TRUE(warning.WasSeen()); // it begins anew
    EXPECT_EQ(Rows(database, QStringLiteral("SELECT concat_ws(' ', increment_by, max_value, cycle) FROM duckdb_sequences()")),
              QStringList{QStringLiteral("10 100 true")});

    DesignTab* macro = Open(database, HF::TYPE_FUNCTION, "main", "twice");
    ASSERT_TRUE(macro && macro->get_SqlEditor());
    QString text = macro->get_SqlEditor()->text();
    EXPECT_TRUE(text.contains(u"* 2")) << text.toStdString();
    macro->get_SqlEditor()->setText(text.replace(QStringLiteral("* 2"), QStringLiteral("* 3")));
    macro->get_Sheet()->RowOf(PROP_COMMENT)->setText(1, QStringLiteral("thrice"));
    EXPECT_TRUE(Apply(macro).success) << macro->get_Preview()->Text().toStdString();
    EXPECT_EQ(Rows(database, QStringLiteral("SELECT twice(5) || comment FROM duckdb_functions() WHERE function_name = 'twice'")),
              QStringList{QStringLiteral("15thrice")});

    DesignTab* schema = Open(database, HF::TYPE_SCHEMA, "other", "");
    ASSERT_TRUE(schema && schema->get_Sheet()->RowOf(PROP_NAME));
    EXPECT_FALSE(schema->get_Sheet()->RowOf(PROP_NAME)->flags() & Qt::ItemIsEditable); // the engine cannot rename it
}

TEST_F(Design, ColumnsOfAnIndexAreChosenInTheirOrder)
{
    const auto database = OpenWith(QStringLiteral("CREATE TABLE t(a INTEGER, b INTEGER, c INTEGER); CREATE INDEX i ON t(b)"));
    ASSERT_TRUE(database);
    DesignTab* tab = Open(database, HF::TYPE_TABLE, "main", "t");
    ASSERT_TRUE(tab);
    DesignPartsPage* page = tab->PageOf(HF::TYPE_INDEX);
    page->get_View()->setCurrentIndex(page->get_Model()->index(0, 0));
    const ModalWindow<QDialog> dialog([](QDialog& box) {
        auto* list = box.findChild<QListWidget*>();
        ASSERT_TRUE(list);
        EXPECT_EQ(list->item(0)->text(), u"b"); // what is chosen comes first
        list->findItems(QStringLiteral("a"), Qt::MatchExactly).first()->setCheckState(Qt::Checked);
        box.accept();
    });
    page->get_Sheet()->Choose(PROP_COLUMNS);
    EXPECT_TRUE(dialog.WasSeen());
    page->get_Sheet()->RowOf(PROP_UNIQUE)->setCheckState(1, Qt::Checked);
    EXPECT_TRUE(Apply(tab).success) << tab->get_Preview()->Message().toStdString();
    EXPECT_EQ(Rows(database, QStringLiteral("SELECT is_unique || ' ' || expressions FROM duckdb_indexes()")),
              QStringList{QStringLiteral("true [b, a]")});
}

TEST_F(Design, DroppingFromTheTreeSaysWhatGoesWithIt)
{
    const auto database = OpenWith(QStringLiteral("CREATE SEQUENCE s; CREATE TABLE t(a INTEGER DEFAULT nextval('s')); "
                                                  "INSERT INTO t VALUES (7); CREATE TABLE u(b INTEGER)"));
    ASSERT_TRUE(database);
    StructureMenu* menu = m_window->get_StructureMenu();
    const auto drop = [&](int type, const char* name, QMessageBox::ButtonRole answer) {
        QString asked;
        bool ended = false;
        const ModalWindow<QMessageBox> question([&](QMessageBox& box) {
            asked = box.text() + u'\n' + box.informativeText() + u'\n' + box.detailedText();
            Press(box, answer);
            ended = answer == QMessageBox::RejectRole;
        });
        const auto known = QObject::connect(menu, &StructureMenu::Changed, menu, [&] { ended = true; });
        menu->Drop({rc::Ref<HF::I_LSchemaObject>(Find(database, type, "main", name))});
        EXPECT_TRUE(WaitFor([&] { return ended; }));
        QObject::disconnect(known);
        return asked;
    };
    const QString tables = QStringLiteral("SELECT table_name FROM duckdb_tables() ORDER BY 1");
    const QString asked = drop(HF::TYPE_SEQUENCE, "s", QMessageBox::RejectRole);
    EXPECT_TRUE(asked.contains(u"main.t")) << asked.toStdString();
    EXPECT_TRUE(asked.contains(u"CASCADE")) << asked.toStdString();
    EXPECT_EQ(Rows(database, tables), QStringList({QStringLiteral("t"), QStringLiteral("u")}));
    drop(HF::TYPE_SEQUENCE, "s", QMessageBox::AcceptRole);
    EXPECT_EQ(Rows(database, tables), QStringList{QStringLiteral("u")});
    drop(HF::TYPE_TABLE, "u", QMessageBox::AcceptRole);
    EXPECT_TRUE(Rows(database, tables).isEmpty());
    EXPECT_EQ(Find(database, HF::TYPE_TABLE, "main", "u").get(), nullptr);
}

TEST_F(Design, SeveralObjectsGoTogetherOrNotAtAll)
{
    const auto database = OpenWith(QStringLiteral("CREATE TABLE t(a INTEGER, b INTEGER, c INTEGER, d INTEGER AS (a + 1)); INSERT INTO t(a, b, c) VALUES (1, 2, 3); "
                                                  "CREATE TABLE u(x INTEGER, y INTEGER, CHECK(y > 0)); CREATE VIEW v AS SELECT 1 AS one"));
    ASSERT_TRUE(database);
    const QModelIndex root = m_window->get_TreeModel()->IndexOf(database.get());
    const QModelIndex main = Child(root, QStringLiteral("main"));
    const auto column = [&](const char* table, const char* name) {
        return Child(Child(Child(Child(main, QStringLiteral("Tables")), QLatin1String(table)), QStringLiteral("Fields")), QLatin1String(name));
    };
    // As a person does: a menu on the selection, then the question.
    QString asked;
    QString told;
    const auto dropSelected = [&](const QList<QModelIndex>& rows, QMessageBox::ButtonRole answer) {
        QItemSelectionModel* selection = m_window->get_TreeView()->selectionModel();
        selection->clear();
        for (const QModelIndex& row : rows)
            selection->select(row, QItemSelectionModel::Select);
        RcList<HF::LTreeItem> items;
        for (const QModelIndex& row : selection->selectedRows())
            items.append(rc::Ref<HF::LTreeItem>(m_window->get_TreeModel()->ItemAt(row)));
        EXPECT_EQ(items.size(), rows.size());
        asked.clear();
        told.clear();
        bool ended = false;
        QMenu menu;
        m_window->get_StructureMenu()->AddActions(menu, items.first(), items);
        ASSERT_EQ(menu.actions().size(), 1);
        const auto known = QObject::connect(m_window->get_StructureMenu(), &StructureMenu::Changed, m_window.get(), [&](const auto&, const QString& problem) {
            told = problem;
            ended = true;
        });
        const ModalWindow<QMessageBox> question([&](QMessageBox& box) {
            asked = box.text() + u'\n' + box.informativeText();
            if (box.buttons().size() == 1)
                return box.accept(); // nothing but what stands against it
            Press(box, answer);
            ended = ended || answer == QMessageBox::RejectRole;
        });
        menu.actions().first()->trigger();
        EXPECT_TRUE(WaitFor([&] { return ended; }));
        WaitFor([&] { return !QApplication::activeModalWidget(); });
        QObject::disconnect(known);
    };
    dropSelected({column("t", "b"), column("t", "c")}, QMessageBox::RejectRole);
    EXPECT_TRUE(asked.contains(u"b, c")) << asked.toStdString(); // their values are lost
    EXPECT_EQ(Columns(database, "t").size(), 4);
    dropSelected({column("t", "b"), column("t", "c")}, QMessageBox::AcceptRole);
    EXPECT_EQ(told, QString());
    EXPECT_EQ(Columns(database, "t"), QStringList({QStringLiteral("a INTEGER"), QStringLiteral("d INTEGER")}));
    EXPECT_EQ(Rows(database, QStringLiteral("SELECT a + d FROM t")), QStringList{QStringLiteral("3")});
    // A check stands against one of them: neither goes.
    dropSelected({column("u", "x"), column("u", "y")}, QMessageBox::AcceptRole);
    EXPECT_FALSE(told.isEmpty());
    EXPECT_EQ(Columns(database, "u").size(), 2);
    dropSelected({Child(Child(main, QStringLiteral("Tables")), QStringLiteral("u")), Child(Child(main, QStringLiteral("Views")), QStringLiteral("v"))},
                 QMessageBox::AcceptRole);
    EXPECT_EQ(told, QString());
    EXPECT_EQ(Rows(database, QStringLiteral("SELECT table_name FROM duckdb_tables() UNION ALL SELECT view_name FROM duckdb_views() WHERE NOT internal")),
              QStringList{QStringLiteral("t")});
    // What cannot be dropped is not offered.
    QMenu menu;
    m_window->get_StructureMenu()->AddActions(menu, rc::Ref<HF::LTreeItem>(rc::Ptr<HF::LTreeItem>(database)),
                                              {rc::Ref<HF::LTreeItem>(rc::Ptr<HF::LTreeItem>(database)), rc::Ref<HF::LTreeItem>(m_window->get_TreeModel()->ItemAt(main))});
    EXPECT_TRUE(menu.isEmpty());
}

TEST_F(Design, ANewMacroComesFromItsDialog)
{
    const auto database = OpenWith(QStringLiteral("CREATE SCHEMA \"odd schema\""));
    ASSERT_TRUE(database);
    const QModelIndex root = m_window->get_TreeModel()->IndexOf(database.get());
    const QModelIndex schema = Child(root, QStringLiteral("odd schema"));
    m_window->get_TreeView()->setCurrentIndex(schema);
    QMenu menu;
    m_window->get_StructureMenu()->AddActions(menu, rc::Ref<HF::LTreeItem>(m_window->get_TreeModel()->ItemAt(schema)));
    QAction* entry = nullptr;
    for (QAction* action : menu.actions().first()->menu()->actions())
        if (action->text() == u"New Macro...")
            entry = action;
    ASSERT_TRUE(entry);
    const ModalWindow<QDialog> dialog([](QDialog& box) {
        EXPECT_EQ(box.findChild<QComboBox*>(QStringLiteral("schema"))->currentText(), u"odd schema");
        box.findChild<QLineEdit*>(QStringLiteral("name"))->setText(QStringLiteral("my macro"));
        auto* const body = box.findChild<HF::LScintilla*>();
        ASSERT_TRUE(body);
        body->setText(QStringLiteral("(1 + 41)"));
        Keep("new_macro.png", box);
        box.findChild<QPushButton*>(QStringLiteral("apply"))->click();
    });
    entry->trigger();
    EXPECT_TRUE(dialog.WasSeen());
    EXPECT_EQ(Rows(database, QStringLiteral("SELECT \"odd schema\".\"my macro\"()")), QStringList{QStringLiteral("42")});
    // The tree shows it, selected.
    EXPECT_TRUE(WaitFor([&] { return m_window->get_TreeView()->currentIndex().data().toString().startsWith(u"my macro"); }))
        << m_window->get_TreeView()->currentIndex().data().toString().toStdString();
}

TEST_F(Design, TheTreeOffersWhatAnItemAllows)
{
    const auto database = OpenWith(QStringLiteral("CREATE TABLE t(a INTEGER); CREATE VIEW v AS SELECT a FROM t"));
    ASSERT_TRUE(database);
    const auto texts = [&](const rc::Ptr<HF::LTreeItem>& item) {
        QMenu menu;
        m_window->get_StructureMenu()->AddActions(menu, rc::Ref<HF::LTreeItem>(item));
        QStringList found;
        for (const QAction* action : menu.actions())
            found.append(action->menu() ? QStringLiteral("%1:%2").arg(action->text()).arg(action->menu()->actions().size())
                                        : action->text());
        return found.join(u'|');
    };
    const auto table = Find(database, HF::TYPE_TABLE, "main", "t");
    const auto view = Find(database, HF::TYPE_VIEW, "main", "v");
    EXPECT_EQ(texts(database), u"Design|New Schema...");
    EXPECT_EQ(texts(Find(database, HF::TYPE_SCHEMA, "main", "")), u"New:4|Design|Drop...");
    EXPECT_EQ(texts(table), u"New:6|Rename...|Drop...");
    EXPECT_EQ(texts(table->get_ChildList(HF::TYPE_INDEX)), u"New Index...");
    EXPECT_EQ(texts(table->get_ChildObject(HF::TYPE_FIELD, QStringLiteral("a")).Force()), u"Design|Rename...|Drop...");
    EXPECT_EQ(texts(view), u"Rename...|Drop...");
    EXPECT_EQ(texts(view->get_ChildObject(HF::TYPE_FIELD, QStringLiteral("a")).Force()), QString()); // a view's own
    EXPECT_EQ(texts(Find(database, HF::TYPE_SCHEMA, "information_schema", "")), QString());

    // A rename reaches the editor that is open, as long as nothing is pending there.
    DesignTab* tab = Open(database, HF::TYPE_TABLE, "main", "t");
    const auto column = Find(database, HF::TYPE_TABLE, "main", "t")->get_ChildObject(HF::TYPE_FIELD, QStringLiteral("a")).Force();
    EXPECT_TRUE(database->SqlExecute(QStringLiteral("DROP VIEW v")));
    m_window->get_StructureMenu()->Rename(rc::Ref<HF::I_LSchemaObject>(column), QStringLiteral("b"));
    Parts* model = tab->PageOf(HF::TYPE_FIELD)->get_Model();
    EXPECT_TRUE(WaitFor([&] { return model->rowCount() == 1 && model->index(0, 0).data().toString() == u"b"; }, 10000));
    EXPECT_EQ(Columns(database, "t"), QStringList{QStringLiteral("b INTEGER")});
}

TEST_F(Design, AClosingTabAsksAboutItsEdits)
{
    const auto database = OpenWith(QStringLiteral("CREATE TABLE t(a INTEGER)"));
    ASSERT_TRUE(database);
    DesignTab* tab = Open(database, HF::TYPE_TABLE, "main", "t");
    ASSERT_TRUE(tab);
    QTabWidget* tabs = m_window->get_Tabs();
    const int count = tabs->count();
    Type(tab, HF::TYPE_FIELD, QStringLiteral("a"), Parts::Comment, QStringLiteral("c"));
    {
        const ModalWindow<QMessageBox> question([](QMessageBox& box) { Press(box, QMessageBox::NoRole); });
        emit tabs->tabCloseRequested(tabs->indexOf(tab));
        EXPECT_TRUE(question.WasSeen());
    }
    EXPECT_EQ(tabs->count(), count);
    const ModalWindow<QMessageBox> question([](QMessageBox& box) { Press(box, QMessageBox::YesRole); });
    emit tabs->tabCloseRequested(tabs->indexOf(tab));
    EXPECT_TRUE(question.WasSeen());
    EXPECT_EQ(tabs->count(), count - 1);
}

TEST_F(Design, TheWindowLivesWhileALargeTableIsMadeAnew)
{
    const auto database = OpenWith(QStringLiteral("CREATE TABLE t AS SELECT range AS a, 'row ' || range AS b FROM range(1000000)"));
    ASSERT_TRUE(database);
    DesignTab* tab = Open(database, HF::TYPE_TABLE, "main", "t");
    ASSERT_TRUE(tab);
    tab->get_Session()->Set(Add(tab, HF::TYPE_CHECK), PROP_CHECK_EXPRESSION, QStringLiteral("a >= 0"));
    int ticks = 0;
    QTimer clock;
    QObject::connect(&clock, &QTimer::timeout, &clock, [&] { ticks += tab->get_Session()->IsBusy(); });
    clock.start(10);
    EXPECT_TRUE(Apply(tab).success);
    EXPECT_GT(ticks, 5);
    EXPECT_EQ(Rows(database, QStringLiteral("SELECT count(*) FROM t")), QStringList{QStringLiteral("1000000")});
}

TEST_F(Design, EditsAndTheirPreviewDoNotWaitForARunningQuery)
{
    const auto database = OpenWith(QStringLiteral("CREATE TABLE t(a INTEGER, b VARCHAR); CREATE INDEX i ON t(b); "
                                                  "CREATE TABLE u(c INTEGER PRIMARY KEY)"));
    ASSERT_TRUE(database);
    DesignTab* tab = Open(database, HF::TYPE_TABLE, "main", "t");
    ASSERT_TRUE(tab);
    SqlEditorTab* query = m_window->OpenSqlTab(
        database, QStringLiteral("SELECT sum(a.range * b.range) FROM range(1000000) a, range(1000000) b"));
    query->RunAll();
    WaitFor([] { return false; }, 500);
    ASSERT_TRUE(query->get_Runner()->IsRunning());
    // Were the session asked for anything, this would not come back before the query ends.
    Type(tab, HF::TYPE_FIELD, QStringLiteral("a"), Parts::Type, QStringLiteral("BIGINT"));
    Type(tab, HF::TYPE_FIELD, QStringLiteral("b"), Parts::Name, QStringLiteral("order"));
    Check(tab, QStringLiteral("a"), Parts::Key, true);
    tab->get_Session()->Set(Add(tab, HF::TYPE_LINK), PROP_LINK_PARENT_TABLE, QStringLiteral("u"));
    Add(tab, HF::TYPE_FIELD);
    tab->UpdatePreview();
    EXPECT_TRUE(tab->get_Preview()->Text().contains(u"BigInt")) << tab->get_Preview()->Text().toStdString();
    EXPECT_TRUE(query->get_Runner()->IsRunning());
    query->Stop();
    EXPECT_TRUE(WaitFor([&] { return !query->get_Runner()->IsRunning(); }));
}

TEST_F(Design, TypesAreReadAsPeopleWriteThem)
{
    const auto database = OpenWith(QStringLiteral("CREATE TYPE mood AS ENUM ('a'); CREATE TABLE t(x INTEGER)"));
    ASSERT_TRUE(database);
    struct Case
    {
        const char* text;
        const char* shown;
        const char* engine;
    };
    DesignTab* tab = Open(database, HF::TYPE_TABLE, "main", "t");
    ASSERT_TRUE(tab);
    const Case cases[] = {
        {"varchar", "VarChar", "VARCHAR"},
        {" DECIMAL( 8 ,2) ", "Decimal(8, 2)", "DECIMAL(8,2)"},
        {"numeric(5)", "Decimal(5, 0)", "DECIMAL(5,0)"},
        {"integer[]", "Integer[]", "INTEGER[]"},
        {"Integer[3]", "Integer[3]", "INTEGER[3]"},
        {"decimal(4,1)[][2]", "decimal(4,1)[][2]", "DECIMAL(4,1)[][2]"},
        {"struct(a INTEGER, \"b c\" VARCHAR[])", "Struct(a INTEGER, \"b c\" VARCHAR[])", "STRUCT(a INTEGER, \"b c\" VARCHAR[])"},
        {"MAP(varchar, integer)", "Map(varchar, integer)", "MAP(VARCHAR, INTEGER)"},
        {"enum('x', 'y')", "Enum('x', 'y')", "ENUM('x', 'y')"},
        {"mood", "mood", "ENUM('a')"},
        {"timestamp with time zone", "Timestamp With Time Zone", "TIMESTAMP WITH TIME ZONE"},
    };
    int number = 0;
    for (const Case& c : cases) {
        const auto column = Add(tab, HF::TYPE_FIELD);
        tab->get_Session()->Set(column, PROP_NAME, QStringLiteral("c%1").arg(++number));
        tab->get_Session()->SetType(column, QString::fromUtf8(c.text));
        EXPECT_EQ(FieldTypeText(*column), QString::fromUtf8(c.shown)) << c.text;
    }
    const HF::LDesignReport report = Apply(tab);
    ASSERT_TRUE(report.success) << report.error.toStdString();
    number = 0;
    for (const Case& c : cases)
        EXPECT_EQ(Rows(database, QStringLiteral("SELECT data_type FROM duckdb_columns() WHERE column_name = 'c%1'").arg(++number)),
                  QStringList{QString::fromUtf8(c.engine)})
            << c.text;
}
