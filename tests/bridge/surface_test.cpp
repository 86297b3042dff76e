// SPDX-License-Identifier: GPL-3.0-or-later
// Every bound entry: that it is there, and that it can be called with good,
// too many, too few and wrong arguments.
#include "bridge/natives.h"
#include "bridge/qobject_instance.h"
#include "bridge_handles.h"
#include "weft/builders.h"
#include "weft/errors.h"
#include "weft/init.h"
#include "weft/lazy.h"
#include "weft/module.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QHBoxLayout>
#include <QRegularExpression>
#include <QStringListModel>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTextStream>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

#include <iostream>
#include <map>

using namespace weft;

namespace {

struct Expected
{
    QString name, base, values;
    int parameterised = 0;
    QList<std::pair<QString, QString>> enums;
    QStringList entries;
};

QList<Expected> ReadSurface()
{
    QFile file(QStringLiteral(ORBIS_SURFACE));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QList<Expected> classes;
    QTextStream in(&file);
    while (!in.atEnd()) {
        const QString line = in.readLine();
        const QString word = line.section(' ', 0, 0), rest = line.section(' ', 1);
        if (word == "class")
            classes.append({rest.section(' ', 0, 0), rest.section(' ', 1, 1), {}, rest.section(' ', 2).toInt(), {}, {}});
        else if (word == "values")
            classes.last().values = rest;
        else if (word == "enum")
            classes.last().enums.append({rest.section(" = ", 0, 0), rest.section(" = ", 1)});
        else if (word == "entry")
            classes.last().entries.append(rest);
    }
    return classes;
}

Class_Generic ClassOf(const QString& name)
{
    internal::run_init_handlers(2);
    const auto cls = Class_Generic::cast(find_module("qt").get(String(name)));
    EXPECT_TRUE(cls) << name.toStdString();
    return cls.value_or(Class_Generic());
}

using Values = QMap<QString, qint64>;
Values ValuesOf(const QString& text)
{
    Values values;
    qint64 next = 0;
    for (const QString& part : text.split(',')) {
        if (part.contains('='))
            next = part.section('=', 1).trimmed().toLongLong(nullptr, 0);
        const QString name = part.section('=', 0, 0).trimmed();
        if (!values.contains(name))
            values.insert(name, next);
        ++next;
    }
    return values;
}

Values ValuesOf(const Class_Generic& cls)
{
    Values values;
    for (const auto& [name, value] : cls.content().enumerators)
        if (!values.contains(name.ToQString()))
            values.insert(name.ToQString(), value);
    return values;
}

} // namespace

TEST(Surface, HoldsEveryClassEntryAndEnum)
{
    int classes = 0, entries = 0, enums = 0;
    for (const Expected& expected : ReadSurface()) {
        const Class_Generic cls = ClassOf(expected.name);
        if (cls.isEmpty())
            continue;
        ++classes;
        const auto& content = cls.content();
        EXPECT_FALSE(content.doc.empty()) << expected.name.toStdString();
        if (!expected.values.isEmpty()) {
            EXPECT_TRUE(content.isEnum);
            EXPECT_EQ(ValuesOf(cls), ValuesOf(expected.values)) << expected.name.toStdString();
            continue;
        }
        QStringList bases;
        for (const Class_Generic& base : content.bases)
            bases.append(base.name().ToQString());
        const bool isConvertible = content.isConvertible && bases.isEmpty();
        const bool isRuntimeOnly = content.isRuntimeOnly && content.constructor.isNone();
        EXPECT_TRUE(expected.base != "I_Convertible" || isConvertible) << expected.name.toStdString();
        EXPECT_TRUE(expected.base != "I_RuntimeOnly" || isRuntimeOnly) << expected.name.toStdString();
        if (expected.base.startsWith('Q')) {
            EXPECT_EQ(bases, QStringList{expected.base}) << expected.name.toStdString();
        }
        QMap<QString, int> wanted, found;
        for (const QString& entry : expected.entries)
            ++wanted[entry];
        int parameterised = content.constructor.isNone() ? 0 : 1;
        for (const class_entry& entry : content.entries) {
            if (entry.kind == class_entry::Kind::Enum || entry.isMeta)
                continue;
            if (entry.kind != class_entry::Kind::Hook)
                ++found[entry.name.text()];
            if (entry.kind != class_entry::Kind::Field) {
                EXPECT_FALSE(entry.doc.empty()) << expected.name.toStdString() << "." << entry.name.name().data();
            }
            if (!entry.function.isNone() && entry.name != I_Convertible::tryInto_ident())
                ++parameterised;
        }
        for (auto it = wanted.begin(); it != wanted.end(); ++it)
            EXPECT_GE(found.value(it.key()), it.value()) << expected.name.toStdString() << "." << it.key().toStdString();
        EXPECT_GE(parameterised, expected.parameterised) << expected.name.toStdString();
        entries += static_cast<int>(expected.entries.size());
        for (const auto& [name, values] : expected.enums) {
            const class_entry* entry = cls.find(method_ident_untyped(name));
            ASSERT_TRUE(entry && entry->kind == class_entry::Kind::Enum) << name.toStdString();
            EXPECT_EQ(ValuesOf(Class_Generic(entry->value)), ValuesOf(values)) << name.toStdString();
            ++enums;
        }
    }
    std::cout << classes << " classes, " << entries << " entries, " << enums << " enums\n";
    EXPECT_EQ(classes, 71);
    EXPECT_EQ(internal::assert_error_count(), 0);
}

