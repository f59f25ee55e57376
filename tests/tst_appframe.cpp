// The log file and config.ini as the application writes and reads them.
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
    void init() { m_dir.reset(new QTemporaryDir); QVERIFY(QDir().mkpath(m_dir->path() + "/log") && QDir::setCurrent(m_dir->path())); qInstallMessageHandler(logMessageHandler); }
    void cleanup() { qInstallMessageHandler(nullptr); QDir::setCurrent(m_previousDir); }

    void messages_areWrittenToTodaysFileWithTemplate()
    {
        QScopedPointer<QThread> worker(QThread::create([] { for (int i = 0; i < 200; ++i) qDebug().noquote() << "worker line" << i; }));
        worker->start();
        for (int i = 0; i < 200; ++i)
            qDebug().noquote() << "main line" << i;
        QVERIFY(worker->wait());
        qWarning().noquote() << QString::fromUtf8("执行错误"); // a warning carries no level word

        const QStringList lines = logLines();  // naming this file and line, in release builds too
        QCOMPARE(lines.size(), 401);
        const QRegularExpression shape(QString::fromUtf8(R"(^\[(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d)\]\[File:tests/tst_appframe\.cpp  Line:[1-9]\d*\]:)"
                                                         R"(((main|worker) line \d+|执行错误)$)"));
        for (const QString &line : lines) { // whole lines only: the two threads never interleave
            const QRegularExpressionMatch match = shape.match(line);
            QVERIFY2(match.hasMatch() && QDateTime::fromString(match.captured(1), "yyyy-MM-dd hh:mm:ss").isValid(), qPrintable(line));
        }
        QCOMPARE(lines.filter("worker line").size(), 200);
        QVERIFY(lines.last().endsWith(QString::fromUtf8("]:执行错误")));
        // The message is substituted into the template first, so placeholders in it take part.
        QCOMPARE(formatLogLine("send: \"{param=version}\"", nullptr, 0, "2024-05-01 13:02:09"),
                 QString("[2024-05-01 13:02:09][File:  Line:0]:send: \"{param=version}\""));
        QCOMPARE(formatLogLine("x %2 y", "a.cpp", 7, "T"), QString("[T][File:a.cpp  Line:7]:x a.cpp y"));
    }

    // Plain text is written without the substitution and the code-page round trip;
    // every line must still be the bytes those give.
    void messages_keepSubstitutionAndCodePage_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<QByteArray>("file");
        QTest::newRow("plain") << "send: \"{param=status}\"\t!" << QByteArray("device/link.cpp");
        QTest::newRow("placeholder") << "x %2 y" << QByteArray("a.cpp");
        QTest::newRow("percent alone") << "100%" << QByteArray("a.cpp");
        QTest::newRow("NUL ends the text") << QString::fromLatin1("ab\0cd", 5) << QByteArray("a.cpp");
        QTest::newRow("not ASCII") << QString::fromUtf8("音量 50") << QByteArray("a.cpp");
        QTest::newRow("percent in the file name") << "plain" << QByteArray("a%1.cpp");
        QTest::newRow("no file name") << "plain" << QByteArray();
    }

    void messages_keepSubstitutionAndCodePage()
    {
        QFETCH(QString, message);
        QFETCH(QByteArray, file);
        const char *fileName = file.isNull() ? nullptr : file.constData();
        QMessageLogger(fileName, 42, nullptr).debug().noquote() << message;
        QFile log(m_dir->filePath(QString("log/%1.log").arg(QDate::currentDate().toString("yyyy-MM-dd"))));
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QByteArray written = log.readAll();
        // Wherever the substitution has put it.
        const QString stamp = QRegularExpression(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d)").match(QString::fromLocal8Bit(written)).captured();
        QVERIFY2(!stamp.isEmpty(), written.constData());
        const QString text = QString::fromLocal8Bit(message.toLocal8Bit());
        QCOMPARE(written, (formatLogLine(text, fileName, 42, stamp) + "\r\n").toLocal8Bit());
    }

    void settings_readWithDefaults_data()
    {
        QTest::addColumn<QByteArray>("ini");
        QTest::addColumn<QString>("read"); // address:port user language
        QTest::addColumn<QString>("warning"); // the log line a value that cannot be used gives
        QTest::newRow("fresh install") << QByteArray() << "192.168.1.188:80 ADMIN -1" << "";
        QTest::newRow("stored values") << QByteArray("[NetWork]\nIp=10.0.0.5\nPort=5000\n[User]\nUsername=op\n[Language]\nlanguage=1\n")
                                       << "10.0.0.5:5000 op 1" << "";
        QTest::newRow("port not a number") << QByteArray("[NetWork]\nPort=abc\n") << "192.168.1.188:80 ADMIN -1" << "";
        QTest::newRow("port 0") << QByteArray("[NetWork]\nPort=0\n") << "192.168.1.188:80 ADMIN -1" << "";
        // 70000 would wrap to 4464; 65535 is the last port there is.
        QTest::newRow("port 70000") << QByteArray("[NetWork]\nIp=10.0.0.7\nPort=70000\n") << "10.0.0.7:80 ADMIN -1"
                                    << "NetWork/Port \"70000\"";
        QTest::newRow("ip:port") << QByteArray("[NetWork]\nIp=10.0.0.7:6666\nPort=65535\n") << "192.168.1.188:65535 ADMIN -1"
                                 << "NetWork/Ip \"10.0.0.7:6666\"";
        QTest::newRow("empty address") << QByteArray("[NetWork]\nIp=\nPort=23\n") << "192.168.1.188:23 ADMIN -1" << "";
        QTest::newRow("empty language reads 0") << QByteArray("[Language]\nlanguage=\n") << "192.168.1.188:80 ADMIN 0" << "";
    }

    void settings_readWithDefaults()
    {
        QFETCH(QByteArray, ini);
        QFETCH(QString, warning);
        const QString path = m_dir->filePath("config.ini");
        QFile file(path);
        QVERIFY(ini.isEmpty() || (file.open(QIODevice::WriteOnly) && file.write(ini) == ini.size() && file.flush()));
        AppSettings s(path);
        QTEST(QString("%1:%2 %3 %4").arg(s.ip()).arg(s.port()).arg(s.username()).arg(s.language()), "read");
        if (!warning.isEmpty())
            QVERIFY2(logLines().join('\n').contains(warning), qPrintable(logLines().join('\n')));
    }

private:
    QStringList logLines() const
    {
        QFile file(m_dir->filePath(QString("log/%1.log").arg(QDate::currentDate().toString("yyyy-MM-dd"))));
        const QString text = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
        return text.endsWith("\r\n") ? text.chopped(2).split("\r\n") : QStringList{"<no CR LF at end>"};
    }

    QScopedPointer<QTemporaryDir> m_dir; // a new one for each test: settings files are cached by name
    const QString m_previousDir = QDir::currentPath();
};

QTEST_GUILESS_MAIN(tst_AppFrame)
#include "tst_appframe.moc"
