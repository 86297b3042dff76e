// SPDX-License-Identifier: GPL-3.0-or-later
#include "bridge/class_writer.h"
#include "bridge_handles.h"
#include "weft/init.h"

#include <QBitmap>
#include <QColor>
#include <QPixmap>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace weft;

namespace {

struct Custom
{
    int number = 0;
};

class Conversion : public testing::Test
{
protected:
    void SetUp() override { internal::run_init_handlers(2); }
};

} // namespace

Q_DECLARE_METATYPE(Custom)

TEST_F(Conversion, VariantsBecomeValues)
{
    const struct
    {
        QVariant variant;
        Any::Kind kind;
        const char* text;
        const char* type;
    } rows[] = {
        {{}, Any::Kind::None, "none", "None"},
        {true, Any::Kind::Boolean, "true", "Boolean"},
        {-5, Any::Kind::Integer, "-5", "Integer"},
        {QVariant::fromValue(short(-7)), Any::Kind::Integer, "-7", "Integer"},
        {QVariant::fromValue('a'), Any::Kind::Integer, "97", "Integer"},
        {4294967295u, Any::Kind::Integer, "4294967295", "Integer"},
        {QVariant::fromValue(uchar(200)), Any::Kind::Integer, "200", "Integer"},
        {qlonglong(-9223372036854775807LL), Any::Kind::Integer, "-9223372036854775807", "Integer"},
        {QVariant::fromValue(ushort(65535)), Any::Kind::Integer, "65535", "Integer"},
        {1.5, Any::Kind::Float, "1.5", "Float"},
        {QVariant::fromValue(0.25f), Any::Kind::Float, "0.25", "Float"},
        {QString(), Any::Kind::Object, "", "String"},
        {QString("x"), Any::Kind::Object, "x", "String"},
        {QByteArray("b"), Any::Kind::Object, "b", "ByteArray"},
        {QVariant::fromValue(nullptr), Any::Kind::None, "none", "None"},
        {QStringList{"a", "b"}, Any::Kind::Object, "[a, b]", "List<String>"},
        {QVariant::fromValue(QList<int>{1, 2}), Any::Kind::Object, "[1, 2]", "List<Integer>"},
        {QVariantList{1, "x", QVariant()}, Any::Kind::Object, "[1, x, none]", "List<Any>"},
        {QSize(3, 4), Any::Kind::Object, "QSize", "QSize"},
        {QPoint(3, 4), Any::Kind::Object, "QVariant", "QVariant"},
    };
    for (const auto& row : rows) {
        const Any any = to_any(row.variant);
        EXPECT_EQ(any.kind(), row.kind) << row.text;
        EXPECT_EQ(to_text(any).ToQString().toStdString(), row.text);
        EXPECT_EQ(any.type().name().ToQString().toStdString(), row.type);
    }
}

TEST_F(Conversion, ValuesComeBackFromVariants)
{
    const QVariant rows[] = {true,  qlonglong(-5), 2.5, QString("x"), QByteArray("b"), QStringList{"a"},
                             QVariantList{1.5, QString("y")}, QSize(1, 2), QPoint(3, 4), QColor(1, 2, 3)};
    for (const QVariant& row : rows)
        EXPECT_EQ(to_qvariant(to_any(row)), row) << row.typeName();
    EXPECT_FALSE(to_qvariant(Any()).isValid());
    EXPECT_EQ(to_qvariant(List(Integer::typeMask(), {1, 2})), QVariant::fromValue(QList<int>{1, 2}));
    // What has no native form is held as it is; a type of a program's own survives.
    const HashMap map;
    EXPECT_EQ(to_any(to_qvariant(map)), Any(map));
    const Any custom = to_any(QVariant::fromValue(Custom{7}));
    EXPECT_TRUE(qt::QVariant::typeMask().matches(custom));
    EXPECT_EQ(to_qvariant(custom).value<Custom>().number, 7);
    EXPECT_THROW(to_qvariant(List(Integer::typeMask(), {2147483648})), internal::integer_overflow);
}

TEST_F(Conversion, IntegersKeepTheirRange)
{
    using namespace qt::details;
    EXPECT_EQ(argument<int>::from(2147483647), 2147483647);
    try {
        argument<int>::from(2147483648);
        FAIL();
    } catch (const std::exception& error) {
        EXPECT_TRUE(QByteArray(error.what()).startsWith("Integer overflow on cast ")) << error.what();
    }
    EXPECT_THROW(argument<quint8>::from(-1), internal::integer_overflow);
    EXPECT_THROW(argument<unsigned>::from(-1), internal::integer_overflow);
    EXPECT_EQ(argument<qint64>::from(std::numeric_limits<qint64>::min()), std::numeric_limits<qint64>::min());
    EXPECT_EQ(static_cast<unsigned>(argument<QFlags<Qt::ItemFlag>>::from(4294967295).toInt()), 0xffffffffu);
    EXPECT_THROW(argument<Qt::ItemFlag>::from(4294967296), internal::integer_overflow);
    EXPECT_THROW(argument<int>::from(1.0), internal::bad_argument);
    EXPECT_THROW(argument<int>::from(true), internal::bad_argument);
    EXPECT_THROW(argument<bool>::from(1), internal::bad_argument);
    EXPECT_EQ(argument<double>::from(3), 3.0);
    // The same through a call: the overflow passes, a wrong type names the function.
    const Any edit = qt::QLineEdit::getClass().construct({});
    const class_entry* length = qt::QLineEdit::getClass().find(method_ident_untyped(QString("maxLength")));
    EXPECT_THROW(length->property.write(edit, 2147483648), internal::integer_overflow);
    try {
        length->property.write(edit, String("x"));
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.message().ToQString(), "QLineEdit.maxLength: Integer expected, got String \"x\".");
    }
}

TEST_F(Conversion, ValueClassesConvertIntoOneAnother)
{
    const Any bitmap = qt::QBitmap(::QBitmap(4, 5)).any();
    EXPECT_EQ(qt::details::argument<::QPixmap>::from(bitmap).size(), QSize(4, 5));
    EXPECT_THROW(qt::details::argument<::QBitmap>::from(qt::QPixmap(::QPixmap(1, 1)).any()), internal::bad_argument);
    const Any variant = I_Convertible::tryInto(qt::QSize(::QSize(1, 2)).any(), qt::QVariant::typeMask());
    EXPECT_EQ(qt::QVariant::cast(variant).get().toSize(), QSize(1, 2));
    const Any real = I_Convertible::tryInto(qt::QSize(::QSize(1, 2)).any(), qt::QSizeF::typeMask());
    EXPECT_EQ(qt::QSizeF::cast(real).get(), QSizeF(1, 2));
    EXPECT_TRUE(I_Convertible::tryInto(qt::QSize(::QSize(1, 2)).any(), qt::QColor::typeMask()).isNone());
    EXPECT_EQ(qt::QSize(::QSize(1, 2)).any(), qt::QSize(::QSize(1, 2)).any());
    const Any point = qt::QPoint(::QPoint(1, 2)).any();
    const Any copy = point.object()->clone();
    qt::QPoint::getClass().find(method_ident_untyped(QString("x")))->property.write(copy, 9);
    EXPECT_EQ(qt::QPoint(copy).get(), QPoint(9, 2));
    EXPECT_EQ(qt::QPoint(point).get(), QPoint(1, 2));
    const Any folder = qt::QTemporaryDir::getClass().construct({});
    const ::QTemporaryDir* native = qt::QTemporaryDir::cast(folder);
    ASSERT_TRUE(native);
    EXPECT_TRUE(native->isValid());
}