TEST(Surface, OddEnumsStayAsTheyAre)
{
    const class_entry* odd = ClassOf("QAbstractItemView").find(method_ident_untyped(QString("DragDropMode NoDragDrop")));
    ASSERT_TRUE(odd);
    EXPECT_EQ(ValuesOf(Class_Generic(odd->value)).value("DragOnly", -1), 0);
    const class_entry* twice = ClassOf("QRegularExpression").find(method_ident_untyped(QString("MatchOption")));
    ASSERT_TRUE(twice);
    const auto& enumerators = Class_Generic(twice->value).content().enumerators;
    ASSERT_EQ(enumerators.size(), 4u);
    EXPECT_EQ(enumerators[1].first, enumerators[2].first);
    EXPECT_EQ(enumerators[3].second, 3);
    EXPECT_EQ(internal::enum_cast(enumerators[1].first, Class_Generic(twice->value)), 1);
}

namespace {

/// Good arguments by the type that a signature names, and objects to call.
class Caller
{
public:
    Caller() : m_model(QStringList{"a", "b", "c"}), m_table(2, 2)
    {
        QDir::setCurrent(m_folder.path()); // some entries write a file
        m_view.setModel(&m_model);
        m_table.setItem(0, 0, new QTableWidgetItem("x"));
    }

    ~Caller()
    {
        // What moved to the thread ends with it.
        m_thread.start();
        m_thread.quit();
        m_thread.wait();
        QDir::setCurrent(m_before);
    }

    Any Sample(const QString& type, const QString& name = {})
    {
        if (name == "signal" && type.contains("String"))
            return String("objectNameChanged");
        if (name == "method")
            return String("deleteLater");
        if (name == "delegate")
            return qt::details::create_qobject_instance(m_view.itemDelegate(), {});
        if (name == "receiver")
            return Sample("Function");
        if (name == "icon" && type.contains("String"))
            return String("text");
        if (name == "format" && type == "HashMap") {
            const HashMap map;
            map.set(String("fontItalic"), true);
            return map;
        }
        if (name == "arguments") // of objectNameChanged
            return List(Type(), {String("n")});
        const QString first = type.section('|', 0, 0).trimmed();
        if (type.endsWith('?'))
            return Sample(type.chopped(1));
        static const std::map<QString, std::function<Any(Caller&)>> samples{
            {"Integer", [](Caller&) -> Any { return 1; }},
            {"Float", [](Caller&) -> Any { return 1.5; }},
            {"Boolean", [](Caller&) -> Any { return true; }},
            {"String", [](Caller&) -> Any { return String("red"); }},
            {"ByteArray", [](Caller&) -> Any { return ByteArray("bytes"); }},
            {"Any", [](Caller&) -> Any { return String("red"); }},
            {"Function", [](Caller&) -> Any { return I_Invokable_Generic::make("f", Signature(), [](auto) -> Any { return false; }); }},
            {"HashMap", [](Caller&) -> Any { HashMap map; map.set(0, String("v")); return map; }},
            {"List", [](Caller&) -> Any { return List(); }},
            {"List<String>", [](Caller&) -> Any { return List(string_type(), {String("a"), String("b")}); }},
            {"List<QModelIndex>", [](Caller& c) -> Any { return List(Type(), {qt::QModelIndex(c.m_model.index(0, 0)).any()}); }},
            {"Class", [](Caller&) -> Any { return qt::QVariant::getClass(); }},
            {"None", [](Caller&) -> Any { return {}; }},
        };
        if (const auto place = samples.find(first); place != samples.end())
            return place->second(*this);
        return Object(first);
    }

