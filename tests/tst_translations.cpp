#include "resources/guiresources.h"

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>
#include <QXmlStreamReader>

namespace {

struct Message
{
    QString context;
    QString source;
};

// Reads the (context, source) pairs of a .ts file.
QVector<Message> readTs(const QString &path)
{
    QVector<Message> messages;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return messages;
    QXmlStreamReader xml(&file);
    QString context;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("name"))
            context = xml.readElementText();
        else if (xml.name() == QLatin1String("source"))
            messages.append({context, xml.readElementText()});
    }
    return messages;
}

} // namespace

class tst_Translations : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyTextOfTheSources_isTranslatedInBothLanguages_data();
    void everyTextOfTheSources_isTranslatedInBothLanguages();
    void chineseSourceTexts_getEnglishAndViceVersa();

private:
    QVector<Message> m_current;
};

void tst_Translations::initTestCase()
{
    initGuiResources();
    // What the code and forms ask to translate today, straight from lupdate.
    QString lupdate = QStandardPaths::findExecutable("lupdate");
    if (lupdate.isEmpty())
        lupdate = QStandardPaths::findExecutable("lupdate", {"/usr/lib/qt5/bin"});
    QVERIFY2(!lupdate.isEmpty(), "lupdate is missing (qttools5-dev-tools)");
    QTemporaryDir dir;
    const QString ts = dir.filePath("current.ts");
    QProcess process;
    process.setWorkingDirectory(ORVEX_SOURCE_DIR);
    process.start(lupdate, {"-locations", "none", "app", "device", "store", "login", "mainwindow", "dialogs",
                            "-ts", ts});
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitCode(), 0);
    m_current = readTs(ts);
    QVERIFY(m_current.size() > 30);
}

void tst_Translations::everyTextOfTheSources_isTranslatedInBothLanguages_data()
{
    QTest::addColumn<QString>("resource");
    QTest::newRow("Chinese") << ":/Chinese";
    QTest::newRow("English") << ":/English";
}

void tst_Translations::everyTextOfTheSources_isTranslatedInBothLanguages()
{
    QFETCH(QString, resource);
    QTranslator translator;
    QVERIFY(translator.load(resource));
    QStringList missing;
    for (const Message &m : qAsConst(m_current)) {
        if (translator.translate(m.context.toUtf8(), m.source.toUtf8()).isEmpty())
            missing << m.context + ": " + m.source;
    }
    QVERIFY2(missing.isEmpty(), qPrintable("run scripts/update-translations.sh and scripts/translations.py; missing:\n"
                                           + missing.join('\n')));
}

void tst_Translations::chineseSourceTexts_getEnglishAndViceVersa()
{
    QTranslator chinese;
    QTranslator english;
    QVERIFY(chinese.load(":/Chinese"));
    QVERIFY(english.load(":/English"));
    QCOMPARE(english.translate("LoginDialog", "Orvex系列视频切换软件"), QString("ORVEX SERIES VIDEO SWITCHING SOFTWARE"));
    QCOMPARE(chinese.translate("LoginDialog", "Remember me"), QString::fromUtf8("记住密码"));
    QCOMPARE(english.translate("LoginDialog", "Remember me"), QString("Remember me"));
    // The status texts keep their placeholders in both languages.
    const char *status = "OrvexMatrixControl  User:%3   Ip:%1  Port:%2  connected";
    for (QTranslator *t : {&chinese, &english}) {
        const QString text = t->translate("Widget", status);
        QVERIFY(text.contains("%1") && text.contains("%2") && text.contains("%3"));
    }
}

QTEST_GUILESS_MAIN(tst_Translations)
#include "tst_translations.moc"
