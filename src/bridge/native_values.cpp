// SPDX-License-Identifier: GPL-3.0-or-later
#include "bridge/natives.h"

#include "bridge/class_writer.h"
#include "bridge/qobject_impl.h"
#include "bridge_handles.h"

#include <QBitmap>
#include <QColor>
#include <QCompleter>
#include <QIODevice>
#include <QIcon>
#include <QImage>
#include <QKeySequence>
#include <QPixmap>
#include <QStringListModel>
#include <QTextStream>

namespace weft::qt::details {

namespace {

/// A file name among the arguments; nothing for anything else.
std::optional<QString> FileName(const Any& any)
{
    const auto text = cast_string(any);
    return text ? std::optional(text->ToQString()) : std::nullopt;
}

int OptionalSize(const Any& any)
{
    return any.isNone() ? 0 : argument<int>::from(any);
}

} // namespace

text_stream_box::~text_stream_box()
{
    // The stream would flush into a device that is gone.
    if (!device && stream)
        stream->setDevice(nullptr);
}

text_stream make_stream(::QIODevice& device)
{
    auto box = std::make_shared<text_stream_box>();
    box->device = &device;
    box->stream = std::make_unique<::QTextStream>(&device);
    return box;
}

::QTextStream& living(const text_stream& stream)
{
    if (!stream || !stream->device)
        throw internal::bad_argument(QTextStream::typeMask(), {}, "The device of the stream is gone.");
    return *stream->stream;
}

::QTextStream* raw(const text_stream& stream)
{
    return stream && stream->device ? stream->stream.get() : nullptr;
}

::QBitmap make_bitmap(const Any& widthOrFile, const Any& heightOrFormat)
{
    if (const auto file = FileName(widthOrFile)) {
        const auto format = FileName(heightOrFormat);
        return ::QBitmap(*file, format ? format_name(*format) : nullptr);
    }
    const int width = OptionalSize(widthOrFile), height = OptionalSize(heightOrFormat);
    ::QBitmap bitmap(width, height);
    if (!bitmap.isNull())
        bitmap.clear();
    return bitmap;
}

::QPixmap make_pixmap(const Any& widthOrFile, int height)
{
    if (const auto file = FileName(widthOrFile))
        return ::QPixmap(*file);
    ::QPixmap pixmap(OptionalSize(widthOrFile), height);
    if (!pixmap.isNull())
        pixmap.fill(Qt::transparent);
    return pixmap;
}

::QImage make_image(const Any& widthOrFile, int height)
{
    if (const auto file = FileName(widthOrFile))
        return ::QImage(*file);
    ::QImage image(OptionalSize(widthOrFile), height, ::QImage::Format_ARGB32);
    if (!image.isNull())
        image.fill(Qt::transparent);
    return image;
}

::QIcon make_icon(const Any& source)
{
    if (source.isNone())
        return {};
    if (const auto file = FileName(source))
        return ::QIcon(*file);
    return ::QIcon(argument<::QPixmap>::from(source));
}

::QColor make_color(const Any& redOrName, int green, int blue, int alpha)
{
    if (const auto name = FileName(redOrName)) {
        const ::QColor color(*name);
        if (!color.isValid())
            throw internal::bad_argument(QColor::typeMask(), redOrName,
                                         QStringLiteral("\"%1\" is no colour.").arg(*name));
        return color;
    }
    return ::QColor(argument<int>::from(redOrName), green, blue, alpha);
}

::QKeySequence make_keys(const Any& keys)
{
    if (keys.isInteger())
        return ::QKeySequence(argument<int>::from(keys));
    return ::QKeySequence(string_argument(keys));
}

void make_completer(const Any& self, const Any& wordsOrModel, ::QObject* parent)
{
    using Native = internal::qobject_impl<::QCompleter>;
    if (List::cast(wordsOrModel))
        adopt_qobject(self, new Native(argument<QStringList>::from(wordsOrModel), parent));
    else if (wordsOrModel.isNone())
        adopt_qobject(self, new Native(parent));
    else
        adopt_qobject(self, new Native(&argument<::QAbstractItemModel>::from(wordsOrModel), parent));
}

bool save_pixmap(const ::QPixmap& pixmap, const Any& fileOrDevice, const QString& format, int quality)
{
    if (const auto file = FileName(fileOrDevice))
        return pixmap.save(*file, format_name(format), quality);
    return pixmap.save(&argument<::QIODevice>::from(fileOrDevice), format_name(format), quality);
}

void convert_from_image(::QPixmap& pixmap, const Any& imageOrFile, const Any& format, int flags)
{
    const Qt::ImageConversionFlags how = Qt::ImageConversionFlags::fromInt(flags);
    ::QImage image;
    if (const auto file = FileName(imageOrFile)) {
        const auto name = FileName(format);
        image = ::QImage(*file, name ? format_name(*name) : nullptr);
    } else if (imageOrFile.isInteger()) {
        image = make_image(imageOrFile, OptionalSize(format));
    } else if (!imageOrFile.isNone()) {
        image = argument<::QImage>::from(imageOrFile);
    }
    pixmap.convertFromImage(image, how);
}

const char* format_name(const QString& format)
{
    static thread_local QByteArray name;
    name = format.toLatin1();
    return name.isEmpty() ? nullptr : name.constData();
}

qint64 read_size(qint64 size)
{
    constexpr qint64 Most = qint64(1) << 30;
    if (size < 0 || size > Most)
        throw_overflow(size, "size of a read");
    return size;
}

} // namespace weft::qt::details
