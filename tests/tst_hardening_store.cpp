// What the operator sees when project.db is locked, damaged or read-only, and when
// config.ini or a device reply holds values the product cannot use.
#include "app/appsettings.h"
#include "device/devicemodel.h"
#include "device/devicerecord.h"
#include "device/messagedistance.h"
#include "dialogs/msgdlg.h"
#include "login/logindialog.h"
#include "mainwindow/renamedialog.h"
#include "mainwindow/storecheck.h"
#include "mainwindow/tablewidget.h"
#include "mainwindow/widget.h"
#include "resources/guiresources.h"
#include "store/accountstore.h"
#include "store/portnames.h"
#include "store/portnamestore.h"

#include <QApplication>
#include <QJsonDocument>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

Q_DECLARE_METATYPE(ReplySignal)

class tst_HardeningStore : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initGuiResources(); }
    void init()
    {
        m_dir.reset(new QTemporaryDir);
        setDatabasePath(path());
        AccountStore::createTables();
        m_messages.clear();
        m_watching = true;
        watchModals();
    }
    void cleanup()
    {
        m_watching = false;
        m_holder.close();
        m_holder = QSqlDatabase();
        QSqlDatabase::removeDatabase("holder");
        m_dir.reset();
    }

    void unusableDatabase_saysSoOnceAndAgainAtLogin_data()
    {
        QTest::addColumn<QString>("message"); // empty: no message, the login works
        QTest::newRow("healthy") << "";
        QTest::newRow("locked") << "is locked by another program";
        QTest::newRow("garbage") << "cannot be read: it is damaged or not a database";
    }
    void unusableDatabase_saysSoOnceAndAgainAtLogin()
    {
        QFETCH(QString, message);
        QFile file(path());
        if (QTest::currentDataTag() == QLatin1String("locked")) {
            m_holder = QSqlDatabase::addDatabase("QSQLITE", "holder");
            m_holder.setDatabaseName(path());
            QVERIFY(m_holder.open() && QSqlQuery(m_holder).exec("BEGIN EXCLUSIVE"));
        } else if (QTest::currentDataTag() == QLatin1String("garbage")) {
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(4096, 'x')) == 4096);
            file.close();
        }
        QCOMPARE(openAccountStore(), message.isEmpty());
        QCOMPARE(m_messages.size(), message.isEmpty() ? 0 : 1);
        QVERIFY(message.isEmpty() || (m_messages[0].contains(message) && m_messages[0].contains(path())));

        deviceRecord()->setDeviceIp("127.0.0.62"); // nothing listens there
        deviceRecord()->setDevicePort(1);
        LoginDialog login;
        login.open();
        login.findChild<QLineEdit *>("usernameEdit")->setText("ADMIN");
        login.findChild<QLineEdit *>("passwordEdit")->setText("tulip908");
        QTest::mouseClick(login.findChild<QPushButton *>("btnLogin"), Qt::LeftButton);
        QCOMPARE(login.result(), message.isEmpty() ? 1 : 0);
        QCOMPARE(login.tipText(), message.isEmpty() ? QString() : QString("account database unreadable!"));
    }

    void readOnlyDatabase_refusesTheRenameAndKeepsTheOldName_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("input on the signal list") << int(PortNames::VideoInput);
        QTest::newRow("output on the video grid") << int(PortNames::VideoOutput);
    }
    void readOnlyDatabase_refusesTheRenameAndKeepsTheOldName()
    {
        QFETCH(int, kind);
        QVERIFY(AccountStore::loginModel() == 0 && AccountStore::setLoginModel(1)); // no login dialog at start
        PortNameStore::createPortNameTables();
        QVERIFY(PortNames().rename(PortNames::Kind(kind), 2, "Camera"));
        // A write version above 2 makes SQLite open the file read-only for anyone, root included.
        QFile file(path());
        QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(18) && file.write("\x03", 1) == 1);
        file.close();

        AppSettings settings(m_dir->filePath("config.ini"));
        settings.setNetwork("127.0.0.62", 1);
        settings.setLanguage(1);
        MessageDistance link;
        DeviceModel model;
        PortNames names;
        Widget window({&settings, &model, &link, &names});
        auto *list = window.findChild<QListWidget *>("listWidget");
        auto *grid = window.findChild<TableWidget *>("videoTable");
        const bool input = kind == PortNames::VideoInput;
        const QString before = input ? list->item(1)->text() : grid->outputName(2);
        QCOMPARE(before, input ? QString("[2] Camera") : QString("Camera"));
        list->setCurrentRow(1);
        grid->setCurrentItem(grid->itemForKey(2));
        QTest::keyClick(input ? static_cast<QWidget *>(list) : grid, Qt::Key_F2); // "Lectern", see watchModals()

        QCOMPARE(m_messages.size(), 1);
        QVERIFY2(m_messages[0].contains("could not be saved"), qPrintable(m_messages[0]));
        QCOMPARE(input ? list->item(1)->text() : grid->outputName(2), before);
        PortNames restarted;
        restarted.loadInputs(9);
        QCOMPARE(restarted.name(PortNames::Kind(kind), 2), QString("Camera"));
    }

    void unusableSettings_fallBackToTheDefaults_data()
    {
        QTest::addColumn<QString>("ini");
        QTest::addColumn<QString>("ip");
        QTest::addColumn<int>("port");
        QTest::addColumn<QString>("log"); // empty: nothing to report
        QTest::newRow("port 70000") << "Ip=10.0.0.7\nPort=70000" << "10.0.0.7" << 80 << "NetWork/Port \"70000\"";
        QTest::newRow("port -1") << "Ip=10.0.0.7\nPort=-1" << "10.0.0.7" << 80 << "NetWork/Port \"-1\"";
        QTest::newRow("ip:port") << "Ip=10.0.0.7:6666\nPort=6666" << "192.168.1.188" << 6666 << "NetWork/Ip \"10.0.0.7:6666\"";
        QTest::newRow("usable") << "Ip=10.0.0.7\nPort=65535" << "10.0.0.7" << 65535 << "";
    }
    void unusableSettings_fallBackToTheDefaults()
    {
        QFETCH(QString, ini);
        QFETCH(QString, log);
        QFile file(m_dir->filePath("config.ini"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(("[NetWork]\n" + ini + "\n").toUtf8()) > 0);
        file.close();
        if (!log.isEmpty())
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QRegularExpression::escape(log)));
        AppSettings settings(file.fileName());
        QTEST(settings.ip(), "ip");
        QTEST(settings.port(), "port");
    }

    void deviceValuesOutsideTheModel_areIgnored_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<ReplySignal>("kind");
        QTest::addColumn<QString>("reply");
        QTest::addColumn<QString>("routes"); // output:input as the grids get them; every row drops one
        const ReplySignal video = ReplySignal::VideoMap, audio = ReplySignal::AudioMap, ir = ReplySignal::IrMap;
        QTest::newRow("input 99") << "ORXM200" << video << R"({"video1":9,"video3":99})" << "1:9";
        QTest::newRow("input 4294967298") << "ORXM200" << video << R"({"video1":2,"video3":4294967298})" << "1:2";
        QTest::newRow("input 2.5 as text") << "ORXM200" << video << R"({"video1":"2","video3":"2.5"})" << "1:2";
        QTest::newRow("input 9 of eight") << "ORXM100" << video << R"({"video1":8,"video3":9})" << "1:8";
        QTest::newRow("HDMI audio output 110") << "ORXM200" << audio << R"({"audio109":4,"audio110":4})" << "109:4";
        QTest::newRow("IR output 10") << "ORXM200" << ir << R"({"IR9":0,"IR10":1})" << "9:0";
        QTest::newRow("overflowing output") << "ORXM200" << ir << R"({"IR99999999999":1})" << "";
    }
    void deviceValuesOutsideTheModel_areIgnored()
    {
        QFETCH(QString, type);
        QFETCH(ReplySignal, kind);
        QFETCH(QString, reply);
        DeviceModel model;
        model.apply(ReplySignal::Version, QJsonObject{{"type", type}});
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("is not a port of this model, ignored"));
        model.apply(kind, QJsonDocument::fromJson(reply.toUtf8()).object());
        const DeviceRecord &r = model.record();
        const QMap<int, int> map = kind == ReplySignal::VideoMap ? r.videoMap() : kind == ReplySignal::AudioMap ? r.audioMap() : r.irMap();
        QStringList routes;
        for (auto it = map.begin(); it != map.end(); ++it)
            routes << QString("%1:%2").arg(it.key()).arg(it.value());
        QTEST(routes.join(' '), "routes");
    }

private:
    QString path() const { return m_dir->filePath("project.db"); }
    // Answers modal boxes as an operator would: a rename gets "Lectern", a message is read and closed.
    void watchModals()
    {
        QTimer::singleShot(0, this, [this] {
            QWidget *modal = QApplication::activeModalWidget();
            if (auto *box = qobject_cast<MsgDlg *>(modal)) {
                m_messages << box->text();
                QTest::mouseClick(box->findChild<QPushButton *>("btnOk"), Qt::LeftButton);
            } else if (qobject_cast<RenameDialog *>(modal)) {
                modal->findChild<QLineEdit *>("nameEdit")->setText("Lectern");
                QTest::mouseClick(modal->findChild<QPushButton *>("btnOk"), Qt::LeftButton);
            }
            if (m_watching)
                watchModals();
        });
    }

    QScopedPointer<QTemporaryDir> m_dir;
    QSqlDatabase m_holder; // holds the exclusive lock of the "locked" row
    QStringList m_messages;
    bool m_watching = false;
};

QTEST_MAIN(tst_HardeningStore)
#include "tst_hardening_store.moc"
