// SPDX-License-Identifier: GPL-3.0-or-later
// Lives of objects, signals, hooks and event filters, with classes as a script
// makes them.
#include "bridge/natives.h"
#include "bridge/qobject_instance.h"
#include "bridge_handles.h"
#include "weft/builders.h"
#include "weft/init.h"
#include "weft/lazy.h"

#include <QApplication>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QStringListModel>
#include <QTableView>

#include <gtest/gtest.h>

using namespace weft;

class Sender : public QObject
{
    Q_OBJECT

signals:
    void zero();
    void three(int a, const QString& b, bool c);
    void eleven(int a, int b, int c, int d, int e, int f, int g, int h, int i, int j, int k);
    void twelve(int a, int b, int c, int d, int e, int f, int g, int h, int i, int j, int k, int l);
};

namespace {

Any Function(const char* parameters, std::function<Any(std::span<const Any>)> body)
{
    return I_Invokable_Generic::make("test", Signature(String(parameters)), std::move(body));
}

class Objects : public testing::Test
{
protected:
    void SetUp() override
    {
        internal::run_init_handlers(2);
        internal::set_error_handler([this](const String&, const String& text) { m_errors.append(text.ToQString()); });
    }
    void TearDown() override
    {
        internal::set_error_handler(nullptr);
        EXPECT_EQ(m_errors, m_expectedErrors);
    }

    /// An object of a class that derives from the base and overrides one method.
    static Any Derive(const Class_Generic& base, const char* method, const Any& function, std::vector<Any> arguments = {})
    {
        internal::class_builder_base builder("Derived", "");
        builder.base(base).script_class();
        class_entry entry;
        entry.name = method_ident_untyped(QString(method));
        entry.function = function;
        builder.add_entry(entry);
        return builder.build().construct(arguments);
    }
    static void Collect() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
    static Any Call(const Any& object, const char* method, std::vector<Any> arguments = {})
    {
        return object.invoke(method_ident_untyped(QString(method)), arguments);
    }
    static Any Read(const Any& object, const char* property)
    {
        return Class_Generic::of(object).find(method_ident_untyped(QString(property)))->property.read(object);
    }

    QStringList m_errors, m_expectedErrors;
};

} // namespace

TEST_F(Objects, SignalsGiveAsManyArgumentsAsAFunctionTakes)
{
    Sender sender;
    const Any object = qt::details::create_qobject_instance(&sender, {});
    const struct
    {
        const char* signal;
        const char* parameters;
        int calls;
        const char* text;
    } rows[] = {
        {"zero", "", 1, "[]"},
        {"zero", "a", 1, "arguments"}, // one is missing: the function refuses
        {"three", "", 1, "[]"},
        {"three", "a", 1, "[7]"},
        {"three", "a, b, c", 1, "[7, x, true]"},
        {"eleven", "a, b, c, d, e, f, g, h, i, j, k", 1, "[1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11]"},
        {"twelve", "a, b, c, d, e, f, g, h, i, j, k", 1, "[1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11]"},
        {"twelve", "a, b, c, d, e, f, g, h, i, j, k, l", 0, ""},
    };
    for (const auto& row : rows) {
        int calls = 0;
        QString text;
        const Any function = Function(row.parameters, [&](std::span<const Any> arguments) -> Any {
            ++calls;
            text = to_text(List(Type(), {arguments.begin(), arguments.end()})).ToQString();
            return 5; // dropped
        });
        const Any signal = qt::QSignal::getClass().construct(std::vector<Any>{object, String(row.signal)});
        Call(signal, "connect", {function});
        emit sender.zero();
        emit sender.three(7, "x", true);
        emit sender.eleven(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11);
        emit sender.twelve(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12);
        if (QString(row.text) == "arguments") {
            EXPECT_EQ(m_errors.size(), 1);
            m_errors.clear();
            EXPECT_EQ(calls, 0);
        } else {
            EXPECT_EQ(calls, row.calls) << row.signal << " " << row.parameters;
            EXPECT_EQ(text.toStdString(), row.calls ? row.text : "");
        }
        EXPECT_EQ(Call(signal, "disconnect", {function}), Any(true));
        EXPECT_EQ(Call(signal, "disconnect", {function}), Any(false));
        calls = 0;
        emit sender.zero();
        emit sender.three(7, "x", true);
        EXPECT_EQ(calls, 0);
    }
    EXPECT_THROW(qt::QSignal::getClass().construct(std::vector<Any>{object, String("nosuch")}), Error);
}