    Any Object(const QString& name)
    {
        if (name == "QModelIndex")
            return qt::QModelIndex(m_model.index(0, 0)).any();
        if (name == "QAbstractItemModel")
            return qt::details::create_qobject_instance(&m_model, {});
        if (name == "QAbstractItemView")
            return qt::details::create_qobject_instance(&m_view, {});
        if (name == "QAbstractButton")
            return Make("QPushButton", {});
        if (name == "QLayout")
            return Make("QBoxLayout", {});
        if (name == "QTableWidgetItem")
            return qt::details::table_item_of(m_table, 0, 0);
        if (name == "QIODevice" || name == "QFileDevice" || name == "QFile")
            return Make("QFile", {String(m_folder.filePath(QString::number(++m_files)))});
        if (name == "QSettings")
            return Make("QSettings", {String(m_folder.filePath("s.ini"))});
        if (name == "QSignal")
            return Make("QSignal", {Make("QObject", {}), String("objectNameChanged")});
        if (name == "QMetaMethod")
            return qt::QMetaMethod(QObject::staticMetaObject.method(0)).any();
        if (name == "QMetaObject")
            return qt::QMetaObject(&QObject::staticMetaObject).any();
        if (name == "QMetaObjectConnection")
            return qt::QMetaObjectConnection(::QMetaObject::Connection()).any();
        if (name == "QThread")
            return qt::details::create_qobject_instance(&m_thread, {});
        if (name == "QLayoutItem")
            return Make("QSpacerItem", {1, 1});
        if (name == "QValidator" || name == "QIODeviceBase" || name == "QEvent" || name == "QChildEvent" || name == "QTimerEvent")
            return {};
        const Class_Generic cls = ClassOf(name);
        std::vector<Any> arguments;
        if (!cls.isEmpty() && !cls.content().constructor.isNone())
            for (const auto& parameter : I_Invokable_Generic::cast(cls.content().constructor).function().signature().parameters())
                if (parameter.name != String("self") && !parameter.otherwise)
                    arguments.push_back(Sample(parameter.type.ToQString()));
        return Make(name, arguments);
    }

    Any Make(const QString& name, std::vector<Any> arguments) { return ClassOf(name).construct(arguments); }
    QString Path(const QString& name) const { return m_folder.filePath(name); }

private:
    const QString m_before = QDir::currentPath();
    QTemporaryDir m_folder;
    QStringListModel m_model;
    class View : public QAbstractItemView
    {
    public:
        QRect visualRect(const QModelIndex&) const override { return {}; }
        void scrollTo(const QModelIndex&, ScrollHint) override {}
        QModelIndex indexAt(const QPoint&) const override { return {}; }
        QModelIndex moveCursor(CursorAction, Qt::KeyboardModifiers) override { return {}; }
        int horizontalOffset() const override { return 0; }
        int verticalOffset() const override { return 0; }
        bool isIndexHidden(const QModelIndex&) const override { return false; }
        void setSelection(const QRect&, QItemSelectionModel::SelectionFlags) override {}
        QRegion visualRegionForSelection(const QItemSelection&) const override { return {}; }
    } m_view;
    QTableWidget m_table;
    QThread m_thread;
    int m_files = 0;
};

/// The text of what a call throws; empty when it does not.
QString ErrorOf(const Any& function, const std::vector<Any>& arguments)
{
    try {
        I_Invokable_Generic::cast(function).invoke(arguments);
    } catch (...) {
        return internal::current_exception_text().ToQString();
    }
    return {};
}

} // namespace

