#include <QDir>
#include <QFile>
#include <QHash>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

// Every text the sources hand to translation must have a finished translation in German and in
// English, so that no user meets a caption that reads like code.
class TestTranslations : public QObject
{
    Q_OBJECT

    struct Message
    {
        QString context;
        QString source;
        QString translation;
        bool finished = false;
    };

    static QList<Message> readTs(const QString& path)
    {
        QList<Message> messages;
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return messages;
        QXmlStreamReader xml(&file);
        QString context;
        Message current;
        while (!xml.atEnd()) {
            xml.readNext();
            if (!xml.isStartElement())
                continue;
            if (xml.name() == QLatin1String("name"))
                context = xml.readElementText();
            else if (xml.name() == QLatin1String("message"))
                current = Message{context, QString(), QString(), false};
            else if (xml.name() == QLatin1String("source"))
                current.source = xml.readElementText();
            else if (xml.name() == QLatin1String("translation")) {
                current.finished = xml.attributes().value(QLatin1String("type")).isEmpty();
                // Plural texts hold one numerusform element per form.
                current.translation = xml.readElementText(QXmlStreamReader::IncludeChildElements);
                messages << current;
            }
        }
        return messages;
    }

    static QString sourceDir() { return QString::fromLocal8Bit(qgetenv("QMK_TEST_SOURCE_DIR")); }

    // A list of the word list: the lines "- ..." under the heading that holds `heading`.
    static QStringList wordList(const QString& heading)
    {
        QFile file(sourceDir() + QStringLiteral("/resources/lang/WORDS.md"));
        QStringList words;
        if (!file.open(QIODevice::ReadOnly))
            return words;
        bool inList = false;
        for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
            if (line.startsWith(QLatin1String("## ")))
                inList = line.contains(heading);
            else if (inList && line.startsWith(QLatin1String("- ")))
                words << line.mid(2);
        }
        return words;
    }

    static bool holds(const QString& text, const QString& word)
    {
        // A plain word counts only as a whole word ("Ok" is not "OK" nor "Okay").
        if (QRegularExpression(QStringLiteral("^\\w+$")).match(word).hasMatch())
            return QRegularExpression(QStringLiteral("\\b") + word + QStringLiteral("\\b")).match(text).hasMatch();
        return text.contains(word);
    }

private slots:
    // Every text the sources hand to translation has a finished translation in both languages,
    // and none copies a source text that reads like code.
    void everyTextTranslated_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("German") << "de_de.ts";
        QTest::newRow("English") << "en_us.ts";
    }

    void everyTextTranslated()
    {
        QFETCH(QString, file);
        const QString lupdate = QStringLiteral("/usr/lib/qt5/bin/lupdate");
        if (!QFile::exists(lupdate))
            QSKIP("lupdate is not installed");
        QTemporaryDir tmp;
        const QString extracted = tmp.filePath(QStringLiteral("extracted.ts"));
        QProcess process;
        process.setWorkingDirectory(sourceDir());
        process.start(lupdate, {QStringLiteral("-silent"), QStringLiteral("-recursive"), QStringLiteral("app"),
                                QStringLiteral("model"), QStringLiteral("engine"), QStringLiteral("ui"),
                                QStringLiteral("-ts"), extracted});
        QVERIFY(process.waitForFinished(120000));
        QCOMPARE(process.exitCode(), 0);

        QHash<QString, Message> translated;
        for (const Message& m : readTs(sourceDir() + QStringLiteral("/resources/lang/") + file))
            translated.insert(m.context + QLatin1Char('|') + m.source, m);
        // The code-like words of the word list; the texts only the logs show keep their wording.
        const QStringList codeLike = wordList(QStringLiteral("Code-like"));
        const QStringList logOnly = wordList(QStringLiteral("Log texts"));
        QVERIFY(codeLike.contains(QStringLiteral("OverwriteAccept")));

        const QList<Message> used = readTs(extracted);
        QVERIFY(!used.isEmpty());
        QStringList missing, copied;
        for (const Message& m : used) {
            const Message t = translated.value(m.context + QLatin1Char('|') + m.source);
            if (!t.finished || t.translation.isEmpty())
                missing << m.context + QStringLiteral(": ") + m.source;
            else if (t.translation == m.source && !logOnly.contains(m.source))
                for (const QString& word : codeLike)
                    if (holds(m.source, word)) {
                        copied << m.context + QStringLiteral(": ") + m.source;
                        break;
                    }
        }
        QVERIFY2(missing.isEmpty(), qPrintable(QStringLiteral("Untranslated: ") + missing.join(QStringLiteral("; "))));
        QVERIFY2(copied.isEmpty(), qPrintable(QStringLiteral("Reads like code: ") + copied.join(QStringLiteral("; "))));
    }
};

QTEST_MAIN(TestTranslations)
#include "TestTranslations.moc"
