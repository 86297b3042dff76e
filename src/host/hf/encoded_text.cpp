// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/encoded_text.h"

#include <QFileDevice>
#include <QObject>
#include <QTextCodec>

#include <algorithm>
#include <array>
#include <atomic>

namespace HF {

namespace {

constexpr qsizetype BlockSize = 256 * 1024;
constexpr int MibUtf8 = 106;

const QTextCodec* CodecFor(const QString& name)
{
    const QTextCodec* codec = QTextCodec::codecForName(name.isEmpty() ? QByteArray("UTF-8") : name.toUtf8());
    return codec ? codec : QTextCodec::codecForLocale();
}

bool IsUtf8(const QTextCodec* codec)
{
    return codec->mibEnum() == MibUtf8;
}

bool IsUnicode(const QTextCodec* codec)
{
    const QByteArray name = codec->name().toUpper();
    return name.startsWith("UTF-") || name.startsWith("GB18030") || name.startsWith("ISO-10646");
}

/// Length of the well-formed UTF-8 sequence at `p`; 0 for a malformed one, -1
/// when it may go on behind the end.
int SequenceLength(const unsigned char* p, qsizetype left)
{
    const unsigned char first = p[0];
    if (first < 0x80)
        return 1;
    int length = 0;
    unsigned char low = 0x80, high = 0xBF;
    if (first >= 0xC2 && first <= 0xDF) {
        length = 2;
    } else if (first >= 0xE0 && first <= 0xEF) {
        length = 3;
        low = first == 0xE0 ? 0xA0 : 0x80;
        high = first == 0xED ? 0x9F : 0xBF; // no surrogates
    } else if (first >= 0xF0 && first <= 0xF4) {
        length = 4;
        low = first == 0xF0 ? 0x90 : 0x80;
        high = first == 0xF4 ? 0x8F : 0xBF;
    } else {
        return 0;
    }
    for (int i = 1; i < length; ++i) {
        if (i >= left)
            return -1;
        if (p[i] < low || p[i] > high)
            return 0;
        low = 0x80;
        high = 0xBF;
    }
    return length;
}

qint64 CountLines(QStringView text)
{
    return std::count(text.begin(), text.end(), QChar(u'\n'));
}

/// Keeps a U+FEFF at the beginning: a piece of a text has no mark of byte order.
QString PieceFromUtf8(const char* bytes, qsizetype size)
{
    QString text = QString::fromUtf8(bytes, size);
    if (QByteArrayView(bytes, size).startsWith("\xEF\xBB\xBF"))
        text.prepend(QChar(0xFEFF));
    return text;
}

} // namespace

LEncodedWriter::LEncodedWriter(std::unique_ptr<QIODevice> device, const QString& encoding)
    : m_device(std::move(device)), m_codec(CodecFor(encoding)), m_isUnicode(IsUnicode(m_codec))
{
    if (!IsUtf8(m_codec))
        m_encoder.reset(m_codec->makeEncoder(QTextCodec::IgnoreHeader));
    m_buffer.reserve(2 * BlockSize);
}

LEncodedWriter::~LEncodedWriter() = default;

void LEncodedWriter::Write(QStringView text)
{
    if (!m_encoder) {
        const QByteArray utf8 = text.toUtf8();
        Append(utf8.constData(), utf8.size());
        return;
    }
    if (!m_isUnicode && m_error.isEmpty() && !m_codec->canEncode(text)) {
        m_error = QObject::tr("The encoding \"%1\" has not all characters of: %2")
                      .arg(QString::fromLatin1(m_codec->name()), text.left(200).toString().simplified());
        return;
    }
    const QByteArray bytes = m_encoder->fromUnicode(text);
    Append(bytes.constData(), bytes.size());
}

void LEncodedWriter::WriteUtf8(std::string_view text)
{
    if (m_encoder)
        Write(PieceFromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    else
        Append(text.data(), static_cast<qsizetype>(text.size()));
}

void LEncodedWriter::Append(const char* bytes, qsizetype size)
{
    m_buffer.append(bytes, size);
    if (m_buffer.size() >= BlockSize)
        Flush();
}

void LEncodedWriter::Flush()
{
    if (m_error.isEmpty() && m_device->write(m_buffer) != m_buffer.size())
        m_error = m_device->errorString();
    m_buffer.resize(0);
}

void LEncodedWriter::Close()
{
    Flush();
    // QFile keeps a buffer of its own.
    auto* const file = qobject_cast<QFileDevice*>(m_device.get());
    if (m_error.isEmpty() && file && !file->flush())
        m_error = file->errorString();
    m_device->close();
    if (m_error.isEmpty() && file && file->error() != QFileDevice::NoError)
        m_error = file->errorString();
}

std::function<bool(char32_t)> LEncodedWriter::get_CanWrite() const
{
    if (m_isUnicode)
        return {};
    // A codec takes some characters that it gives back as others; a mark of byte order it drops.
    enum : char { Unknown, Writes, WritesNot };
    auto known = std::make_shared<std::array<std::atomic<char>, 0x10000>>();
    return [codec = m_codec, known](char32_t code) {
        const auto comesBack = [&] {
            const QString text = QString::fromUcs4(&code, 1);
            return code != 0xFEFF && codec->canEncode(text) && codec->toUnicode(codec->fromUnicode(text)) == text;
        };
        if (code >= known->size())
            return comesBack();
        std::atomic<char>& answer = (*known)[code];
        if (answer.load(std::memory_order_relaxed) == Unknown)
            answer.store(comesBack() ? Writes : WritesNot, std::memory_order_relaxed);
        return answer.load(std::memory_order_relaxed) == Writes;
    };
}

LEncodedReader::LEncodedReader(std::unique_ptr<QIODevice> device, const QString& encoding)
    : m_device(std::move(device)), m_codec(CodecFor(encoding))
{
}

LEncodedReader::~LEncodedReader() = default;

qint64 LEncodedReader::get_Size() const
{
    return m_device->isSequential() ? 0 : m_device->size();
}

QString LEncodedReader::get_Encoding() const
{
    return QString::fromLatin1(m_codec->name());
}

/// The mark of the text tells its encoding better than anybody's memory.
void LEncodedReader::TakeMark()
{
    struct Mark
    {
        QByteArrayView bytes;
        const char* codec;
    };
    static constexpr Mark marks[] = {{"\xEF\xBB\xBF", "UTF-8"},
                                     {QByteArrayView("\xFF\xFE\0\0", 4), "UTF-32LE"},
                                     {QByteArrayView("\0\0\xFE\xFF", 4), "UTF-32BE"},
                                     {"\xFF\xFE", "UTF-16LE"},
                                     {"\xFE\xFF", "UTF-16BE"}};
    for (const Mark& mark : marks) {
        if (!m_bytes.startsWith(mark.bytes))
            continue;
        m_codec = CodecFor(QString::fromLatin1(mark.codec));
        m_bytes.remove(0, mark.bytes.size());
        break;
    }
    if (!IsUtf8(m_codec))
        m_decoder.reset(m_codec->makeDecoder(QTextCodec::IgnoreHeader));
}

bool LEncodedReader::Read(QString& text)
{
    text.clear();
    m_badLines.clear();
    if (m_atEnd)
        return false;
    const qsizetype kept = m_bytes.size();
    m_bytes.resize(kept + BlockSize);
    qsizetype size = kept;
    // Pipes give little at a time; the mark wants its first bytes together.
    while (size < m_bytes.size()) {
        const qint64 count = m_device->read(m_bytes.data() + size, m_bytes.size() - size);
        if (count < 0)
            m_error = m_device->errorString();
        if (count <= 0 && !(count == 0 && m_device->isSequential() && m_device->waitForReadyRead(-1))) {
            m_atEnd = true;
            break;
        }
        size += count;
        m_position += count;
        if (m_started || size >= 4)
            break;
    }
    m_bytes.resize(size);
    if (!m_started) {
        TakeMark();
        m_started = true;
    }
    text = m_decoder ? DecodeByCodec(m_atEnd) : DecodeUtf8(m_atEnd);
    for (qsizetype at = text.indexOf(QChar(u'\0')); at >= 0; at = text.indexOf(QChar(u'\0'), at + 1))
        NoteBad(QStringView(text).left(at));
    m_line += CountLines(text);
    return m_error.isEmpty() && (!m_atEnd || !text.isEmpty() || !m_badLines.isEmpty());
}

void LEncodedReader::NoteBad(QStringView before)
{
    const qint64 line = m_line + CountLines(before);
    if (!m_badLines.contains(line))
        m_badLines.append(line);
}

QString LEncodedReader::DecodeUtf8(bool last)
{
    const auto* const bytes = reinterpret_cast<const unsigned char*>(m_bytes.constData());
    const qsizetype size = m_bytes.size();
    // A sequence that the block cuts waits for the next one.
    qsizetype whole = size;
    for (qsizetype back = 1; !last && back <= std::min<qsizetype>(3, size); ++back) {
        if ((bytes[size - back] & 0xC0) == 0x80)
            continue;
        if (SequenceLength(bytes + size - back, back) < 0)
            whole = size - back;
        break;
    }
    const QString text = PieceFromUtf8(m_bytes.constData(), whole);
    if (text.contains(QChar::ReplacementCharacter)) {
        qint64 line = m_line;
        for (qsizetype i = 0; i < whole;) {
            const int length = SequenceLength(bytes + i, whole - i);
            if (length <= 0 && !m_badLines.contains(line))
                m_badLines.append(line);
            line += bytes[i] == '\n';
            i += std::max(length, 1);
        }
    }
    m_bytes.remove(0, whole);
    return text;
}

QString LEncodedReader::DecodeByCodec(bool last)
{
    const QString text = m_decoder->toUnicode(m_bytes.constData(), static_cast<int>(m_bytes.size()));
    m_bytes.resize(0);
    const bool mayHold = IsUnicode(m_codec) && !m_decoder->hasFailure();
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        const bool isPair = c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (isPair)
            ++i;
        else if ((c == QChar::ReplacementCharacter && !mayHold) || (c.isSurrogate() && (i + 1 < text.size() || last)))
            NoteBad(QStringView(text).left(i));
    }
    if (last && m_decoder->needsMoreData())
        NoteBad(text);
    return text;
}

QStringList DumpEncodings()
{
    QStringList names;
    for (const QByteArray& name : QTextCodec::availableCodecs())
        names.append(QString::fromLatin1(name));
    names.removeDuplicates();
    names.sort(Qt::CaseInsensitive);
    const QStringList usual{QStringLiteral("UTF-8"), QStringLiteral("UTF-16LE"), QStringLiteral("ISO-8859-1"),
                            QStringLiteral("windows-1252")};
    for (qsizetype i = 0; i < usual.size(); ++i) {
        names.removeAll(usual[i]);
        names.insert(i, usual[i]);
    }
    return names;
}

} // namespace HF
