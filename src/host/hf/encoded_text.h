// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/export.h"

#include <QByteArray>
#include <QIODevice>
#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

class QTextCodec;
class QTextDecoder;
class QTextEncoder;

namespace HF {

/// Text that goes to a device in an encoding. A failure is remembered, and what
/// follows it is dropped; nothing is thrown. One thread, but for get_Error.
class HF_EXPORT LEncodedWriter
{
public:
    /// A name that no codec answers to stands for the locale's encoding. No
    /// byte-order mark is written. The device is open.
    LEncodedWriter(std::unique_ptr<QIODevice> device, const QString& encoding);
    ~LEncodedWriter();
    LEncodedWriter(const LEncodedWriter&) = delete;
    LEncodedWriter& operator=(const LEncodedWriter&) = delete;

    void Write(QStringView text);
    void WriteUtf8(std::string_view text);
    /// Writes out what is left and closes the device.
    void Close();

    /// Whether the encoding has the code point; empty when it has all of them.
    std::function<bool(char32_t)> get_CanWrite() const;
    /// What went wrong with the device or the encoding; empty while all is well.
    QString get_Error() const { return m_error; }

private:
    void Append(const char* bytes, qsizetype size);
    void Flush();

    std::unique_ptr<QIODevice> m_device;
    const QTextCodec* m_codec;
    std::unique_ptr<QTextEncoder> m_encoder; ///< null for UTF-8
    bool m_isUnicode;
    QByteArray m_buffer;
    QString m_error;
};

/// Text that comes from a device in an encoding, in blocks. A byte-order mark
/// decides over the encoding's name and is dropped. One thread.
class HF_EXPORT LEncodedReader
{
public:
    /// An empty name stands for UTF-8, one that no codec answers to for the
    /// locale's encoding. The device is open.
    LEncodedReader(std::unique_ptr<QIODevice> device, const QString& encoding);
    ~LEncodedReader();
    LEncodedReader(const LEncodedReader&) = delete;
    LEncodedReader& operator=(const LEncodedReader&) = delete;

    /// The next block; false at the end and when the device failed.
    bool Read(QString& text);
    /// The lines, counted from 1, of the last block that hold bytes the encoding
    /// does not know, or a zero, at which the engine would take the text to end.
    const QList<qint64>& get_BadLines() const { return m_badLines; }
    /// Bytes read so far, and in all; 0 when that is not known.
    qint64 get_Position() const { return m_position; }
    qint64 get_Size() const;
    QString get_Encoding() const;
    QString get_Error() const { return m_error; }

private:
    void TakeMark();
    QString DecodeUtf8(bool last);
    QString DecodeByCodec(bool last);
    void NoteBad(QStringView before);

    std::unique_ptr<QIODevice> m_device;
    const QTextCodec* m_codec;
    std::unique_ptr<QTextDecoder> m_decoder; ///< null for UTF-8
    QByteArray m_bytes;
    QList<qint64> m_badLines;
    QString m_error;
    qint64 m_position = 0;
    qint64 m_line = 1; ///< of the first character of the next block
    bool m_started = false;
    bool m_atEnd = false;
};

/// Names of the encodings that a dump may have, the usual ones first.
HF_EXPORT QStringList DumpEncodings();

} // namespace HF
