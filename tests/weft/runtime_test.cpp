// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/builders.h"
#include "weft/convertible.h"
#include "weft/errors.h"
#include "weft/init.h"
#include "weft/lazy.h"
#include "weft/list.h"
#include "weft/module.h"
#include "weft/weak_ref.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using namespace weft;

namespace {

QString TextOf(const std::function<void()>& body)
{
    try {
        body();
    } catch (...) {
        return internal::current_exception_text().ToQString();
    }
    return {};
}

/// Tells when it goes, and may keep itself alive once.
class Traced final : public internal::object_value
{
public:
    Traced(QStringList& log, Any* keep = nullptr) : m_log(log), m_keep(keep) {}
    ~Traced() override { m_log.append("gone"); }
    Type type() const override { return {}; }

protected:
    void finalize() override
    {
        m_log.append(WeakRef_Generic(Any::ref(this)).lock().isNone() ? "going" : "still found");
        if (m_keep)
            *m_keep = Any::ref(this);
    }

private:
    QStringList& m_log;
    Any* m_keep;
};

} // namespace

TEST(Values, CountsEndAndWeakReferencesKnow)
{
    QStringList log;
    const auto before = internal::object_value::live_count();
    {
        Any any = Any::adopt(new Traced(log));
        const WeakRef_Generic weak(any);
        EXPECT_EQ(weak.lock().object(), any.object());
        Any copy = any;
        any = Any();
        EXPECT_TRUE(log.isEmpty());
        copy = Any();
        EXPECT_EQ(log, QStringList({"going", "gone"}));
        EXPECT_TRUE(weak.lock().isNone());
    }
    log.clear();
    Any kept;
    Any::adopt(new Traced(log, &kept));
    EXPECT_EQ(log, QStringList{"going"});
    kept = Any();
    EXPECT_EQ(log, QStringList({"going", "gone"}));
    EXPECT_EQ(internal::object_value::live_count(), before);

    // Threads that look while the last reference goes.
    for (int round = 0; round < 200; ++round) {
        Any any = Any::adopt(new internal::object_value_string(String("x")));
        const WeakRef_Generic weak(any);
        std::atomic<bool> go{false};
        std::thread looker([&] {
            while (!go)
                ;
            for (int i = 0; i < 50; ++i)
                if (const Any found = weak.lock(); !found.isNone()) {
                    EXPECT_EQ(to_text(found), String("x"));
                }
        });
        go = true;
        any = Any();
        looker.join();
        EXPECT_TRUE(weak.lock().isNone());
    }
    EXPECT_EQ(internal::object_value::live_count(), before);
}

TEST(Values, ListsAndMapsCompareByContent)
{
    const List list(Integer::typeMask(), {1, 2});
    EXPECT_EQ(Any(list), Any(List(Integer::typeMask(), {1, 2.0})));
    EXPECT_NE(Any(list), Any(List(Integer::typeMask(), {1, 3})));
    EXPECT_THROW(list.append(String("x")), internal::bad_argument);
    EXPECT_EQ(list.length(), 2u);
    const HashMap map;
    map.set(String("b"), 1);
    map.set(2, list);
    map.set(String("b"), 3);
    map.set(Any(), true);
    EXPECT_EQ(map.get(2.0), Any(list)) << "equal numbers are one key";
    EXPECT_EQ(to_text(map).ToQString(), "{b: 3, 2: [1, 2], none: true}");
    const Any copy = Any(map).object()->clone();
    EXPECT_EQ(copy, Any(map));
    EXPECT_TRUE(map.remove(String("b")));
    EXPECT_FALSE(map.remove(String("b")));
    EXPECT_EQ(map.get(Any()), Any(true));
    EXPECT_NE(copy, Any(map));
}

TEST(Values, TypesTakeWhatTheySay)
{
    const Type text = string_type(), number = Integer::typeMask(), real = Float::typeMask();
    const struct
    {
        Type type;
        Any value;
        bool matches;
    } rows[] = {
        {text, String("x"), true},       {text, ByteArray("x"), false},      {number, 1, true},
        {number, 1.0, false},            {number, true, false},              {real, 1, true},
        {Type(), Any(), true},           {None::typeMask(), Any(), true},    {Boolean::typeMask(), 0, false},
        {Type::unite({text, None::typeMask()}), Any(), true},                {Type::unite({text, number}), 1.5, false},
        {Type::list(number), List(number), true},                            {Type::list(number), List(text), false},
        {Type::basic(Type::Kind::List), List(text), true},                   {Type::lazy(text), Lazy_Generic(text, {}), true},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.type.matches(row.value), row.matches) << row.type.name().ToQString().toStdString();
    using Argument = Union<Integer, None>;
    EXPECT_TRUE((details::cast_union<Integer, None>(Any()).value().isNone()));
    const details::Checked<Argument> failed = details::cast_union<Integer, None>(String("x"));
    EXPECT_FALSE(failed);
    EXPECT_THROW(failed.value(), internal::bad_argument);
    EXPECT_EQ(failed.error().expected.name().ToQString(), "Integer | None");
}

