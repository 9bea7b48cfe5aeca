#include "app/Application.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>
#include <QXmlStreamReader>

// Every text the sources hand to translation must have a finished German translation, so that a
// German user never meets an English caption.
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

private slots:
    void germanIsComplete()
    {
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

        QHash<QString, Message> german;
        for (const Message& m : readTs(sourceDir() + QStringLiteral("/resources/lang/de_de.ts")))
            german.insert(m.context + QLatin1Char('|') + m.source, m);

        const QList<Message> used = readTs(extracted);
        QVERIFY(!used.isEmpty());
        QStringList missing;
        for (const Message& m : used) {
            const Message de = german.value(m.context + QLatin1Char('|') + m.source);
            if (!de.finished || de.translation.isEmpty())
                missing << m.context + QStringLiteral(": ") + m.source;
        }
        QVERIFY2(missing.isEmpty(), qPrintable(QStringLiteral("Untranslated: ") + missing.join(QStringLiteral("; "))));
    }

    void compiledTranslationsLoad()
    {
        Application::registerResources();
        for (const QString& name : {QStringLiteral("en_us.qm"), QStringLiteral("de_de.qm")}) {
            QTranslator translator;
            QVERIFY2(translator.load(QStringLiteral(":/lang/") + name), qPrintable(name));
            QVERIFY(!translator.isEmpty());
        }
    }
};

QTEST_MAIN(TestTranslations)
#include "TestTranslations.moc"
