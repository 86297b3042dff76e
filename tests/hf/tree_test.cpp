// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/fake_database.h"
#include "uik/settings.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using namespace HF;

struct Recorder : LObserver
{
    void ChildrenChanged(const rc::Ref<LTreeItem>& item) override { events += "children of " + item->get_Name() + ";"; }
    void NameChanged(const rc::Ref<LTreeItem>& item) override { events += "name " + item->get_Name() + ";"; }
    void PropertyChanged(const rc::Ref<LTreeItem>&, int property) override
    {
        events += QString::number(property) + ";";
    }
    QString Take() { return std::exchange(events, {}); }
    QString events;
};

TEST(Tree, TellsObserversOfChildrenNamesAndProperties)
{
    const auto item = rc::make<fake::Schema>();
    item->AssignName("s");
    auto observer = rc::make<Recorder>();
    observer->AttachSubjectSilent(item);
    observer->AttachSubjectSilent(item); // once is enough
    EXPECT_EQ(observer->Take(), "");

    const auto child = rc::make<fake::Schema>();
    item->AddChildBack(child);
    EXPECT_EQ(child->get_ParentObject(), item);
    EXPECT_TRUE(item->get_CanHasChildren());
    EXPECT_EQ(observer->Take(), "children of s;");
    item->AssignName("s");
    EXPECT_EQ(observer->Take(), "");
    item->AssignName("z");
    EXPECT_EQ(observer->Take(), "26;name z;");
    item->AssignPropertyValue(PROP_COMMENT, "c");
    item->AssignPropertyValue(PROP_COMMENT, "c");
    item->AssignPropertyValueSilent(PROP_COMMENT, "d");
    EXPECT_EQ(observer->Take(), "9;");
    item->NotifyPropertyChangedLater(7);
    EXPECT_EQ(observer->Take(), "");
    LYield();
    EXPECT_EQ(observer->Take(), "7;");
    item->DeleteChild(child);
    EXPECT_FALSE(child->get_ParentObject());
    EXPECT_FALSE(item->get_CanHasChildren());
    item->DeleteChild(child);
    EXPECT_EQ(observer->Take(), "children of z;");

    const rc::Weak<Recorder> weak(observer);
    observer = rc::make<Recorder>();
    EXPECT_FALSE(weak.lock()) << "an item does not keep its observers";
    observer->AttachSubject(item);
    EXPECT_EQ(observer->Take(), "children of z;");
    item->DetachObservers();
    item->AssignName("y");
    EXPECT_EQ(observer->Take(), "");
}

TEST(Tree, ObserversAreCalledOutsideTheLocks)
{
    // The observer waits for another thread that uses everything of the item.
    struct Prober : LObserver
    {
        void PropertyChanged(const rc::Ref<LTreeItem>& item, int) override
        {
            std::thread([&] {
                const auto object = rc::cast<LDatabaseObject_Impl>(item);
                object->AssignPropertyValueSilent(PROP_PATH, "p");
                seen = object->GetString(PROP_COMMENT) + object->get_Name();
                item->get_Children();
                item->get_ParentObject();
            }).join();
        }
        QString seen;
    };
    const auto item = rc::make<fake::Schema>();
    item->AssignName("n");
    const auto observer = rc::make<Prober>();
    observer->AttachSubjectSilent(item);
    item->AssignPropertyValue(PROP_COMMENT, "c");
    EXPECT_EQ(observer->seen, "cn");
}

TEST(Tree, CirclesOfChildrenAndParentsEnd)
{
    rc::Weak<LTreeItem> weakParent, weakChild, weakGrandchild;
    {
        const auto top = rc::make<fake::Schema>();
        const auto parent = rc::make<fake::Schema>();
        const auto child = rc::make<fake::Schema>();
        top->AddChildBack(parent);
        parent->AddChildBack(child);
        weakParent = rc::Weak<LTreeItem>(parent);
        weakChild = rc::Weak<LTreeItem>(child);
        top->DeleteChild(parent);
    }
    EXPECT_FALSE(weakParent.lock());
    EXPECT_FALSE(weakChild.lock());
}

