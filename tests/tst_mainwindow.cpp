#include "app/appsettings.h"
#include "device/messagedistance.h"
#include "fakedevice.h"
#include "mainwindow/widget.h"
#include "resources/guiresources.h"
#include "store/accountstore.h"

#include <QApplication>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

// The window talks to the process-wide link and settings, so one device and one
// config.ini beside this test's executable serve the whole sequence.
class tst_MainWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void statusLine_followsTheLinkByteForByte();
    void restoreOrMaximise_twiceReturnsToNormal();

private:
    QString text(const char *state) const;

    QTemporaryDir m_dir;
    FakeDevice *m_device = nullptr;
    Widget *m_window = nullptr;
};

QString tst_MainWindow::text(const char *state) const
{
    const QString port = QString::number(m_device->port());
    if (qstrcmp(state, "connected") == 0)
        return "OrvexMatrixControl  User:ADMIN   Ip:127.0.0.31  Port:" + port + "  connected";
    return QString("OrvexMatrixControl  User:ADMIN  Ip:127.0.0.31  Port:%1 %2").arg(port, state);
}

void tst_MainWindow::initTestCase()
{
    initGuiResources();
    // No-login mode stored: the window starts straight away and connects by itself.
    setDatabasePath(m_dir.filePath("project.db"));
    AccountStore::createTables();
    QCOMPARE(AccountStore::loginModel(), 0);
    QVERIFY(AccountStore::setLoginModel(1));
    m_device = new FakeDevice(QHostAddress("127.0.0.31"), true, this);
    QVERIFY(m_device->isListening());
    const QString ini = QCoreApplication::applicationDirPath() + "/config.ini";
    QFile::remove(ini);
    QFile file(ini);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QString("[NetWork]\nIp=127.0.0.31\nPort=%1\n").arg(m_device->port()).toUtf8());
    file.close();
}

void tst_MainWindow::cleanupTestCase()
{
    delete m_window;
}

void tst_MainWindow::statusLine_followsTheLinkByteForByte()
{
    m_window = new Widget;
    QCOMPARE(m_window->windowTitle(), QString("ORVEXMATRIX CONTORL"));
    QVERIFY(m_window->statusText() == text("connecting") || m_window->statusText() == text("connected"));

    QTRY_COMPARE(m_window->statusText(), text("connected"));
    QCOMPARE(AppSettings::instance()->connectionState(), int(AppSettings::Connected));
    const QByteArray queries = "{param=version}{param=status}{param=inputinfo}{param=netInfo}{param=resolution}";
    QVERIFY(m_device->waitForReceived(queries.size()));
    QCOMPARE(m_device->takeReceived(), queries);

    // Each reconnect round shows "connecting" until its refusal shows "disconnected":
    // sample the line right after the window's own slot has run.
    QStringList shownOnRound;
    const QMetaObject::Connection sampler = connect(MessageDistance::instance(), &MessageDistance::connectingSig,
                                                    this, [&] { shownOnRound << m_window->statusText(); });
    m_device->stopListening();
    QTRY_COMPARE(m_window->statusText(), text("disconnected"));
    QTRY_VERIFY_WITH_TIMEOUT(!shownOnRound.isEmpty(), 5000);
    disconnect(sampler);
    QCOMPARE(shownOnRound.first(), text("connecting"));

    QVERIFY(m_device->listenAgain());
    QTRY_COMPARE_WITH_TIMEOUT(m_window->statusText(), text("connected"), 6000);
}

void tst_MainWindow::restoreOrMaximise_twiceReturnsToNormal()
{
    auto *button = m_window->findChild<QPushButton *>("btn_RestoreOrMax");
    QVERIFY(button);
    QTest::mouseClick(button, Qt::LeftButton);
    QTRY_VERIFY(m_window->isMaximized());
    QVERIFY(button->styleSheet().contains(":/Images/window/restore.png"));
    QTest::mouseClick(button, Qt::LeftButton);
    QTRY_VERIFY(!m_window->isMaximized());
    QVERIFY(button->styleSheet().contains(":/Images/window/fullscreen.png"));
}

QTEST_MAIN(tst_MainWindow)
#include "tst_mainwindow.moc"
