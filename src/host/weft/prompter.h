// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/export.h"

#include <QMessageBox>
#include <QString>

#include <optional>

class QWidget;

namespace weft {

/// What a question to the user is made of.
struct ORB_SHARED input_request
{
    QString title;
    QString prompt;
    QString initial;
    QString accept_button; ///< empty: the usual one
};

/// The way to the user: message boxes and small dialogs by default, replaced by
/// programs without windows and by tests. Calls may come from any thread; the
/// default one shows its windows on the main thread.
class ORB_SHARED I_Prompter
{
public:
    virtual ~I_Prompter() = default;
    virtual void tell(const QString& text) = 0;
    virtual bool ask(const QString& text, bool yesIsDefault) = 0;
    /// Nothing when cancelled.
    virtual std::optional<QString> input(const input_request& request) = 0;
    /// A path to write to; empty when cancelled.
    virtual QString save_file(QWidget* parent, const QString& caption, const QString& filter, const QString& path) = 0;
    /// A path that exists; empty when cancelled.
    virtual QString open_file(QWidget* parent, const QString& caption, const QString& filter, const QString& path) = 0;
};

ORB_SHARED I_Prompter& prompter();
/// Not owned; null brings the default one back.
ORB_SHARED void set_prompter(I_Prompter* prompter);

/// A question with Yes and No. Without a window system it goes to the error
/// stream, and the answer is no.
ORB_SHARED bool ask(const QString& text, QMessageBox::StandardButton preselected = QMessageBox::Yes);

/// The save dialog; empty when cancelled.
ORB_SHARED QString file_save_dialog(const QString& caption, const QString& filter, const QString& path,
                                    QWidget* parent = nullptr);
/// The open dialog with the path chosen beforehand; empty when cancelled.
ORB_SHARED QString file_open_dialog(const QString& caption, const QString& filter, const QString& path,
                                    QWidget* parent = nullptr);

} // namespace weft
