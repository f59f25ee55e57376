#include "mainwindow/storecheck.h"

#include "dialogs/msgdlg.h"
#include "store/accountstore.h"
#include "store/database.h"

#include <QCoreApplication>
#include <QDir>

bool openAccountStore(QWidget *parent)
{
    const StoreState state = AccountStore::createTables();
    if (state == StoreState::Readable)
        return true;
    // Said once, here; the reads that follow fall back quietly as they always have.
    const char *text = state == StoreState::Locked
            ? QT_TRANSLATE_NOOP("Widget", "The database %1 is locked by another program. Accounts and port names can be "
                                          "neither read nor saved until it is released.")
            : QT_TRANSLATE_NOOP("Widget", "The database %1 cannot be read: it is damaged or not a database. Accounts "
                                          "and port names can be neither read nor saved.");
    MsgDlg::showMessage(QCoreApplication::translate("Widget", text).arg(QDir::toNativeSeparators(databasePath())),
                        QCoreApplication::translate("Widget", "Database Error"), parent);
    return false;
}