TEST_F(Objects, OwnershipInEveryOrderOfEnds)
{
    // The runtime object first: the native one goes, but only from the event loop.
    QPointer<QObject> native;
    {
        const Any object = qt::QObject::getClass().construct({});
        native = qt::QObject(object).get();
        EXPECT_EQ(object.fieldValue(qt::details::owned_field()), Any(true));
        // The same native object is the same runtime object.
        EXPECT_EQ(qt::details::create_qobject_instance(native, {}).object(), object.object());
    }
    EXPECT_TRUE(native);
    Collect();
    EXPECT_FALSE(native);

    // The native one first: a call fails with an error.
    const Any object = qt::QLabel::getClass().construct({});
    delete qt::QLabel(object).get();
    EXPECT_EQ(qt::QLabel(object).get(), nullptr);
    try {
        Call(object, "show");
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.message().ToQString(), "QWidget.show: The QLabel is gone.");
    }

    // Given up: the native one stays.
    {
        const Any detached = qt::QObject::getClass().construct({});
        native = qt::QObject(detached).get();
        qt::QObject(detached).detach();
    }
    Collect();
    ASSERT_TRUE(native);
    // Found again, it is not owned; a lazy "_owned" is waited for.
    {
        const Any again = qt::details::create_qobject_instance(native, {});
        EXPECT_EQ(again.fieldValue(qt::details::owned_field()), Any(false));
        again.setFieldValue(qt::details::owned_field(), Lazy_Generic(Boolean::typeMask(), [] { return Any(true); }));
    }
    Collect();
    EXPECT_FALSE(native);

    // Parent and child: whoever goes first.
    {
        const Any parent = qt::QWidget::getClass().construct({});
        const Any child = qt::QLabel::getClass().construct(std::vector<Any>{parent});
        native = qt::QLabel(child).get();
        delete qt::QWidget(parent).get();
        EXPECT_FALSE(native);
    }
    Collect();
    const auto before = internal::object_value::live_count();
    {
        const Any parent = qt::QWidget::getClass().construct({});
        const Any child = qt::QLabel::getClass().construct(std::vector<Any>{parent});
    }
    Collect();
    EXPECT_EQ(internal::object_value::live_count(), before);
}

TEST_F(Objects, HooksReachTheClassAndItsBase)
{
    int seen = 0;
    Any kept;
    QPointer<QObject> native;
    {
        const Any object = Derive(qt::QObject::getClass(), "event", Function("self, event", [&](auto arguments) -> Any {
            ++seen;
            kept = arguments[1];
            EXPECT_EQ(Read(kept, "type"), Any(int(QEvent::Clipboard)));
            // The base, which does not come back here.
            return internal::unwrap(I_Invokable_Generic::cast(qt::QObject::getClass().find(method_ident_untyped(QString("event")))->function).invoke(arguments)).isBoolean();
        }));
        native = qt::QObject(object).get();
        QEvent event(QEvent::Clipboard);
        EXPECT_TRUE(QCoreApplication::sendEvent(native, &event));
        EXPECT_EQ(seen, 1);
        EXPECT_THROW(Read(kept, "type"), Error) << "an event is over when it was delivered";
        qt::QObject(object).detach();
    }
    // Without its runtime object the native class answers.
    QEvent event(QEvent::Clipboard);
    EXPECT_FALSE(QCoreApplication::sendEvent(native, &event));
    EXPECT_EQ(seen, 1);
    delete native;

    // A wrong result, an error, a lazy.
    const auto button = [](Any result) {
        return Derive(qt::QPushButton::getClass(), "hitButton", Function("self, position", [result](auto) -> Any { return internal::unwrap(result); }));
    };
    const auto click = [](const Any& object) {
        QWidget* widget = qt::QPushButton(object).get();
        widget->resize(50, 50);
        bool clicked = false;
        QObject::connect(qt::QPushButton(object).get(), &QPushButton::clicked, widget, [&] { clicked = true; });
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(widget, &event);
        }
        return clicked;
    };
    EXPECT_TRUE(click(button(true)));
    EXPECT_FALSE(click(button(false)));
    EXPECT_FALSE(click(button(Lazy_Generic(Boolean::typeMask(), [] { return Any(false); }))));
    EXPECT_TRUE(m_errors.isEmpty());
    EXPECT_TRUE(click(button(String("yes")))) << "the native class decides";
    EXPECT_TRUE(click(button(Error("no"))));
    EXPECT_FALSE(m_errors.isEmpty());
    m_errors.clear();
}

