#include "app/appsettings.h"
#include "app/logger.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

class tst_AppFrame : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void message_isWrittenToTodaysFileWithTemplate_data();
    void message_isWrittenToTodaysFileWithTemplate();
    void messagesFromTwoThreads_neverInterleave();
    void missingLogFolder_losesMessagesSilently();
    void placeholdersInMessage_takePartInSubstitution();

    void settings_readWithDefaults_data();
    void settings_readWithDefaults();
    void settings_writesKeysExistingFilesUse();

private:
    QStringList logLines() const;

    QTemporaryDir *m_dir = nullptr;
    QString m_previousDir;
};

void tst_AppFrame::init()
{
    m_dir = new QTemporaryDir;
    m_previousDir = QDir::currentPath();
    QDir::setCurrent(m_dir->path());
    QDir().mkpath("log");
    qInstallMessageHandler(logMessageHandler);
}

void tst_AppFrame::cleanup()
{
    qInstallMessageHandler(nullptr);
    QDir::setCurrent(m_previousDir);
    delete m_dir;
}

QStringList tst_AppFrame::logLines() const
{
    QFile file(m_dir->filePath(QString("log/%1.log").arg(QDate::currentDate().toString("yyyy-MM-dd"))));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString text = QString::fromUtf8(file.readAll());
    if (!text.endsWith("\r\n"))
        return {"<no CR LF at end>"};
    return text.left(text.size() - 2).split("\r\n");
}

void tst_AppFrame::message_isWrittenToTodaysFileWithTemplate_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");

    QTest::newRow("debug") << int(QtDebugMsg) << "send: \"{param=version}\"";
    QTest::newRow("info, same as debug") << int(QtInfoMsg) << "info line";
    QTest::newRow("warning carries no level word") << int(QtWarningMsg) << "careful";
    QTest::newRow("chinese text") << int(QtDebugMsg) << QString::fromUtf8("执行错误");
}

void tst_AppFrame::message_isWrittenToTodaysFileWithTemplate()
{
    QFETCH(int, type);
    QFETCH(QString, text);

    switch (type) {
    case QtDebugMsg: qDebug().noquote() << text; break;
    case QtInfoMsg: qInfo().noquote() << text; break;
    default: qWarning().noquote() << text; break;
    }
    const QStringList lines = logLines();
    QCOMPARE(lines.size(), 1);
    const QRegularExpression shape(R"(^\[(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d)\]\[File:(.*)  Line:(\d+)\]:(.*)$)");
    const QRegularExpressionMatch match = shape.match(lines[0]);
    QVERIFY2(match.hasMatch(), qPrintable(lines[0]));
    QVERIFY(QDateTime::fromString(match.captured(1), "yyyy-MM-dd hh:mm:ss").isValid());
    QCOMPARE(match.captured(4), text);
}

class LoggingThread : public QThread
{
public:
    void run() override
    {
        for (int i = 0; i < 200; ++i)
            qDebug().noquote() << "worker line" << i;
    }
};

void tst_AppFrame::messagesFromTwoThreads_neverInterleave()
{
    LoggingThread worker;
    worker.start();
    for (int i = 0; i < 200; ++i)
        qDebug().noquote() << "main line" << i;
    worker.wait();

    const QStringList lines = logLines();
    QCOMPARE(lines.size(), 400);
    const QRegularExpression shape(R"(^\[[^\]]+\]\[File:.*  Line:\d+\]:(main|worker) line \d+$)");
    for (const QString &line : lines)
        QVERIFY2(shape.match(line).hasMatch(), qPrintable(line));
    QCOMPARE(lines.filter("worker line").size(), 200);
}

void tst_AppFrame::missingLogFolder_losesMessagesSilently()
{
    QVERIFY(QDir("log").removeRecursively());
    qDebug() << "into the void";
    qDebug() << "and again";
    QVERIFY(!QDir("log").exists());
    QDir().mkpath("log");
    qDebug() << "back";
    QCOMPARE(logLines().size(), 1);
}

