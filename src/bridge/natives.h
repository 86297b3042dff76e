// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "bridge/event_ref.h"
#include "bridge/qsignal.h"
#include "weft/any.h"

#include <QByteArray>
#include <QPointer>
#include <QSizePolicy>
#include <QString>

#include <memory>
#include <optional>

class QAbstractItemModel;
class QAbstractItemView;
class QAction;
class QBitmap;
class QChildEvent;
class QColor;
class QComboBox;
class QFormLayout;
class QIODevice;
class QIcon;
class QImage;
class QKeySequence;
class QLayoutItem;
class QLineEdit;
class QPixmap;
class QPoint;
class QSpacerItem;
class QTableWidget;
class QTableWidgetItem;
class QTemporaryDir;
class QTextEdit;
class QTextStream;
class QTimerEvent;

namespace weft::internal {
class qmodel_impl;
}

/// What the tables of the bound classes call where a member of the native class
/// does not fit: natives that can go while a script holds them, arguments of
/// several types, and values by pointer. All throw bad_argument.
namespace weft::qt::details {

using meta_object = const ::QMetaObject*;
using temporary_dir = std::shared_ptr<::QTemporaryDir>;
inline ::QTemporaryDir* raw(const temporary_dir& folder)
{
    return folder.get();
}

/// A stream and the device that it must not outlive.
struct text_stream_box
{
    QPointer<::QIODevice> device;
    std::unique_ptr<::QTextStream> stream;
    ~text_stream_box();
};
using text_stream = std::shared_ptr<text_stream_box>;
text_stream make_stream(::QIODevice& device);
::QTextStream& living(const text_stream& stream);
::QTextStream* raw(const text_stream& stream);

/// A spacer: of the script until a layout gets it, which may then delete it.
struct spacer_box
{
    ::QSpacerItem* item = nullptr;
    bool isOwned = true;
    ~spacer_box();
};
using spacer_ref = std::shared_ptr<spacer_box>;
spacer_ref make_spacer(int width, int height, ::QSizePolicy::Policy horizontal, ::QSizePolicy::Policy vertical);
::QSpacerItem& living(const spacer_ref& spacer);
::QSpacerItem* give_away(const spacer_ref& spacer);
/// A spacer or a layout.
::QLayoutItem& layout_item(const Any& any);

/// A cell of a table widget, which may delete it at any time: it is looked for
/// in the table before each use. Without a table the script owns it.
struct table_item_box
{
    QPointer<::QTableWidget> table;
    ::QTableWidgetItem* item = nullptr;
    int row = -1, column = -1; ///< where it was last
    bool isOwned = false;
    ~table_item_box();
};
using table_item = std::shared_ptr<table_item_box>;
Any table_item_of(::QTableWidget& table, int row, int column);
::QTableWidgetItem& living(const table_item& item);
Any clone_item(const table_item& item);

// Events.
::QEvent& living(const event_ref& event);
::QChildEvent& child_event(const event_ref& event);
::QTimerEvent& timer_event(const event_ref& event);
int event_key(const event_ref& event);
QString event_text(const event_ref& event);
::QPoint event_position(const event_ref& event);
int event_button(const event_ref& event);

// Values from several kinds of arguments.
::QBitmap make_bitmap(const Any& widthOrFile, const Any& heightOrFormat);
::QPixmap make_pixmap(const Any& widthOrFile, int height);
::QImage make_image(const Any& widthOrFile, int height);
::QIcon make_icon(const Any& source);
::QColor make_color(const Any& redOrName, int green, int blue, int alpha);
::QKeySequence make_keys(const Any& keys);
void make_completer(const Any& self, const Any& wordsOrModel, ::QObject* parent);
bool save_pixmap(const ::QPixmap& pixmap, const Any& fileOrDevice, const QString& format, int quality);
void convert_from_image(::QPixmap& pixmap, const Any& imageOrFile, const Any& format, int flags);
/// A format by name; null for an empty one. Valid until the next call.
const char* format_name(const QString& format);
qint64 read_size(qint64 size);

// Widgets.
void insert_item(::QComboBox& box, int index, const Any& first, const Any& second, const Any& third);
Any add_action(::QLineEdit& edit, const Any& actionOrIcon, int position);
void add_form_row(::QFormLayout& form, const QString& label, ::QObject& field);
void merge_format(::QTextEdit& edit, const Any& format);
int selected_row(const ::QAbstractItemView& view);
void select_row(::QAbstractItemView& view, int row);
Any selection_signal(const ::QAbstractItemView& view, const char* signal);
/// Throws for a model that no script made.
internal::qmodel_impl& script_model(::QAbstractItemModel& model);

// Objects.
void set_parent(::QObject& object, ::QObject* parent);
int receivers(const ::QObject& object, const QString& signal);
bool is_signal_connected(const ::QObject& object, const Any& signal);
Any find_children(const ::QObject& object, const Any& name, Qt::FindChildOptions options);
/// Those that scripts know of: without the bridge's own helpers.
Any children(const ::QObject& object);
int sender_signal_index(const ::QObject& object);
Any sender(const ::QObject& object);
bool disconnect_any(const Any& connectionOrSender, const Any& receiver, const std::optional<QString>& method);
void detach(const Any& self);

} // namespace weft::qt::details
