// SPDX-License-Identifier: GPL-3.0-or-later
#include "e2e/orbis_process.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QProcessEnvironment>
#include <QThread>

namespace {
constexpr int Patience = 60000;
const char* const SettingsFile = "settings.ini";
} // namespace

QJsonArray RunResult::Json() const
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(out, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString() << "\n"
                                                     << out.left(2000).toStdString() << err.toStdString();
    return document.array();
}

QJsonObject RunResult::JsonObject() const
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(out, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString();
    return document.object();
}

QString ProgramTest::Program()
{
    return qEnvironmentVariable("ORBIS_BIN") + "/orbis";
}

void ProgramTest::SetUp()
{
    ASSERT_TRUE(m_folder.isValid());
    ASSERT_TRUE(QFile::exists(Program())) << "ORBIS_BIN does not hold the program: " << Program().toStdString();
}

QStringList ProgramTest::Files() const
{
    QStringList files = QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    files.removeIf([](const QString& name) { return name.startsWith(SettingsFile); });
    return files;
}

QByteArray ProgramTest::Read(const QString& name) const
{
    QFile file(Path(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return file.readAll();
}

void ProgramTest::Write(const QString& name, const QByteArray& bytes) const
{
    QFile file(Path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << name.toStdString();
    ASSERT_EQ(file.write(bytes), bytes.size());
}

std::unique_ptr<QProcess> ProgramTest::Prepare(const QStringList& arguments) const
{
    auto process = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("ORBIS_SETTINGS", Path(SettingsFile));
    environment.insert("HOME", m_folder.path());
    environment.remove("DISPLAY");
    process->setProcessEnvironment(environment);
    process->setWorkingDirectory(m_folder.path());
    process->setProgram(Program());
    process->setArguments(arguments);
    return process;
}

void StartAndWaitFor(QProcess& process, const QByteArray& said)
{
    process.start();
    ASSERT_TRUE(process.waitForStarted(Patience));
    QElapsedTimer timer;
    timer.start();
    while (!process.peek(100000).contains(said) && process.state() != QProcess::NotRunning
           && timer.elapsed() < Patience)
        process.waitForReadyRead(100);
    ASSERT_TRUE(process.peek(100000).contains(said)) << process.readAllStandardError().toStdString();
    QThread::msleep(200);
}

RunResult Finish(QProcess& process)
{
    RunResult result;
    if (process.state() != QProcess::NotRunning && !process.waitForFinished(Patience)) {
        ADD_FAILURE() << "the program does not end: " << process.arguments().join(' ').toStdString();
        process.kill();
        process.waitForFinished(Patience);
    }
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    return result;
}

RunResult ProgramTest::Run(const QStringList& arguments, const QByteArray& input) const
{
    const std::unique_ptr<QProcess> process = Prepare(arguments);
    process->start();
    if (!process->waitForStarted(Patience)) {
        ADD_FAILURE() << process->errorString().toStdString();
        return {};
    }
    process->write(input);
    process->closeWriteChannel();
    return Finish(*process);
}

void ProgramTest::Make(const QString& name, const QString& sql) const
{
    const RunResult created = Run({"create", name});
    ASSERT_EQ(created.exitCode, 0) << created.err.toStdString();
    const RunResult filled = Run({"sql", name, "-"}, sql.toUtf8());
    ASSERT_EQ(filled.exitCode, 0) << filled.err.toStdString();
}

QJsonArray ProgramTest::Rows(const QString& database, const QString& sql, const QStringList& options) const
{
    const RunResult result = Run(QStringList{"sql", database, "--format", "json", "-c", sql} + options);
    EXPECT_EQ(result.exitCode, 0) << sql.toStdString() << ": " << result.err.toStdString();
    return result.Json().at(0).toObject()["rows"].toArray();
}

bool StandsOnce(const QByteArray& text, const QByteArray& part)
{
    return text.count(part) == 1;
}
