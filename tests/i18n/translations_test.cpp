// SPDX-License-Identifier: GPL-3.0-or-later
// The translation files against the texts that stand in the sources today.
#include "hf/property_id.h"
#include "i18n/translations.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QMap>
#include <QObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QXmlStreamReader>

namespace {

const QString Root = QStringLiteral(ORBIS_SOURCE_DIR);

struct Message
{
    QStringList translations; ///< one, or a form for each number
    bool finished = true;
    bool operator==(const Message&) const = default;
};

/// Messages by context and source text.
using Messages = QMap<QPair<QString, QString>, Message>;

Messages ReadMessages(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    Messages result;
    QXmlStreamReader xml(&file);
    QString context, source;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == u"name") {
            context = xml.readElementText();
        } else if (xml.name() == u"source") {
            source = xml.readElementText();
        } else if (xml.name() == u"translation") {
            Message message;
            message.finished = !xml.attributes().hasAttribute(QLatin1String("type"));
            QString text;
            while (!(xml.readNext() == QXmlStreamReader::EndElement && xml.name() == u"translation") && !xml.atEnd())
                if (xml.isStartElement() && xml.name() == u"numerusform")
                    message.translations.append(xml.readElementText());
                else if (xml.isCharacters())
                    text += xml.text();
            if (message.translations.isEmpty())
                message.translations.append(text);
            result.insert({context, source}, message);
        }
    }
    EXPECT_FALSE(xml.hasError()) << path.toStdString() << ": " << xml.errorString().toStdString();
    return result;
}

/// Places for values in a text, in order of their numbers.
QStringList Places(const QString& text)
{
    static const QRegularExpression place(QStringLiteral("%(?:L?[1-9][0-9]?|n)"));
    QStringList result;
    for (auto match = place.globalMatch(text); match.hasNext();)
        result.append(match.next().captured());
    result.sort();
    result.removeDuplicates();
    return result;
}

qsizetype Mnemonics(const QString& text)
{
    static const QRegularExpression mnemonic(QStringLiteral("&[^&\\s]"));
    return text.count(mnemonic);
}

QStringList Languages()
{
    return {QStringLiteral("de"), QStringLiteral("en")};
}

QString FileOf(const QString& language)
{
    return Root + QStringLiteral("/apps/i18n/orbis_%1.ts").arg(language);
}

} // namespace

TEST(Translations, EveryTextOfTheSourcesIsTranslated)
{
    const QTemporaryDir folder;
    const QString fresh = folder.filePath(QStringLiteral("fresh.ts"));
    QProcess lupdate;
    lupdate.start(QStringLiteral(ORBIS_LUPDATE),
                  {QStringLiteral("-silent"), QStringLiteral("-locations"), QStringLiteral("none"), Root + "/src",
                   Root + "/apps", QStringLiteral("-ts"), fresh});
    ASSERT_TRUE(lupdate.waitForFinished(60000)) << lupdate.errorString().toStdString();
    ASSERT_EQ(lupdate.exitCode(), 0) << lupdate.readAllStandardError().toStdString();
    const Messages wanted = ReadMessages(fresh);
    ASSERT_GT(wanted.size(), 300); // a run that finds nothing would prove nothing
    for (const QString& language : Languages()) {
        const Messages known = ReadMessages(FileOf(language));
        for (auto it = wanted.begin(); it != wanted.end(); ++it) {
            if (language == QLatin1String("en") && it->translations.size() < 2)
                continue; // the text of the sources, unless a number decides its form
            const Message message = known.value(it.key(), Message{{}, false});
            EXPECT_TRUE(message.finished && !message.translations.contains(QString()))
                << language.toStdString() << ": " << it.key().first.toStdString() << ": \""
                << it.key().second.toStdString() << "\" has no translation; run scripts/update-translations";
        }
    }
}

TEST(Translations, KeepPlacesMnemonicsAndLineEnds)
{
    for (const QString& language : Languages()) {
        const Messages known = ReadMessages(FileOf(language));
        for (auto it = known.begin(); it != known.end(); ++it) {
            const QString& source = it.key().second;
            for (const QString& text : it->translations) {
                const std::string what = language.toStdString() + ": \"" + source.toStdString() + "\" is \""
                                         + text.toStdString() + '"';
                EXPECT_EQ(Places(text), Places(source)) << what;
                EXPECT_EQ(Mnemonics(text), Mnemonics(source)) << what;
                EXPECT_EQ(text.endsWith(u'\n'), source.endsWith(u'\n')) << what;
                EXPECT_EQ(text.startsWith(u'\n'), source.startsWith(u'\n')) << what;
                EXPECT_EQ(text.endsWith(QLatin1String("...")), source.endsWith(QLatin1String("..."))) << what;
                EXPECT_EQ(text.endsWith(u':'), source.endsWith(u':')) << what;
            }
        }
    }
}

TEST(Translations, ReachTheTextsOfTheLibrariesWhenTheUserWantsThem)
{
    const QByteArray before = qgetenv("ORBIS_LANGUAGE");
    const struct
    {
        const char* language;
        const char* comment;
        const char* schemas;
        const char* oneSchema;
    } cases[] = {{"C", "Comment", "2 schemas", "1 schema"},
                 {"en_US", "Comment", "2 schemas", "1 schema"},
                 {"de_AT", "Kommentar", "2 Schemas", "1 Schema"},
                 {"de", "Kommentar", "2 Schemas", "1 Schema"},
                 {"xx", "Comment", "2 schemas", "1 schema"}};
    for (const auto& one : cases) {
        qputenv("ORBIS_LANGUAGE", one.language);
        InstallTranslations(*QCoreApplication::instance());
        EXPECT_EQ(HF::LPropertyID::GetPropertyTitle(PROP_COMMENT).toStdString(), one.comment) << one.language;
        EXPECT_EQ(HF::LPropertyID::GetPropertyName(PROP_COMMENT).toStdString(), "Comment") << one.language;
        EXPECT_EQ(QObject::tr("%n schemas", "", 2).toStdString(), one.schemas) << one.language;
        EXPECT_EQ(QObject::tr("%n schemas", "", 1).toStdString(), one.oneSchema) << one.language;
        RemoveTranslations(*QCoreApplication::instance());
        EXPECT_EQ(HF::LPropertyID::GetPropertyTitle(PROP_COMMENT).toStdString(), "Comment") << one.language;
    }
    qputenv("ORBIS_LANGUAGE", before);
}