TEST(Tree, NamesAreReadAndWrittenFromManyThreads)
{
    const auto item = rc::make<fake::Schema>();
    item->AssignName("aaaa");
    std::atomic<bool> stop{false};
    std::atomic<int> wrong{0};
    std::thread reader([&] {
        while (!stop)
            if (const QString name = item->get_Name(); name.count(name[0]) != 4)
                ++wrong;
    });
    for (int i = 0; i < 5000; ++i)
        item->AssignName(QString(4, QChar('a' + i % 26)));
    stop = true;
    reader.join();
    EXPECT_EQ(wrong, 0);
}

struct Catalogue : testing::Test
{
    rc::Ref<fake::Root> root = rc::make<fake::Root>();
    rc::Ref<fake::Database> database = root->Add();
    ~Catalogue() override { database->Close(); }
};

TEST_F(Catalogue, IdentsLeadToObjects)
{
    using E = LIdent::Element;
    const struct
    {
        QList<E> path;
        const char* parents; ///< names of the object and its parents, or empty
    } cases[] = {
        {{E{DBOBJ_SCHEMA, "main"}}, "main.db"},
        {{E{DBOBJ_SCHEMA, "main"}, E{DBOBJ_TABLE, "T"}}, "t.main.db"},
        {{E{DBOBJ_SCHEMA, "main"}, E{DBOBJ_TABLE, "t"}, E{DBOBJ_FIELD, "b"}}, "b.t.main.db"},
        {{E{DBOBJ_TABLE, "t"}}, "t.second.db"},
        {{E{DBOBJ_TABLE, "p"}}, "P.main.db"},
        {{E{DBOBJ_VIEW, "p"}}, "P.main.db"},
        {{E{DBOBJ_SCHEMA, "main"}, E{DBOBJ_TABLE, "only here"}}, ""},
        {{E{DBOBJ_SEQUENCE, "t"}}, ""},
        {{}, ""},
    };
    for (const auto& [path, parents] : cases) {
        LIdent ident;
        for (const E& element : path)
            ident.Append(element.type, element.name);
        QStringList names;
        rc::Ptr<LTreeItem> item = database->ResolveIdent(ident);
        for (; item && item->get_ObjectType() != TYPE_NONE; item = item->get_ParentObject())
            names.append(item->get_Name());
        EXPECT_EQ(names.join('.').toStdString(), parents) << ident.get_FullName().toStdString();
    }
}

TEST_F(Catalogue, NamesForQueriesCarryTheSchemaWhereThereIsOne)
{
    const auto t = database->Get({{TYPE_SCHEMA, "main"}, {TYPE_TABLE, "t"}});
    const auto p = database->Get({{TYPE_SCHEMA, "main"}, {TYPE_TABLE, "p"}});
    const auto odd = database->Get({{TYPE_SCHEMA, "second"}, {TYPE_TABLE, "only here"}});
    EXPECT_EQ(t->get_NameForQuery(true), "main.t");
    EXPECT_EQ(t->get_NameForQuery(false), "t");
    EXPECT_EQ(p->get_NameForQuery(true), "P") << "a temporary table has no schema";
    EXPECT_EQ(odd->get_NameForQuery(true), "second.\"only here\"");
    EXPECT_EQ(odd->get_NameQuoted(), "\"only here\"");
    t->AssignPropertyValue(PROP_SCHEMA_NAME, "a b");
    EXPECT_EQ(t->get_NameForQuery(true), "\"a b\".t") << "what the catalogue said comes first";
    EXPECT_EQ(t->get_ChildObject(TYPE_FIELD, "a").Force()->get_NameForQuery(true), "a");
    EXPECT_EQ(t->get_Database(), database);
    EXPECT_EQ(t->get_DatabaseEngine(), &fake::Database::s_engine);
}

