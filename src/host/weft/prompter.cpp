// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/prompter.h"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QThread>

#include <atomic>
#include <cstdio>

namespace weft {

namespace {

bool HasWindows()
{
    return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr;
}

void WriteToErrorStream(const QString& text)
{
    std::fprintf(stderr, "%s\n", qUtf8Printable(text));
}

/// Runs the function on the main thread and waits for its result.
template <class F>
auto OnMainThread(F function)
{
    QCoreApplication* application = QCoreApplication::instance();
    if (application->thread() == QThread::currentThread())
        return function();
    std::invoke_result_t<F> result{};
    QMetaObject::invokeMethod(
        application, [&] { result = function(); }, Qt::BlockingQueuedConnection);
    return result;
}

QString RunFileDialog(QWidget* parent, const QString& caption, const QString& filter, const QString& path,
                      QFileDialog::AcceptMode mode)
{
    QFileDialog dialog(parent ? parent : QApplication::activeWindow(), caption, QString(), filter);
    dialog.setAcceptMode(mode);
    dialog.setFileMode(mode == QFileDialog::AcceptSave ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (!path.isEmpty())
        dialog.selectFile(path);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return dialog.selectedFiles().value(0);
}

class DialogPrompter : public I_Prompter
{
public:
    void tell(const QString& text) override
    {
        if (!HasWindows()) {
            WriteToErrorStream(text);
            return;
        }
        // Nobody waits for a message; a worker goes on at once.
        auto show = [text] {
            QMessageBox::information(QApplication::activeWindow(), QCoreApplication::applicationName(), text);
        };
        if (QCoreApplication::instance()->thread() == QThread::currentThread())
            show();
        else
            QMetaObject::invokeMethod(QCoreApplication::instance(), show, Qt::QueuedConnection);
    }

    bool ask(const QString& text, bool yesIsDefault) override
    {
        if (!HasWindows()) {
            WriteToErrorStream(text);
            return false;
        }
        return OnMainThread([&] {
            return QMessageBox::question(QApplication::activeWindow(), QCoreApplication::applicationName(), text,
                                         QMessageBox::Yes | QMessageBox::No,
                                         yesIsDefault ? QMessageBox::Yes : QMessageBox::No) == QMessageBox::Yes;
        });
    }

    std::optional<QString> input(const input_request& request) override
    {
        if (!HasWindows())
            return std::nullopt;
        return OnMainThread([&]() -> std::optional<QString> {
            QInputDialog dialog(QApplication::activeWindow());
            dialog.setWindowTitle(request.title.isEmpty() ? QCoreApplication::applicationName() : request.title);
            dialog.setLabelText(request.prompt);
            dialog.setTextValue(request.initial);
            if (!request.accept_button.isEmpty())
                dialog.setOkButtonText(request.accept_button);
            if (dialog.exec() != QDialog::Accepted)
                return std::nullopt;
            return dialog.textValue();
        });
    }

    QString save_file(QWidget* parent, const QString& caption, const QString& filter, const QString& path) override
    {
        if (!HasWindows())
            return {};
        return OnMainThread([&] { return RunFileDialog(parent, caption, filter, path, QFileDialog::AcceptSave); });
    }

    QString open_file(QWidget* parent, const QString& caption, const QString& filter, const QString& path) override
    {
        if (!HasWindows())
            return {};
        return OnMainThread([&] { return RunFileDialog(parent, caption, filter, path, QFileDialog::AcceptOpen); });
    }
};

std::atomic<I_Prompter*> Replacement{nullptr};

} // namespace

I_Prompter& prompter()
{
    static DialogPrompter* windows = new DialogPrompter;
    I_Prompter* replacement = Replacement.load();
    return replacement ? *replacement : *windows;
}

void set_prompter(I_Prompter* prompter)
{
    Replacement.store(prompter);
}

bool ask(const QString& text, QMessageBox::StandardButton preselected)
{
    return prompter().ask(text, preselected == QMessageBox::Yes);
}

QString file_save_dialog(const QString& caption, const QString& filter, const QString& path, QWidget* parent)
{
    return prompter().save_file(parent, caption, filter, path);
}

QString file_open_dialog(const QString& caption, const QString& filter, const QString& path, QWidget* parent)
{
    return prompter().open_file(parent, caption, filter, path);
}

} // namespace weft
