// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"

#include <QDialog>
#include <QElapsedTimer>

class QComboBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

/// The file forms that rows leave by.
enum class ExportForm { Csv, Json, Parquet };

/// The statement that writes the rows of a query to a file.
QString ExportStatement(const QString& query, const QString& path, ExportForm form);

/// Writes the rows of a query to a file, by the engine, on a worker: progress, and
/// a way to stop. The file appears under its name when it is whole; what was there
/// before is replaced then and not earlier.
class ExportDialog : public QDialog
{
    Q_OBJECT

public:
    ExportDialog(const rc::Ref<HF::I_LDatabase>& database, const QString& query, const QString& proposedName,
                 QWidget* parent = nullptr);
    ~ExportDialog() override;

    void SetTarget(const QString& path, ExportForm form);
    void Start();
    bool IsRunning() const { return bool(m_query); }
    void Stop();
    /// Why the last run failed; empty when it did not.
    const QString& get_Error() const { return m_error; }

    void reject() override;

signals:
    void Finished(bool written);

private:
    void ChoosePath();
    void FormChosen();
    void ShowProgress();
    void Done(const QList<HF::LQueryResult>& results);

    rc::Weak<HF::I_LDatabase> m_database;
    QString m_text;
    QComboBox* m_form;
    QLineEdit* m_path;
    QProgressBar* m_progress;
    QLabel* m_state;
    QPushButton* m_start;
    QPushButton* m_close;
    rc::Ptr<HF::I_LSqlQuery> m_query;
    QString m_part; ///< where the rows are written meanwhile
    QString m_error;
    bool m_stopped = false;
    QElapsedTimer m_time;
};
