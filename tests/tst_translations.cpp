// Both translations, as compiled into the resources, against what the sources ask
// to translate today (straight from lupdate, so a new tr() without a translation fails).
#include "resources/guiresources.h"

#include <QLibraryInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>
#include <QXmlStreamReader>

class tst_Translations : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        initGuiResources();
        const QString lupdate =
                QStandardPaths::findExecutable("lupdate", {QLibraryInfo::location(QLibraryInfo::BinariesPath)});
        QVERIFY2(!lupdate.isEmpty(), "lupdate is missing (qttools5-dev-tools)");
        QTemporaryDir dir;
        QProcess process;
        process.setWorkingDirectory(ORVEX_SOURCE_DIR);
        process.start(lupdate, {"-locations", "none", "app", "device", "store", "login", "mainwindow", "dialogs",
                                "-ts", dir.filePath("current.ts")});
        QVERIFY(process.waitForFinished(60000));
        QCOMPARE(process.exitCode(), 0);

        QFile file(dir.filePath("current.ts"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QString context;
        for (QXmlStreamReader xml(&file); !xml.atEnd();) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            if (xml.name() == QLatin1String("name"))
                context = xml.readElementText();
            else if (xml.name() == QLatin1String("source"))
                m_current.append({context, xml.readElementText()});
        }
        QVERIFY(m_current.size() > 30);
    }

    void everySourceText_isTranslatedKeepingItsPlaceholders_data()
    {
        QTest::addColumn<QString>("resource");
        QTest::addColumn<QString>("keySource"); // a text of the login dialog and what it must become
        QTest::addColumn<QString>("keyTranslation");
        QTest::newRow("Chinese") << ":/Chinese" << "Remember me" << QString::fromUtf8("记住密码");
        QTest::newRow("English") << ":/English" << QString::fromUtf8("Orvex系列视频切换软件")
                                 << "ORVEX SERIES VIDEO SWITCHING SOFTWARE";
    }

    void everySourceText_isTranslatedKeepingItsPlaceholders()
    {
        QFETCH(QString, resource);
        QFETCH(QString, keySource);
        QTranslator translator;
        QVERIFY(translator.load(resource));
        QTEST(translator.translate("LoginDialog", keySource.toUtf8()), "keyTranslation");

        // The texts are filled with arg(): a translation that lost a "%n" shows the wrong values.
        static const QRegularExpression placeholder("%\\d");
        QStringList faults;
        for (const auto &[context, source] : qAsConst(m_current)) {
            const QString text = translator.translate(context.toUtf8(), source.toUtf8());
            bool ok = !text.isEmpty();
            for (auto it = placeholder.globalMatch(source); ok && it.hasNext();)
                ok = text.contains(it.next().captured());
            if (!ok)
                faults << context + ": " + source + " -> " + text;
        }
        QVERIFY2(faults.isEmpty(), qPrintable("run scripts/update-translations.sh and scripts/translations.py;"
                                              " missing or broken:\n" + faults.join('\n')));
    }

private:
    QVector<std::pair<QString, QString>> m_current; // (context, source) pairs
};

QTEST_GUILESS_MAIN(tst_Translations)
#include "tst_translations.moc"
