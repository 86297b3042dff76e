// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// How a run of the program ended.
struct RunResult
{
    int exitCode = -1; ///< negative: a signal killed it, or it did not start
    QByteArray out;
    QByteArray err;

    /// The output as a list; a failure of the test when it is no JSON document.
    QJsonArray Json() const;
    QJsonObject JsonObject() const;
};

/// A folder of its own with settings of its own, in which the program runs.
class ProgramTest : public testing::Test
{
protected:
    void SetUp() override;

    QString Path(const QString& name) const { return m_folder.filePath(name); }
    /// Everything in the folder but the settings.
    QStringList Files() const;
    QByteArray Read(const QString& name) const;
    void Write(const QString& name, const QByteArray& bytes) const;

    /// A process that is ready to start, for tests that talk to it.
    std::unique_ptr<QProcess> Prepare(const QStringList& arguments) const;
    RunResult Run(const QStringList& arguments, const QByteArray& input = {}) const;
    /// Makes a database in the folder and runs the text in it.
    void Make(const QString& name, const QString& sql) const;
    /// The rows of one query, as JSON.
    QJsonArray Rows(const QString& database, const QString& sql, const QStringList& options = {}) const;

    static QString Program();

    QTemporaryDir m_folder;
};

/// Starts a process and waits until its output holds the text, and a moment more.
void StartAndWaitFor(QProcess& process, const QByteArray& said);

/// Waits for the end of a started process.
RunResult Finish(QProcess& process);

/// True when the text occurs once and only once.
bool StandsOnce(const QByteArray& text, const QByteArray& part);
