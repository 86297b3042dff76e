// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "uik/settings.h"
#include "weft/prompter.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace support {

/// Answers what the test put down and keeps what was asked.
class Prompter : public weft::I_Prompter
{
public:
    QStringList told, asked;
    bool yes = true;
    std::optional<QString> text;
    QString path, caption, filter, startPath;

    Prompter() { weft::set_prompter(this); }
    ~Prompter() override { weft::set_prompter(nullptr); }

    void tell(const QString& message) override { told << message; }
    bool ask(const QString& question, bool) override
    {
        asked << question;
        return yes;
    }
    std::optional<QString> input(const weft::input_request& request) override
    {
        asked << request.prompt;
        return text;
    }
    QString save_file(QWidget*, const QString& title, const QString& pattern, const QString& start) override
    {
        caption = title, filter = pattern, startPath = start;
        return path;
    }
    QString open_file(QWidget* parent, const QString& title, const QString& pattern, const QString& start) override
    {
        return save_file(parent, title, pattern, start);
    }
};

/// A settings file of the test's own.
class OwnSettings : public testing::Test
{
protected:
    void SetUp() override { uik::SetSettingsFile(FileName()); }

    QString FileName() const { return m_folder.filePath(QStringLiteral("settings.ini")); }
    QString Path(const QString& name) const { return m_folder.filePath(name); }

    /// What stands in the file once everything is written.
    QString StoredText() const
    {
        uik::settings().sync();
        QFile file(FileName());
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    QTemporaryDir m_folder;
};

} // namespace support