TEST(Functions, CheckNumbersAndFillDefaults)
{
    const auto function = I_Invokable_Generic::make(
        "f", Signature("( self, a: String, b: Integer = -5, c: String? = none, d: Any = \"x, y\" ) -> List"),
        [](std::span<const Any> arguments) -> Any { return List(Type(), {arguments.begin(), arguments.end()}); });
    EXPECT_EQ(function.function().signature().names().ToQString(), "self, a, b, c, d");
    EXPECT_EQ(function.function().signature().result().ToQString(), "List");
    EXPECT_EQ(to_text(function(Any(), String("1"))).ToQString(), "[none, 1, -5, none, x, y]");
    EXPECT_EQ(to_text(function(Any(), String("1"), 2, 3, 4)).ToQString(), "[none, 1, 2, 3, 4]");
    EXPECT_EQ(TextOf([&] { function(Any()); }), "f: 1 to 4 arguments expected, 0 given.");
    EXPECT_EQ(TextOf([&] { function(1, 2, 3, 4, 5, 6); }), "f: 1 to 4 arguments expected, 5 given.");
    EXPECT_EQ(TextOf([&] { I_Invokable_Generic::cast(5); }), "Call: Function expected, got Integer 5.");

    const auto wrong = I_Invokable_Generic::make("g", Signature("a"), [](std::span<const Any> arguments) -> Any {
        throw internal::bad_argument(string_type(), arguments[0]);
    });
    EXPECT_EQ(TextOf([&] { wrong(7); }), "g: String expected, got Integer 7.");
    // Other exceptions pass, and nesting has an end.
    const auto other = I_Invokable_Generic::make("h", Signature(""), [](auto) -> Any { throw std::out_of_range("as it is"); });
    EXPECT_THROW(other(), std::out_of_range);
    std::optional<I_Invokable_Generic> self;
    self = I_Invokable_Generic::make("r", Signature(""), [&](auto) -> Any { return (*self)(); });
    EXPECT_EQ(TextOf([&] { (*self)(); }), "r: the calls are nested too deep.");
}

TEST(Lazies, RunOnceAndTellTheirError)
{
    int runs = 0;
    const Lazy_Generic lazy(Boolean::typeMask(), [&] { ++runs; return Any(true); });
    EXPECT_EQ(runs, 0);
    EXPECT_TRUE(lazy.castInstance(Boolean::typeMask()));
    EXPECT_FALSE(lazy.castInstance(string_type()));
    std::thread other([&] { EXPECT_EQ(lazy.wait(), Any(true)); });
    EXPECT_EQ(lazy.wait(), Any(true));
    other.join();
    EXPECT_EQ(runs, 1);
    const Lazy_Generic failing(Type(), []() -> Any { throw Error("no"); });
    EXPECT_EQ(TextOf([&] { failing.wait(); }), "no");
    EXPECT_EQ(TextOf([&] { failing.wait(); }), "no");
    std::optional<Lazy_Generic> self;
    self = Lazy_Generic(Type(), [&]() -> Any { return self->wait().isNone(); });
    EXPECT_EQ(self->wait(), Any(true)) << "one that waits for itself gets none";
    EXPECT_EQ(internal::result_unwrap_lazy(lazy), Any(true));
    EXPECT_THROW(internal::unwrap(Error("x")), Error);
    EXPECT_TRUE(internal::is_error_result(internal::result_error_cast_source(string_type(), 1)));
    EXPECT_TRUE(internal::is_error_result(internal::result_error_no_error(string_type())));
}

TEST(Classes, AreBuiltFromParts)
{
    const method_ident field = internal::helpers::create_literal_method_identifier("_value");
    EXPECT_EQ(field, method_ident_untyped(QString("_value")));
    internal::class_builder_base base("Base", "A base.");
    base.module("test").constructor("( self, value: Integer = 1 )",
                                    new internal::object_value_plain_function(2, [field](auto arguments) -> Any {
                                        arguments[0].setFieldValue(field, arguments[1]);
                                        return {};
                                    }));
    internal::property_builder<const Integer> property("Base", "value");
    property.assign_get_set_field(field, Integer::typeMask()).assign_doc("The value.");
    base.field_entry("_value", Integer::typeMask()).property_entry(property);
    base.add_entry(internal::method_builder_base("Base", "todo").signature("self").create_abstract_function([] { return string_type(); }).build());
    const Class_Generic cls = base.build();
    EXPECT_EQ(find_module("test").get("Base"), cls.any());

    internal::class_builder_base derived("Derived", "");
    int finalized = 0;
    derived.base(cls).script_class().finalizer([&](const Any& self) { finalized += self.fieldValue(field) == Any(9); });
    {
        const Any object = derived.build().construct({});
        EXPECT_TRUE(cls.instanceType().matches(object));
        const Property value = Class_Generic::of(object).find(method_ident_untyped(QString("value")))->property;
        EXPECT_EQ(value.read(object), Any(1));
        EXPECT_EQ(TextOf([&] { value.write(object, String("x")); }), "Base.value: Integer expected, got String \"x\".");
        value.write(object, 9);
        EXPECT_EQ(TextOf([&] { object.invoke(method_ident_untyped(QString("todo"))); }), "Base.todo must be overridden (String).");
        EXPECT_EQ(TextOf([&] { object.invoke(field); }), "Derived has no method \"_value\".");
        EXPECT_THROW(internal::cast_object(5, cls), internal::bad_argument);
    }
    EXPECT_EQ(finalized, 1);

    // A getter or setter that wants more is a fault of the program's.
    const int faults = internal::assert_error_count();
    const Any two = I_Invokable_Generic::make("f", Signature("self, a"), [](auto) -> Any { return {}; });
    const Any three = I_Invokable_Generic::make("f", Signature("self, a, b"), [](auto) -> Any { return {}; });
    const Any defaults = I_Invokable_Generic::make("f", Signature("( self, a: Integer = 1 )"), [](auto) -> Any { return {}; });
    internal::property_builder<Any>("Base", "p").assign_getter_value(defaults).assign_setter_value(two);
    EXPECT_EQ(internal::assert_error_count(), faults);
    internal::property_builder<Any>("Base", "p").assign_getter_value(two).assign_setter_value(three);
    EXPECT_EQ(internal::assert_error_count(), faults + 2);
}