void tst_AppFrame::placeholdersInMessage_takePartInSubstitution()
{
    // Kept as existing logs show it: the message is substituted first.
    QCOMPARE(formatLogLine("plain", "a.cpp", 7, "2024-05-01 13:02:09"),
             QString("[2024-05-01 13:02:09][File:a.cpp  Line:7]:plain"));
    QCOMPARE(formatLogLine("send: \"{param=version}\"", nullptr, 0, "2024-05-01 13:02:09"),
             QString("[2024-05-01 13:02:09][File:  Line:0]:send: \"{param=version}\""));
    QCOMPARE(formatLogLine("x %2 y", "f", 3, "T"), QString("[T][File:f  Line:3]:x f y"));
}

void tst_AppFrame::settings_readWithDefaults_data()
{
    QTest::addColumn<QByteArray>("ini");
    QTest::addColumn<QString>("ip");
    QTest::addColumn<int>("port");
    QTest::addColumn<QString>("user");
    QTest::addColumn<int>("language");

    QTest::newRow("fresh install") << QByteArray() << "192.168.1.188" << 80 << "ADMIN" << -1;
    QTest::newRow("stored values") << QByteArray("[NetWork]\nIp=10.0.0.5\nPort=5000\n[User]\nUsername=op\n[Language]\nlanguage=1\n")
                                   << "10.0.0.5" << 5000 << "op" << 1;
    QTest::newRow("port abc") << QByteArray("[NetWork]\nPort=abc\n") << "192.168.1.188" << 80 << "ADMIN" << -1;
    QTest::newRow("port 0") << QByteArray("[NetWork]\nPort=0\n") << "192.168.1.188" << 80 << "ADMIN" << -1;
    QTest::newRow("empty address") << QByteArray("[NetWork]\nIp=\nPort=23\n") << "192.168.1.188" << 23 << "ADMIN" << -1;
    QTest::newRow("empty language reads 0") << QByteArray("[Language]\nlanguage=\n") << "192.168.1.188" << 80 << "ADMIN" << 0;
    QTest::newRow("other section spelling is not read") << QByteArray("[Network]\nIp=1.2.3.4\n") << "192.168.1.188" << 80 << "ADMIN" << -1;
    QTest::newRow("garbage file") << QByteArray("\x01\x02 not an ini [[[") << "192.168.1.188" << 80 << "ADMIN" << -1;
}

void tst_AppFrame::settings_readWithDefaults()
{
    QFETCH(QByteArray, ini);
    QFETCH(QString, ip);
    QFETCH(int, port);
    QFETCH(QString, user);
    QFETCH(int, language);

    const QString path = m_dir->filePath("config.ini");
    if (!ini.isEmpty()) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(ini);
    }
    AppSettings settings(path);
    QCOMPARE(settings.ip(), ip);
    QCOMPARE(settings.port(), port);
    QCOMPARE(settings.username(), user);
    QCOMPARE(settings.language(), language);
    QCOMPARE(settings.connectionState(), int(AppSettings::Connecting));
    QCOMPARE(settings.adminFlag(), 1);
}

void tst_AppFrame::settings_writesKeysExistingFilesUse()
{
    const QString path = m_dir->filePath("config.ini");
    {
        AppSettings settings(path);
        settings.setNetwork("192.168.1.50", 8000);
        settings.setUsername("ADMIN");
        settings.setLanguage(0);
    }
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    QVERIFY(text.contains("[NetWork]"));
    QVERIFY(text.contains("Ip=192.168.1.50"));
    QVERIFY(text.contains("Port=8000"));
    QVERIFY(text.contains("[User]"));
    QVERIFY(text.contains("Username=ADMIN"));
    QVERIFY(text.contains("[Language]"));
    QVERIFY(text.contains("language=0"));

    AppSettings again(path);
    QCOMPARE(again.port(), 8000);
    QCOMPARE(again.language(), 0);
}

QTEST_GUILESS_MAIN(tst_AppFrame)
#include "tst_appframe.moc"