TEST_F(Catalogue, ExternalPropertiesStandByObject)
{
    database->results["TABLES OF 'second'"] = {{"table_name"}, {{"a/b"}, {"a"}, {"käse %"}}};
    const auto slash = database->Get({{TYPE_SCHEMA, "second"}, {TYPE_TABLE, "a/b"}});
    const auto plain = database->Get({{TYPE_SCHEMA, "second"}, {TYPE_TABLE, "a"}});
    const auto odd = database->Get({{TYPE_SCHEMA, "second"}, {TYPE_TABLE, "käse %"}});
    EXPECT_FALSE(slash->HasExternalProperty("comment"));
    EXPECT_EQ(slash->get_ExternalProperty("comment", 5), 5);
    EXPECT_TRUE(slash->put_ExternalProperty("comment", "one").Force());
    plain->put_ExternalProperty("comment", "two");
    odd->put_ExternalProperty("comment", "three");
    database->put_ExternalProperty("Own/Default schemas", QStringList({"x", "y"}));
    uik::settings().sync();
    EXPECT_EQ(slash->get_ExternalProperty("comment"), "one");
    EXPECT_EQ(plain->get_ExternalProperty("comment"), "two");
    EXPECT_EQ(odd->get_ExternalProperty("comment"), "three");
    EXPECT_EQ(database->get_ExternalProperty("Own/Default schemas").toStringList(), QStringList({"x", "y"}));

    // Kept for the objects that a rebuild makes.
    EXPECT_TRUE(database->UpdateChildObjects(TYPE_SCHEMA));
    const auto again = database->Get({{TYPE_SCHEMA, "second"}, {TYPE_TABLE, "a/b"}});
    EXPECT_EQ(again->get_ExternalProperty("comment"), "one");

    plain->RemoveExternalProperty("comment");
    EXPECT_FALSE(plain->HasExternalProperty("comment"));
    again->RemoveExternalProperty(QString());
    EXPECT_FALSE(again->HasExternalProperty("comment"));
    EXPECT_TRUE(odd->HasExternalProperty("comment"));
    database->RemoveExternalProperty(QString());
    EXPECT_FALSE(odd->HasExternalProperty("comment"));
    EXPECT_FALSE(database->HasExternalProperty("Own/Default schemas"));

    const auto loose = rc::make<fake::Schema>();
    EXPECT_TRUE(loose->put_ExternalProperty("comment", "x").Force());
    EXPECT_FALSE(loose->HasExternalProperty("comment")) << "no database, no place";

    // Lists keep what the user hid, and links that the engine does not know.
    const auto schemas = database->get_ChildList(TYPE_SCHEMA);
    EXPECT_EQ(schemas->get_FilteredNames(), QList<QString>());
    schemas->put_FilteredNames({"second"});
    EXPECT_EQ(schemas->get_FilteredNames(), QList<QString>({"second"}));
    const auto main = database->Get({{TYPE_SCHEMA, "main"}});
    const QList<LLinksList::VirtualLink> links{{"t", {"a", "it's"}, "P", {"x", "y"}}};
    rc::cast<LLinksList>(main->get_ChildList(TYPE_LINK))->put_VirtualLinks(links);
    EXPECT_TRUE(database->UpdateChildObjects(TYPE_SCHEMA));
    const auto list = rc::cast<LLinksList>(database->Get({{TYPE_SCHEMA, "main"}})->get_ChildList(TYPE_LINK));
    EXPECT_TRUE(list->get_VirtualLinks().isEmpty());
    list->InitVirtualLinks();
    EXPECT_EQ(list->get_VirtualLinks(), links);
    EXPECT_EQ(list->get_Names(), QStringList({"link_p_t", "link_p_p"})) << "no statement is made of a virtual link";
}

TEST_F(Catalogue, ScriptWatchersHear)
{
    struct Watcher : I_LScriptWatcher
    {
        void Notify(int event, const QVariant& argument) override
        {
            heard += QString::number(event) + argument.toString();
        }
        QString heard;
    };
    const auto watcher = std::make_shared<Watcher>();
    database->NotifyScriptWatchers(SCRIPT_EVENT_CLOSING);
    database->SetScriptWatcher(watcher);
    database->NotifyScriptWatchers(SCRIPT_EVENT_CLOSING, "x");
    EXPECT_EQ(watcher->heard, "5x");
}

} // namespace