TEST_F(Objects, EventFiltersStopEvents)
{
    class Counter : public QObject
    {
    public:
        int events = 0;
        bool event(QEvent* event) override
        {
            events += event->type() == QEvent::User;
            return true;
        }
    } counter;
    const Any object = qt::details::create_qobject_instance(&counter, {});
    const Any answers[] = {false, true, Lazy_Generic(Boolean::typeMask(), [] { return Any(true); }), 3};
    for (const Any& answer : answers) {
        counter.events = 0;
        const Any filter = Function("object, event", [&](auto arguments) -> Any {
            EXPECT_EQ(arguments[0].object(), object.object());
            return Read(arguments[1], "type") == Any(int(QEvent::User)) ? answer : Any(false);
        });
        Call(object, "installEventFilter", {filter});
        QEvent event(QEvent::User);
        QCoreApplication::sendEvent(&counter, &event);
        EXPECT_EQ(counter.events, answer == Any(false) || answer == Any(3) ? 1 : 0);
        EXPECT_EQ(m_errors.size(), answer == Any(3) ? 1 : 0) << "no boolean";
        m_errors.clear();
        Call(object, "removeEventFilter", {filter});
        Collect();
        QCoreApplication::sendEvent(&counter, &event);
        EXPECT_EQ(counter.events, answer == Any(false) || answer == Any(3) ? 2 : 1);
    }
}

TEST_F(Objects, AModelOfAScriptDrivesAView)
{
    internal::class_builder_base builder("Squares", "");
    builder.base(qt::QAbstractItemModel::getClass()).script_class();
    const auto add = [&](const char* name, const char* parameters, auto body) {
        class_entry entry;
        entry.name = method_ident_untyped(QString(name));
        entry.function = Function(parameters, body);
        builder.add_entry(entry);
    };
    add("rowCount", "self, parent", [](auto) -> Any { return 100; });
    add("columnCount", "self, parent", [](auto) -> Any { return 2; });
    add("data", "self, index, role", [](auto arguments) -> Any {
        const QModelIndex index = qt::QModelIndex(arguments[1]).get();
        return arguments[2] == Any(0) ? Any(index.column() == 0 ? index.row() : index.row() * index.row()) : Any();
    });
    const Any object = builder.build().construct({});
    ::QAbstractItemModel* model = qt::QAbstractItemModel(object).get();
    QTableView view;
    view.setModel(model);
    view.resize(300, 300);
    view.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(model->index(9, 1).data().toInt(), 81);
    EXPECT_EQ(view.indexAt(QPoint(1, 1)).data().toInt(), 0);
    EXPECT_FALSE(model->index(100, 0).isValid());
    view.setModel(nullptr);
}

TEST_F(Objects, WhatIsDraggedBelongsToItsCaller)
{
    // A native model gives the script an object to own.
    QStringListModel words({"a", "b"});
    const QModelIndex first = words.index(0, 0);
    QPointer<QMimeData> data;
    {
        const Any model = qt::details::create_qobject_instance(&words, {});
        const Any dragged = Call(model, "mimeData", {List(Type(), {qt::QModelIndex(first).any()})});
        data = qobject_cast<QMimeData*>(qt::details::qobject_of(dragged));
        ASSERT_TRUE(data);
    }
    Collect();
    EXPECT_FALSE(data);

    // A script's model gives its own object to the native caller, who deletes it.
    const Any model = Derive(qt::QAbstractItemModel::getClass(), "mimeData",
                             Function("self, indexes", [](auto) -> Any { return qt::QMimeData::getClass().construct({}); }));
    data = qt::QAbstractItemModel(model).get()->mimeData({first});
    Collect();
    ASSERT_TRUE(data);
    delete data;
}

#include "object_test.moc"
