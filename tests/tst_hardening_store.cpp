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
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

class tst_HardeningStore : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        initGuiResources();
        // Answers modal boxes as an operator would: a rename gets "Lectern", a message is read and closed.
        connect(&m_operator, &QTimer::timeout, this, [this] {
            QWidget *modal = QApplication::activeModalWidget();
            if (auto *box = qobject_cast<MsgDlg *>(modal))
                m_messages << box->text();
            else if (qobject_cast<RenameDialog *>(modal))
                modal->findChild<QLineEdit *>("nameEdit")->setText("Lectern");
            else
                return;
            QTest::mouseClick(modal->findChild<QPushButton *>("btnOk"), Qt::LeftButton);
        });
    }
    void init()
    {
        m_dir.reset(new QTemporaryDir);
        setDatabasePath(path());
        AccountStore::createTables();
        m_messages.clear();
        m_operator.start(0);
    }
    void cleanup()
    {
        m_operator.stop();
        m_holder = QSqlDatabase();
        QSqlDatabase::removeDatabase("holder");
    }

    void database_isReportedOnceWhenUnusable_data()
    {
        QTest::addColumn<QString>("message"); // empty: no message
        QTest::newRow("healthy") << "";
        QTest::newRow("locked") << "is locked by another program";
        QTest::newRow("garbage") << "cannot be read: it is damaged or not a database";
    }
    void database_isReportedOnceWhenUnusable()
    {
        QFETCH(QString, message);
        QFile file(path());
        QVERIFY(file.open(QIODevice::ReadWrite));
        if (QTest::currentDataTag() == QLatin1String("locked")) {
            m_holder = QSqlDatabase::addDatabase("QSQLITE", "holder");
            m_holder.setDatabaseName(path());
            QVERIFY(m_holder.open() && QSqlQuery(m_holder).exec("BEGIN EXCLUSIVE"));
        } else if (!message.isEmpty()) {
            QVERIFY(file.write(QByteArray(4096, 'x')) == 4096 && file.flush()); // the header and more
        }
        const QByteArray before = file.seek(0) ? file.readAll() : QByteArray();
        QCOMPARE(openAccountStore(), message.isEmpty());
        QCOMPARE(m_messages.size(), message.isEmpty() ? 0 : 1);
        if (message.isEmpty())
            return;
        QVERIFY2(m_messages[0].contains(message) && m_messages[0].contains(path()), qPrintable(m_messages[0]));

        // Then every use fails without another word and leaves the file as it was; unreadable
        // counts as a first start (login dialog shown), and the login says why it refuses.
        QVERIFY(!AccountStore::addUser("bob", "pw"));
        QCOMPARE(AccountStore::loginModel(), 0);
        QCOMPARE(PortNameStore::loadPortNames(PortNameStore::VideoInput), (QMap<int, QString>()));
        deviceRecord()->setDeviceIp("127.0.0.62"); // nothing listens there
        LoginDialog login;
        login.open();
        login.findChild<QLineEdit *>("usernameEdit")->setText("ADMIN");
        login.findChild<QLineEdit *>("passwordEdit")->setText("tulip908");
        QTest::mouseClick(login.findChild<QPushButton *>("btnLogin"), Qt::LeftButton);
        QCOMPARE(login.result(), 0);
        QCOMPARE(login.tipText(), QString("account database unreadable!"));
        QCOMPARE(m_messages.size(), 1);
        QVERIFY(file.seek(0) && file.readAll() == before);
        QCOMPARE(QSqlDatabase::connectionNames(), QStringList{"holder"}.mid(m_holder.isValid() ? 0 : 1)); // none left behind
    }

    void readOnlyDatabase_refusesTheRenameAndKeepsTheOldName_data()
    {
        QTest::addColumn<bool>("input");
        QTest::newRow("input on the signal list") << true;
        QTest::newRow("output on the video grid") << false;
    }
    void readOnlyDatabase_refusesTheRenameAndKeepsTheOldName()
    {
        QFETCH(bool, input);
        QVERIFY(AccountStore::loginModel() == 0 && AccountStore::setLoginModel(1)); // no login dialog at start
        PortNameStore::createPortNameTables();
        QVERIFY(PortNames().rename(input ? PortNames::VideoInput : PortNames::VideoOutput, 2, "Camera"));
        // A write version above 2 makes SQLite open the file read-only for anyone, root included.
        QFile file(path());
        QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(18) && file.write("\x03", 1) == 1 && file.flush());

        AppSettings settings(m_dir->filePath("config.ini"));
        settings.setNetwork("127.0.0.62", 1);
        settings.setLanguage(1);
        MessageDistance link;
        DeviceModel model;
        PortNames names;
        Widget window({&settings, &model, &link, &names});
        auto *list = window.findChild<QListWidget *>("listWidget");
        auto *grid = window.findChild<TableWidget *>("videoTable");
        QTRY_VERIFY(grid->itemForKey(2)); // the grid follows the first connection attempt
        auto shown = [&] { return input ? list->item(1)->text() : grid->outputName(2); };
        QCOMPARE(shown(), input ? QString("[2] Camera") : QString("Camera"));
        input ? list->setCurrentRow(1) : grid->setCurrentItem(grid->itemForKey(2));
        QTest::keyClick(input ? static_cast<QWidget *>(list) : grid, Qt::Key_F2); // typed: "Lectern"
        QCOMPARE(m_messages.size(), 1);
        QVERIFY2(m_messages[0].contains("could not be saved"), qPrintable(m_messages[0]));
        QCOMPARE(shown(), input ? QString("[2] Camera") : QString("Camera"));
    }

private:
    QString path() const { return m_dir->filePath("project.db"); }

    QScopedPointer<QTemporaryDir> m_dir;
    QSqlDatabase m_holder; // holds the exclusive lock of the "locked" row
    QStringList m_messages;
    QTimer m_operator;
};

QTEST_MAIN(tst_HardeningStore)
#include "tst_hardening_store.moc"