TEST(Surface, EveryEntryCanBeCalled)
{
    internal::run_init_handlers(2);
    // What an entry asks a person is answered by closing the window.
    QTimer closer;
    QObject::connect(&closer, &QTimer::timeout, [] {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->isModal() && window->isVisible())
                window->close();
    });
    closer.start(1);
    int called = 0, refusedWrong = 0, refusedMany = 0;
    Caller caller;
    for (const auto& [name, value] : find_module("qt").entries()) {
        const auto cls = Class_Generic::cast(value);
        if (!cls || cls->content().isEnum)
            continue;
        for (const class_entry& entry : cls->content().entries) {
            if (entry.isMeta || entry.kind == class_entry::Kind::Enum || entry.kind == class_entry::Kind::Field)
                continue;
            const std::string what = name.ToQString().toStdString() + "." + entry.name.name().toStdString();
            SCOPED_TRACE(what);
            const Any self = entry.kind == class_entry::Kind::StaticMethod ? Any() : caller.Object(name.ToQString());
            if (!entry.property.isEmpty()) {
                if (!self.isNone()) {
                    try {
                        const Any now = entry.property.read(self);
                        if (!entry.property.isReadOnly() && !now.isNone())
                            entry.property.write(self, now);
                    } catch (...) {
                        ADD_FAILURE() << internal::current_exception_text().ToQString().toStdString();
                    }
                    ++called;
                }
                EXPECT_NE(ErrorOf(entry.property->getter, {Any()}), "");
                EXPECT_NE(ErrorOf(entry.property->getter, {self, 1}), "");
                if (!entry.property.isReadOnly() && !self.isNone()) {
                    const Any wrong = I_Invokable_Generic::make("w", Signature(), [](auto) -> Any { return {}; });
                    const QString error = ErrorOf(entry.property->setter, {self, wrong});
                    EXPECT_TRUE(error.contains(entry.name.text())) << error.toStdString();
                }
                continue;
            }
            const auto& function = I_Invokable_Generic::cast(entry.function).function();
            const auto& parameters = function.signature().parameters();
            std::vector<Any> arguments;
            for (const auto& parameter : parameters)
                if (parameter.name == String("self"))
                    arguments.push_back(self);
                else if (!parameter.otherwise)
                    arguments.push_back(caller.Sample(parameter.type.ToQString(), parameter.name.ToQString()));
            std::vector<Any> many = arguments;
            while (many.size() <= parameters.size())
                many.push_back(1);
            EXPECT_TRUE(ErrorOf(entry.function, many).contains("arguments expected"));
            ++refusedMany;
            // A value that no parameter takes, in the place of each in turn.
            const Any wrong = Any::adopt(new internal::object_value_instance(qt::QMetaObjectConnection::getClass()));
            for (std::size_t i = function.signature().hasSelf() ? 1 : 0; i < arguments.size(); ++i) {
                const QString type = parameters[i].type.ToQString();
                if (self.isNone() && function.signature().hasSelf())
                    break;
                if (type.contains("Any") || type.contains("QMetaObjectConnection"))
                    continue;
                std::vector<Any> bad = arguments;
                bad[i] = wrong;
                const QString error = ErrorOf(entry.function, bad);
                EXPECT_TRUE(error.startsWith(function.name().ToQString())) << i << ": " << error.toStdString();
                ++refusedWrong;
            }
            if (function.signature().hasSelf() && entry.name != I_Convertible::tryInto_ident()) {
                std::vector<Any> bad = arguments;
                bad[0] = name == String("QMetaObjectConnection") ? Any() : wrong;
                const QString error = ErrorOf(entry.function, bad);
                EXPECT_TRUE(error.startsWith(function.name().ToQString())) << error.toStdString();
            }
            if (function.signature().hasSelf() && self.isNone())
                continue;
            const bool isEventHook = entry.kind == class_entry::Kind::Hook && function.signature().text().ToQString().contains("Event");
            const QString error = ErrorOf(entry.function, arguments);
            ++called;
            if (entry.name == method_ident_untyped(QString("detach")))
                delete qt::details::qobject_of(self); // nobody's any more
            // These need what only Qt or a script makes: an event, a model of a script's.
            if (isEventHook || error.contains("not one of a script"))
                continue;
            EXPECT_EQ(error.toStdString(), "");
        }
    }
    std::cout << called << " calls, " << refusedMany << " with too many arguments, " << refusedWrong << " with wrong ones\n";
    EXPECT_GT(called, 475);
    EXPECT_GT(refusedWrong, 150);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
